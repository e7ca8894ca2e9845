// SPDX-License-Identifier: MIT
//
// Buffer dumps. Their rows pass by the record writer, in large pieces: only a record that begins at
// the start of a line can be indented, and rows never do.
#include "KelRT/Logger.h"

#include "common/hex.h"
#include "common/words.h"
#include "logging/levels.h"
#include "port/port.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <string_view>

namespace KelRT {
namespace {

constexpr std::uint64_t SHOWN_BYTES = 10000;
constexpr std::string_view LABEL = "\n(MSB<-LSB)";
constexpr std::string_view CUT_MESSAGE =
    "... (To display buffers larger than 10000, enable the print large\n"
    "buffer flag in TOR_KEL_LOGFLAGS. Set bit 1 high, where bit 0 is LSB.)";

// Collects text and hands it to a stream in whole blocks, the rest at the end. A line-buffered
// stream passes whole blocks on as they are; the rest of a larger piece it would look through for
// line ends, with a write for each.
//
// The buffer would be too large for the stacks of some threads. There is one for all Loggers: a
// process opens one stream, and callers serialise its use.
class StreamText {
public:
    static constexpr std::size_t MOST_AT_ONCE = 256;

    explicit StreamText(std::FILE* target) : stream(target) {}

    // Where the next piece goes, of at most MOST_AT_ONCE characters.
    char* next() const { return text + used; }
    // Takes the piece that was put there and ends at `end`.
    void take(const char* end) {
        used = static_cast<std::size_t>(end - text);
        if (used >= SIZE)
            handOver(SIZE);
    }
    void finish() {
        handOver(used / BLOCK * BLOCK);
        handOver(used);
    }

private:
    static constexpr std::size_t BLOCK = 4096;
    static constexpr std::size_t SIZE = 8 * BLOCK;

    void handOver(std::size_t count) {
        static_cast<void>(std::fwrite(text, 1, count, stream));
        used -= count;
        std::memmove(text, text + count, used);
    }

    std::FILE* stream;
    std::size_t used = 0;
    static char text[SIZE + MOST_AT_ONCE];
};

char StreamText::text[];

char* put(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

char* putBlanks(char* out, std::uint64_t count) {
    std::memset(out, ' ', static_cast<std::size_t>(count));
    return out + count;
}

// Eight characters of which the lowest byte of `characters` is the last.
char* putEight(char* out, std::uint64_t characters) {
    common::storeWord(out, common::swapBytes(characters));
    return out + common::WORD_BYTES;
}

char* putAddress(char* out, std::uint64_t index) {
    constexpr unsigned DIGITS = 8;
    *out++ = '\n';
    common::writeHex(out + DIGITS, index, DIGITS, 'a');
    return put(out + DIGITS, "h: ");
}

// How each byte stands in the hexadecimal form, and one character more: four are copied at once.
constexpr auto HEX_CELLS = [] {
    std::array<std::array<char, 4>, 256> cells{};
    for (unsigned byte = 0; byte != cells.size(); ++byte)
        cells[byte] = {common::LOWER_DIGITS[byte >> 4], common::LOWER_DIGITS[byte & 0xF], ' ', ' '};
    return cells;
}();

struct HexForm {
    static constexpr std::uint64_t ROW_BYTES = 16;
    static constexpr std::uint64_t CELL = 3; // characters of one byte, the blank behind it included

    static char* putByte(char* out, unsigned char byte) {
        std::memcpy(out, HEX_CELLS[byte].data(), HEX_CELLS[byte].size());
        return out + CELL;
    }
    static void blankBits(char* /*cell*/, std::uint64_t /*count*/) {} // all bits are shown
};

struct BitForm {
    static constexpr std::uint64_t ROW_BYTES = 8;
    static constexpr std::uint64_t CELL = 9;

    static char* putByte(char* out, unsigned char byte) {
        out = putEight(out, common::spreadBits(byte) + common::broadcast('0'));
        *out++ = ' ';
        return out;
    }
    static void blankBits(char* cell, std::uint64_t count) { putBlanks(cell, count); }
};

// The numbers of the columns, each above the last digit of its column.
template <typename Form>
char* putHeader(char* out, std::uint64_t bytes) {
    for (std::uint64_t column = std::min(bytes, Form::ROW_BYTES); column-- > 0;) {
        out = putBlanks(out, Form::CELL - 1);
        *out++ = common::LOWER_DIGITS[column];
    }
    return out;
}

// The bytes of a row, the last one first.
template <typename Form>
char* putBytes(char* out, const unsigned char* bytes, std::uint64_t count) {
    for (std::uint64_t i = count; i-- > 0;)
        out = Form::putByte(out, bytes[i]);
    return out;
}

// The row of the bytes from `index` to before `end`. A short row stands under its columns, unless
// it is the first one, whose header has no more columns than the row has bytes.
template <typename Form>
char* putRow(char* out, const unsigned char* buffer, std::uint64_t index, std::uint64_t end,
             std::uint64_t bitCount) {
    out = putAddress(out, index);
    const std::uint64_t count = std::min(end - index, Form::ROW_BYTES);
    if (count == Form::ROW_BYTES && 8 * (index + count) <= bitCount)
        return putBytes<Form>(out, buffer + index, Form::ROW_BYTES); // a loop of known length
    if (index != 0)
        out = putBlanks(out, (Form::ROW_BYTES - count) * Form::CELL);
    char* const highest = out;
    out = putBytes<Form>(out, buffer + index, count);
    if (8 * (index + count) > bitCount)
        Form::blankBits(highest, 8 * (index + count) - bitCount);
    return out;
}

template <typename Form>
void putTable(StreamText& text, const unsigned char* buffer, std::uint64_t bitCount, bool whole) {
    const std::uint64_t bytes = (bitCount + 7) / 8;
    const std::uint64_t shown = whole ? bytes : std::min(bytes, SHOWN_BYTES);
    text.take(putHeader<Form>(text.next(), bytes));
    for (std::uint64_t index = 0; index < shown; index += Form::ROW_BYTES)
        text.take(putRow<Form>(text.next(), buffer, index, shown, bitCount));
    if (shown < bytes)
        text.take(put(putAddress(text.next(), shown), CUT_MESSAGE));
    text.take(put(text.next(), "\n"));
    text.finish();
}

} // namespace

void Logger::dumpBuffer(int level, const char* title, const unsigned char* buffer,
                        unsigned int bitCount) noexcept {
    assert((buffer != nullptr || bitCount == 0) && "buffer holds the given number of bits");
    if (!shouldPrintLog(level))
        return;
    const Port::CancellationDisabled uncancelled;
    if (title != nullptr)
        writeTitle(title);
    write(LABEL.data(), LABEL.size());
    StreamText text(stream.get());
    if (printBits)
        putTable<BitForm>(text, buffer, bitCount, printLargeBufs);
    else
        putTable<HexForm>(text, buffer, bitCount, printLargeBufs);
    atLineStart = true;
}

void Logger::dumpBuffer(int level, const unsigned char* buffer, unsigned int bitCount) noexcept {
    dumpBuffer(level, "[Buffer Dump]", buffer, bitCount);
}

// A record whose format is the title, read by hand: there are no arguments, and a title may come
// from outside, so "%%" is the one conversion that there is.
void Logger::writeTitle(const char* title) noexcept {
    if (*title == '\0')
        return flush();
    char text[logging::RECORD_SIZE];
    std::size_t length = 0;
    for (const char* from = title; *from != '\0' && length < sizeof text; ++from) {
        if (from[0] == '%' && from[1] == '%')
            ++from;
        text[length++] = *from;
    }
    write(text, length);
}

} // namespace KelRT
