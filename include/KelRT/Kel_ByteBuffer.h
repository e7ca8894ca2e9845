// SPDX-License-Identifier: MIT
#pragma once

#include "KelRT/Export.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

namespace KelRT {

/// Bytes that are also a string of bits.
///
/// **Bit numbering.** Bit k of the buffer is bit (k mod 8) of byte (k div 8); bit 0 of a byte is
/// its least significant bit, byte 0 is the first used byte. In a field value, value bit j is
/// buffer bit `bitPosition + j`: least significant first, as IEEE 1149.1 shifts registers.
///
/// **Storage.** One block holds a low reserve, the used bytes, and a high reserve:
/// \code
///            padLow          size           padHigh
///       +------------+------------------+-------------+
///       |  reserve   |  byte 0, 1, ...  |   reserve   |
///       +------------+------------------+-------------+
///                    ^ startPosition, always equal to padLow
/// \endcode
/// While no shift is pending, dropping bytes at either end only changes counts. Inserting moves the
/// smaller side into a reserve. A reserve grows by exactly the count asked for. New reserve bytes
/// are zero; bytes that move from the used part into a reserve keep their values.
///
/// **Pending shift.** shiftBitsDown() drops whole bytes at once and leaves up to 7 bits pending.
/// Every operation that returns, reads or changes the used bytes first applies the pending shift in
/// one pass (the *realignment*), even if it then throws or does nothing. getSize(), clear(),
/// init(), shiftBitsDown(), construction, copying and moving do not realign. The realignment also
/// sets the first byte of the high reserve, if there is one, to 0.
///
/// **Ownership.** A buffer owns its block. The caller deletes a `Kel_ByteBuffer*` that a function
/// returns. The class has its own `operator new` and `operator delete`, so this works whatever
/// global operators the client has replaced. Pointers and references to the bytes stay valid until
/// the buffer takes a new block (init(), insertBytes() if a reserve grows, filling it as a target,
/// assignment) or is destroyed.
///
/// **Limits.** `startPosition + size` must stay below 2^31, since operator[](),
/// moveStartPositionForward() and shiftBitsDown() take 32-bit counts; this is not checked. So the
/// whole hexadecimal text of a buffer of 2^30 bytes or more is too long; setHexStringBitCount()
/// cuts it all the same. A size of PTRDIFF_MAX bytes or more throws `std::bad_alloc`, as exhausted
/// memory does; the buffer (or target) then keeps its old contents, apart from the realignment.
///
/// **Preconditions** are marked as such. Debug builds assert them; release builds do not check
/// them.
///
/// **Threads.** Distinct buffers are independent. Only one thread at a time may use a buffer, since
/// even reading may realign it, with one exception: while no shift is pending, getSize(),
/// getBits(), getBitsLL() and bits2Number() write nothing, so several threads may call them at the
/// same time. After shiftBitsDown(), call ptr() once before the threads start: it realigns.
class Kel_ByteBuffer {
public:
    /// \name Construction
    /// @{

    /// An empty buffer without a block: getSize() is 0, ptr() is null.
    KELRT_API Kel_ByteBuffer() noexcept;

    /// As init() on an empty buffer. Sizes in bytes. \throws std::bad_alloc
    KELRT_API Kel_ByteBuffer(std::uint64_t size, std::uint64_t padLow, std::uint64_t padHigh);

    /// As init(), then copies \a size bytes from \a source; both reserves are zero.
    /// \pre source designates at least size bytes (it may be null when size is 0)
    /// \throws std::bad_alloc
    KELRT_API Kel_ByteBuffer(const unsigned char* source, std::uint64_t size, std::uint64_t padLow,
                             std::uint64_t padHigh);

    /// A deep copy: a new block with the same layout and contents, reserves and pending shift
    /// included. \throws std::bad_alloc
    KELRT_API Kel_ByteBuffer(const Kel_ByteBuffer& other);

    /// Takes over the block of \a other, which is left as if default-constructed.
    KELRT_API Kel_ByteBuffer(Kel_ByteBuffer&& other) noexcept;

    /// A deep copy; on failure this buffer is unchanged. Assigning a buffer to itself changes
    /// nothing.
    /// \throws std::bad_alloc
    KELRT_API Kel_ByteBuffer& operator=(const Kel_ByteBuffer& other);

    /// Takes over the block of \a other, which is left as if default-constructed. Assigning a
    /// buffer to itself changes nothing.
    KELRT_API Kel_ByteBuffer& operator=(Kel_ByteBuffer&& other) noexcept;

    /// Releases the block.
    KELRT_API ~Kel_ByteBuffer();

    /// Replaces the block by one of \a padLow + \a size + \a padHigh bytes, all zero, with no shift
    /// pending. \throws std::bad_alloc also when the sum exceeds what memory can hold; the buffer
    /// is then unchanged
    KELRT_API void init(std::uint64_t size, std::uint64_t padLow, std::uint64_t padHigh);

    /// @}
    /// \name Bytes
    /// Counts and positions are in bytes and count from the first used byte.
    /// @{

    /// The number of used bytes.
    [[nodiscard]] std::uint64_t getSize() const noexcept { return size; }

    /// Sets every byte of the block, both reserves included, to 0. Keeps the counts and a pending
    /// shift.
    KELRT_API void clear() noexcept;

    /// Realigns, and returns the address of the first used byte; null without a block.
    char* ptr() noexcept { return reinterpret_cast<char*>(uPtr()); }

    /// As ptr().
    unsigned char* uPtr() noexcept {
        byteAlign();
        return used();
    }

    /// Realigns, and returns byte \a index. \pre 0 <= index < getSize()
    char& operator[](std::int32_t index) noexcept {
        assert(index >= 0 && static_cast<std::uint64_t>(index) < size && "0 <= index < getSize()");
        return ptr()[index];
    }

    /// Opens a gap of \a byteCount bytes at \a atByte: the bytes before it stay in front of the
    /// gap, the others follow it, and the size grows by \a byteCount. The gap is not cleared. The
    /// side with fewer bytes moves (the tail if \a atByte is above half the size). If its reserve
    /// is smaller than \a byteCount, the reserve first grows by \a byteCount, in a new block.
    /// \code
    /// b0 b1 b2 b3, insertBytes(3, 2) => b0 b1 b2 x x b3
    /// b0 b1 b2 b3, insertBytes(9, 1) => b0 b1 b2 b3 x     // at or beyond the end: appended
    /// \endcode
    /// \return always 0
    /// \throws std::bad_alloc also when the block's size exceeds what memory can hold; the buffer
    /// is then realigned and otherwise unchanged
    KELRT_API std::int32_t insertBytes(std::uint64_t atByte, std::uint64_t byteCount);

    /// Moves the last \a byteCount bytes into the high reserve. \pre byteCount <= getSize()
    KELRT_API void removeBytesAtEnd(std::uint64_t byteCount) noexcept;

    /// Moves the first \a byteCount bytes into the low reserve. A negative count moves bytes back,
    /// with the values that they have there. \pre -padLow <= byteCount <= getSize()
    KELRT_API void moveStartPositionForward(std::int32_t byteCount) noexcept;

    /// @}
    /// \name Bit fields
    /// A field is the \a bitCount bits from bit \a bitPosition on, least significant first. It must
    /// end within the used bytes; a field for which bitPosition + bitCount exceeds 2^64 - 1 is
    /// rejected, too. The buffer never grows to take a field.
    /// @{

    /// Drops the \a bitCount lowest bits: every bit moves down by \a bitCount places, zeros enter
    /// at the top of the last byte, and the size shrinks by the whole bytes dropped (this call's
    /// bits and those already pending taken together). No byte is changed until the next
    /// realignment.
    /// \code
    /// 21 43, shiftBitsDown(4)     => 32 04
    /// 21 43 65, shiftBitsDown(12) => 54 06
    /// \endcode
    /// \pre bitCount >= 0, and no more whole bytes are dropped than the buffer holds
    void shiftBitsDown(std::int32_t bitCount) noexcept {
        assert(bitCount >= 0 && "bitCount >= 0");
        const std::int64_t pending = std::int64_t{pendingBitShift} + bitCount;
        const auto bytes = static_cast<std::uint64_t>(pending / 8);
        assert(bytes <= size && "no more whole bytes are dropped than the buffer holds");
        giveToLowReserve(bytes);
        pendingBitShift = static_cast<std::int32_t>(pending % 8);
    }

    /// Reads a field. A field of more than 64 bits gives its lowest 64, a field of 0 bits gives 0.
    /// \code
    /// 21 43, getBitsLL(0, 16) => 0x4321
    /// 21 43, getBitsLL(4, 8)  => 0x32
    /// 21 43, getBitsLL(9, 7)  => 0x21
    /// \endcode
    /// \throws std::logic_error "Internal Error - Kel_ByteBuffer::getBits bad params." when the
    /// field reaches past the last used byte
    [[nodiscard]] std::uint64_t getBitsLL(std::uint64_t bitPosition, std::uint64_t bitCount) {
        if (!isPlainField(bitPosition, bitCount))
            return getBitsSlowCase(bitPosition, bitCount);
        const unsigned char* const p = used() + bitPosition / 64 * 8;
        const auto shift = static_cast<unsigned>(bitPosition % 64);
        std::uint64_t value = u64At(p) >> shift;
        if (shift + bitCount > 64)
            value |= u64At(p + 8) << (64 - shift);
        return value & (~std::uint64_t{0} >> (64 - bitCount));
    }

    /// The low 32 bits of getBitsLL(). \throws std::logic_error as getBitsLL()
    [[nodiscard]] std::uint32_t getBits(std::uint64_t bitPosition, std::uint64_t bitCount) {
        return static_cast<std::uint32_t>(getBitsLL(bitPosition, bitCount));
    }

    /// Writes the low \a bitCount bits of \a value to a field; bits of the field beyond the 64th
    /// become 0. Bits outside the field do not change.
    /// \code
    /// 00 00, setBitsLL(4, 8, 0xAB) => B0 0A
    /// \endcode
    /// \throws std::logic_error "Internal Error - Kel_ByteBuffer::setBits(ll) bad params." when the
    /// field reaches past the last used byte; no byte changes then
    void setBitsLL(std::uint64_t bitPosition, std::uint64_t bitCount, std::uint64_t value) {
        if (!isPlainField(bitPosition, bitCount))
            return setBitsSlowCase(bitPosition, bitCount, value);
        unsigned char* const p = used() + bitPosition / 64 * 8;
        const auto shift = static_cast<unsigned>(bitPosition % 64);
        const std::uint64_t mask = ~std::uint64_t{0} >> (64 - bitCount);
        value &= mask;
        if (shift + bitCount > 64)
            putU64At(p + 8, (u64At(p + 8) & ~(mask >> (64 - shift))) | value >> (64 - shift));
        putU64At(p, (u64At(p) & ~(mask << shift)) | value << shift);
    }

    /// As setBitsLL() with \a value extended by zeros. \throws std::logic_error as setBitsLL()
    void setBits(std::uint64_t bitPosition, std::uint64_t bitCount, std::uint32_t value) {
        setBitsLL(bitPosition, bitCount, value);
    }

    /// @}
    /// \name Hexadecimal text
    /// Text is stored in a buffer, too: one character in each byte and a terminating NUL, which
    /// counts as used. The ordinary form shows the buffer as one number, most significant digit
    /// first; it is written in upper case and read in either case. The bit-mirrored form shows the
    /// bits from bit 0 on in groups of four. The first bit of a group is the most significant bit
    /// of its digit.
    /// \code
    /// 21 43: "4321" in the ordinary form, "84C2" in the bit-mirrored form
    /// \endcode
    /// Characters that are not digits are not reported. A target may be this buffer itself. A
    /// target does not change if memory is exhausted, except that one that is this buffer is
    /// realigned.
    /// @{

    /// Writes the bytes from \a fromByte on as text, and a terminating NUL.
    /// \pre out lies outside this buffer and has room for 2 * (getSize() - fromByte) + 1
    /// characters, or for 1 when fromByte is at or beyond the end
    KELRT_API void bin2HexString(std::uint64_t fromByte, unsigned char* out) noexcept;

    /// Fills \a target with the text. The target has 2 * getSize() + 1 used bytes, whatever
    /// \a fromByte is (NULs fill the rest), and no reserves.
    /// \code
    /// 21 43, bin2HexString(0, target) => "4321\0"
    /// 21 43, bin2HexString(1, target) => "43\0\0\0"
    /// \endcode
    /// \throws std::bad_alloc
    KELRT_API void bin2HexString(std::uint64_t fromByte, Kel_ByteBuffer& target);

    /// As above, in a new buffer, which the caller deletes. \throws std::bad_alloc
    [[nodiscard]] KELRT_API Kel_ByteBuffer* bin2HexString(std::uint64_t fromByte);

    /// The text of the bytes from \a fromByte on, cut to \a bitCount bits by
    /// setHexStringBitCount(), in a new buffer, which the caller deletes.
    /// \code
    /// 21 43, bin2HexString(0, 12) => "321\0"
    /// FF FF, bin2HexString(0, 10) => "3FF\0"
    /// \endcode
    /// \throws std::bad_alloc
    [[nodiscard]] KELRT_API Kel_ByteBuffer* bin2HexString(std::uint64_t fromByte,
                                                          std::uint64_t bitCount);

    /// Reads the characters \a firstChar to \a lastChar of this buffer as digits, \a lastChar the
    /// least significant, into ceil(digits / 2) bytes at \a out, least significant byte first. If
    /// the count is odd, the last byte holds the first digit alone. A reversed range writes
    /// nothing. A character that is not a hexadecimal digit has the value of its code minus the
    /// code of '0'. Each byte is 16 * first value + second value, modulo 256.
    /// \code
    /// "4321", hex2Bin(0, 3) => 21 43
    /// "4321", hex2Bin(1, 3) => 21 03
    /// \endcode
    /// \pre lastChar < getSize(), and out lies outside this buffer and has room
    KELRT_API void hex2Bin(std::uint64_t firstChar, std::uint64_t lastChar,
                           unsigned char* out) noexcept;

    /// As above, into \a target, which has exactly these bytes and no reserves; a reversed range
    /// gives an empty buffer. \pre lastChar < getSize() \throws std::bad_alloc
    KELRT_API void hex2Bin(std::uint64_t firstChar, std::uint64_t lastChar, Kel_ByteBuffer& target);

    /// As above, in a new buffer, which the caller deletes. \throws std::bad_alloc
    [[nodiscard]] KELRT_API Kel_ByteBuffer* hex2Bin(std::uint64_t firstChar,
                                                    std::uint64_t lastChar);

    /// Reads bit-mirrored text into a new buffer, which the caller deletes; it has reserves of 10
    /// bytes in front and behind. Null counts as empty text. If the count of characters is odd, the
    /// last one fills the low four bits of the last byte. A character that is not a hexadecimal
    /// digit has the value of the previous one, and 0 if it is the first.
    /// \code
    /// hex2BinReverse("80")  => 01
    /// hex2BinReverse("A5")  => A5
    /// hex2BinReverse("123") => 48 0C
    /// \endcode
    /// \throws std::bad_alloc
    [[nodiscard]] KELRT_API static Kel_ByteBuffer* hex2BinReverse(const char* hexText);

    /// As above, into \a target. \throws std::bad_alloc
    KELRT_API static void hex2BinReverse(const char* hexText, Kel_ByteBuffer& target);

    /// Cuts the ordinary text in this buffer to \a bitCount bits: the ceil(bitCount / 4) least
    /// significant digits and the terminating NUL stay, and the first digit keeps only its wanted
    /// bits. The other digits move into the low reserve. A text with fewer digits does not change:
    /// it is neither padded nor masked.
    /// \code
    /// "FFFF\0", setHexStringBitCount(10) => "3FF\0"
    /// \endcode
    /// \pre the last used byte is the terminating NUL
    KELRT_API void setHexStringBitCount(std::uint64_t bitCount) noexcept;

    /// @}
    /// \name Reordering
    /// In place; size, reserves and block stay. swapByteOrder(0, size) and
    /// swapBitOrderWithinEachByte() together reverse the whole bit string.
    /// @{

    /// Mirrors every used byte: its bit 0 becomes bit 7, bit 1 bit 6, and so on.
    /// \code
    /// 01 80 0F, swapBitOrderWithinEachByte() => 80 01 F0
    /// \endcode
    KELRT_API void swapBitOrderWithinEachByte() noexcept;

    /// Reverses the order of \a byteCount bytes from \a fromByte on.
    /// \code
    /// b0 b1 b2, swapByteOrder(1, 2) => b0 b2 b1
    /// \endcode
    /// \pre fromByte + byteCount <= getSize()
    KELRT_API void swapByteOrder(std::uint64_t fromByte, std::uint64_t byteCount) noexcept;

    /// @}
    /// \name Memory of the objects themselves
    /// One allocator for the library, which creates buffers, and for the client, which deletes
    /// them. An operator in a class hides all global forms, so the class declares every form of
    /// `new`, and every form of `delete` that takes no size. The sized forms are not needed.
    /// @{

    /// One object. \throws std::bad_alloc
    KELRT_API static void* operator new(std::size_t bytes);
    /// One object; null when memory is exhausted.
    KELRT_API static void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept;
    /// One object at \a place.
    KELRT_API static void* operator new(std::size_t bytes, void* place) noexcept;
    /// An array. \throws std::bad_alloc
    KELRT_API static void* operator new[](std::size_t bytes);
    /// An array; null when memory is exhausted.
    KELRT_API static void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept;
    /// An array at \a place.
    KELRT_API static void* operator new[](std::size_t bytes, void* place) noexcept;
    /// One object of an over-aligned derived class. \throws std::bad_alloc
    KELRT_API static void* operator new(std::size_t bytes, std::align_val_t alignment);
    /// The same; null when memory is exhausted.
    KELRT_API static void* operator new(std::size_t bytes, std::align_val_t alignment,
                                        const std::nothrow_t&) noexcept;
    /// An array of such objects. \throws std::bad_alloc
    KELRT_API static void* operator new[](std::size_t bytes, std::align_val_t alignment);
    /// The same; null when memory is exhausted.
    KELRT_API static void* operator new[](std::size_t bytes, std::align_val_t alignment,
                                          const std::nothrow_t&) noexcept;
    /// Releases one object.
    KELRT_API static void operator delete(void* memory) noexcept;
    /// Releases one object whose constructor has thrown.
    KELRT_API static void operator delete(void* memory, const std::nothrow_t&) noexcept;
    /// Releases nothing: the place is the caller's.
    KELRT_API static void operator delete(void* memory, void* place) noexcept;
    /// Releases an array.
    KELRT_API static void operator delete[](void* memory) noexcept;
    /// Releases an array after the constructor of an element has thrown.
    KELRT_API static void operator delete[](void* memory, const std::nothrow_t&) noexcept;
    /// Releases nothing: the place is the caller's.
    KELRT_API static void operator delete[](void* memory, void* place) noexcept;
    /// Releases one over-aligned object.
    KELRT_API static void operator delete(void* memory, std::align_val_t) noexcept;
    /// The same, of an object whose constructor has thrown.
    KELRT_API static void operator delete(void* memory, std::align_val_t,
                                          const std::nothrow_t&) noexcept;
    /// Releases an array of such objects.
    KELRT_API static void operator delete[](void* memory, std::align_val_t) noexcept;
    /// The same, of an array after the constructor of an element has thrown.
    KELRT_API static void operator delete[](void* memory, std::align_val_t,
                                            const std::nothrow_t&) noexcept;
    /// @}

private:
    friend struct ValueAccess; // lets the functions of NumberValue.h check a field

    /// The realignment; just one test if no shift is pending.
    void byteAlign() noexcept {
        if (pendingBitShift != 0)
            byteAlignSlowCase();
    }
    KELRT_API void byteAlignSlowCase() noexcept;
    /// Moves the first \a bytes used bytes into the low reserve. A negative count, converted to
    /// unsigned, moves bytes back.
    void giveToLowReserve(std::uint64_t bytes) noexcept {
        startPosition += bytes;
        size -= bytes;
        padLow += bytes;
    }
    void increasePadHigh(std::uint64_t byteCount);
    void increasePadLow(std::uint64_t byteCount);
    [[nodiscard]] unsigned char* used() const noexcept { return storage.get() + startPosition; }
    [[nodiscard]] std::size_t blockSize() const noexcept {
        return static_cast<std::size_t>(padLow + size + padHigh);
    }
    /// True if the inline paths apply: no shift is pending, and the field has 1 to 64 bits and lies
    /// within whole blocks of 8 bytes, counted from the first used byte. These blocks are accessed,
    /// not the 8 bytes from bitPosition / 8 on: if the first used byte is 8-byte aligned, none of
    /// them crosses a cache line, and a load after a store of the same block can be forwarded.
    [[nodiscard]] bool isPlainField(std::uint64_t bitPosition,
                                    std::uint64_t bitCount) const noexcept {
        return pendingBitShift == 0 && bitCount - 1 < 64 &&
               bitPosition / 64 + (bitPosition % 64 + bitCount - 1) / 64 < size / 8;
    }
    KELRT_API std::uint64_t getBitsSlowCase(std::uint64_t bitPosition, std::uint64_t bitCount);
    KELRT_API void setBitsSlowCase(std::uint64_t bitPosition, std::uint64_t bitCount,
                                   std::uint64_t value);
    /// Host order to little-endian, and back.
    [[nodiscard]] static std::uint64_t littleEndian(std::uint64_t value) noexcept {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
        value = (value >> 8 & 0x00FF00FF00FF00FF) | (value & 0x00FF00FF00FF00FF) << 8;
        value = (value >> 16 & 0x0000FFFF0000FFFF) | (value & 0x0000FFFF0000FFFF) << 16;
        value = value >> 32 | value << 32;
#endif
        return value;
    }
    /// The 64-bit value in \a p[0..7].
    [[nodiscard]] static std::uint64_t u64At(const unsigned char* p) noexcept {
        std::uint64_t value;
        std::memcpy(&value, p, sizeof value);
        return littleEndian(value);
    }
    static void putU64At(unsigned char* p, std::uint64_t value) noexcept {
        value = littleEndian(value);
        std::memcpy(p, &value, sizeof value);
    }
    [[nodiscard]] bool holdsField(std::uint64_t bitPosition, std::uint64_t bitCount) const noexcept;

    std::uint64_t startPosition = 0;
    std::int32_t pendingBitShift = 0;
    std::uint64_t size = 0;
    std::uint64_t padLow = 0;
    std::uint64_t padHigh = 0;
    std::unique_ptr<unsigned char[]> storage;
};

} // namespace KelRT
