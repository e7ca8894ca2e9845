// SPDX-License-Identifier: MIT
//
// Dumps buffers. Writes the title and the label as records, so they may be indented. Writes the
// rows directly to the stream, in large blocks.
#include "KelRT/Logger.h"

#include "common/hex.h"
#include "common/u64.h"
#include "logging/records.h"
#include "port/runtime.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <string_view>

namespace KelRT {
namespace {

constexpr std::uint64_t MAX_SHOWN_BYTES = 10000;
constexpr std::string_view LABEL = "\n(MSB<-LSB)"; // begins the table on a new line
constexpr std::string_view TRUNCATION_MESSAGE =
    "... (To display buffers larger than 10000, enable the print large\n"
    "buffer flag in TOR_KEL_LOGFLAGS. Set bit 1 high, where bit 0 is LSB.)";

// Collects text and writes it to a line-buffered stream in whole blocks. The C library passes whole
// blocks on directly, but scans smaller writes for newlines and flushes them line by line.
//
// The buffer is static, because it is too large for the stacks of some threads. One is enough for
// all Loggers, since callers serialise every log call.
class BlockWriter {
public:
    // A piece is a header, a row or the truncation message. The message is the longest one, but
    // shorter than this.
    static constexpr std::size_t MAX_PIECE = 256;

    explicit BlockWriter(std::FILE* target) : stream(target) {}

    // Returns the place for the next piece, which has at most MAX_PIECE characters.
    char* next() const { return text + used; }
    // Adds the piece that the caller has written from next() up to `end`.
    void commit(const char* end) {
        used = static_cast<std::size_t>(end - text);
        if (used >= SIZE)
            flush(SIZE);
    }
    void finish() {
        flush(used / BLOCK * BLOCK); // the C library does not scan whole blocks
        flush(used);
    }

private:
    static constexpr std::size_t BLOCK = 4096; // a multiple of the usual stream buffer sizes
    static constexpr std::size_t SIZE = 8 * BLOCK;

    void flush(std::size_t count) {
        static_cast<void>(std::fwrite(text, 1, count, stream));
        used -= count;
        std::memmove(text, text + count, used);
    }

    std::FILE* stream;
    std::size_t used = 0;
    inline static char text[SIZE + MAX_PIECE];
};

char* put(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

char* putBlanks(char* out, std::uint64_t count) {
    std::memset(out, ' ', static_cast<std::size_t>(count));
    return out + count;
}

// Writes the eight bytes of `characters`, the most significant one first.
char* putBigEndian(char* out, std::uint64_t characters) {
    common::storeU64(out, common::swapBytes(characters));
    return out + common::U64_BYTES;
}

char* putRowStart(char* out, std::uint64_t index) {
    constexpr unsigned DIGITS = 8;
    *out++ = '\n';
    common::writeHex(out + DIGITS, index, DIGITS, 'a');
    return put(out + DIGITS, "h: ");
}

// Maps each byte to its two digits and a space. The fourth character only serves to copy four bytes
// at once; the next output overwrites it.
constexpr auto HEX_CELLS = [] {
    std::array<std::array<char, 4>, 256> cells{};
    for (unsigned byte = 0; byte != cells.size(); ++byte)
        cells[byte] = {common::LOWER_DIGITS[byte >> 4], common::LOWER_DIGITS[byte & 0xF], ' ', ' '};
    return cells;
}();

struct HexForm {
    static constexpr std::uint64_t ROW_BYTES = 16;
    static constexpr std::uint64_t CELL_WIDTH = 3; // characters per byte, space included

    static char* putByte(char* out, unsigned char byte) {
        std::memcpy(out, HEX_CELLS[byte].data(), HEX_CELLS[byte].size());
        return out + CELL_WIDTH;
    }
    // Does nothing: this form shows whole bytes. BitForm blanks the bits above the bit count.
    static void blankBits(char* /*cell*/, std::uint64_t /*count*/) {}
};

struct BitForm {
    static constexpr std::uint64_t ROW_BYTES = 8;
    static constexpr std::uint64_t CELL_WIDTH = 9;

    static char* putByte(char* out, unsigned char byte) {
        out = putBigEndian(out, common::spreadBits(byte) + common::broadcast('0'));
        *out++ = ' ';
        return out;
    }
    static void blankBits(char* cell, std::uint64_t count) { putBlanks(cell, count); }
};

// Writes the column numbers, each above the last digit of its column.
template <typename Form>
char* putHeader(char* out, std::uint64_t bytes) {
    for (std::uint64_t column = std::min(bytes, Form::ROW_BYTES); column-- > 0;) {
        out = putBlanks(out, Form::CELL_WIDTH - 1);
        *out++ = common::LOWER_DIGITS[column];
    }
    return out;
}

// Writes the bytes of a row, the one with the highest index first.
template <typename Form>
char* putBytes(char* out, const unsigned char* bytes, std::uint64_t count) {
    for (std::uint64_t i = count; i-- > 0;)
        out = Form::putByte(out, bytes[i]);
    return out;
}

// Writes the row that begins at `index`; `end` is the number of bytes shown. A short last row is
// padded on the left. If it is the only row, it is not padded, since the header is equally short.
template <typename Form>
char* putRow(char* out, const unsigned char* buffer, std::uint64_t index, std::uint64_t end,
             std::uint64_t bitCount) {
    out = putRowStart(out, index);
    const std::uint64_t count = std::min(end - index, Form::ROW_BYTES);
    // A full row passes a constant count, so the compiler unrolls the loop of putBytes().
    if (count == Form::ROW_BYTES && 8 * (index + count) <= bitCount)
        return putBytes<Form>(out, buffer + index, Form::ROW_BYTES);
    if (index != 0)
        out = putBlanks(out, (Form::ROW_BYTES - count) * Form::CELL_WIDTH);
    char* const highest = out;
    out = putBytes<Form>(out, buffer + index, count);
    if (8 * (index + count) > bitCount)
        Form::blankBits(highest, 8 * (index + count) - bitCount);
    return out;
}

template <typename Form>
void putTable(BlockWriter& table, const unsigned char* buffer, std::uint64_t bitCount, bool whole) {
    const std::uint64_t bytes = (bitCount + 7) / 8;
    const std::uint64_t shown = whole ? bytes : std::min(bytes, MAX_SHOWN_BYTES);
    table.commit(putHeader<Form>(table.next(), bytes));
    for (std::uint64_t index = 0; index < shown; index += Form::ROW_BYTES)
        table.commit(putRow<Form>(table.next(), buffer, index, shown, bitCount));
    if (shown < bytes)
        table.commit(put(putRowStart(table.next(), shown), TRUNCATION_MESSAGE));
    table.commit(put(table.next(), "\n"));
    table.finish();
}

} // namespace

void Logger::dumpBuffer(int level, const char* title, const unsigned char* buffer,
                        unsigned int bitCount) noexcept {
    assert((buffer != nullptr || bitCount == 0) && "buffer holds the given number of bits");
    if (!shouldPrintLog(level))
        return;
    const Port::CancellationDisabled cancellationGuard;
    if (title != nullptr)
        writeTitle(title);
    write(LABEL.data(), LABEL.size());
    BlockWriter table(stream.get());
    if (printBits)
        putTable<BitForm>(table, buffer, bitCount, printLargeBufs);
    else
        putTable<HexForm>(table, buffer, bitCount, printLargeBufs);
    atLineStart = true;
    if (!Port::HAS_LINE_BUFFERING)
        flush();
}

void Logger::dumpBuffer(int level, const unsigned char* buffer, unsigned int bitCount) noexcept {
    dumpBuffer(level, "[Buffer Dump]", buffer, bitCount);
}

// Writes the title as a record. It may be untrusted, so it is not used as a format: "%%" becomes
// "%", and nothing else is interpreted.
void Logger::writeTitle(const char* title) noexcept {
    if (*title == '\0')
        return flush();
    char text[logging::MAX_RECORD_LENGTH];
    std::size_t length = 0;
    for (const char* from = title; *from != '\0' && length < sizeof text; ++from) {
        if (from[0] == '%' && from[1] == '%')
            ++from;
        text[length++] = *from;
    }
    write(text, length);
}

} // namespace KelRT
