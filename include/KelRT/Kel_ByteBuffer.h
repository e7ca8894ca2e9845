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

/// A Kel_ByteBuffer holds bytes that can also be addressed as a string of bits.
///
/// **Bit numbering.** Bit k of the buffer is bit (k mod 8) of byte (k div 8). Byte 0 is the first
/// used byte, and bit 0 of a byte is its least significant bit. Bit j of a field's value is bit
/// `bitPosition + j` of the buffer: least significant first, the order in which IEEE 1149.1 shifts
/// registers.
///
/// **Storage.** One block holds a low reserve, the used bytes, and a high reserve:
/// \code
///            padLow          size           padHigh
///       +------------+------------------+-------------+
///       |  reserve   |  byte 0, 1, ...  |   reserve   |
///       +------------+------------------+-------------+
///                    ^ startPosition
/// \endcode
/// Dropping bytes at either end only changes these counts, unless a shift is pending (see below).
/// insertBytes() makes room on the side with fewer bytes: it moves the bytes before the insertion
/// into the low reserve, or those after it into the high reserve. A reserve that is too small first
/// grows by the number of inserted bytes; its new bytes are 0. Bytes that move from the used part
/// into a reserve keep their values.
///
/// **Pending shift.** shiftBitsDown() drops whole bytes immediately and leaves up to 7 bits
/// pending. Every operation that returns, reads or changes the used bytes first applies the pending
/// shift in one pass: it *realigns*, even if it then throws or does nothing. getSize(), clear(),
/// init(), shiftBitsDown(), construction, copying and moving do not realign. Realigning also sets
/// the first byte of the high reserve, if there is one, to 0.
///
/// **Ownership.** A buffer owns its block. The caller deletes a `Kel_ByteBuffer*` that a function
/// returns. This works even if the client has replaced the global `operator new` and
/// `operator delete`, since the class has its own. Pointers and references to the bytes stay valid
/// until the buffer is destroyed or gets a new block: by init(), by assignment, by insertBytes() if
/// a reserve grows, or as the target of a conversion.
///
/// **Limits.** `startPosition + size` must stay below 2^31, since operator[](),
/// moveStartPositionForward() and shiftBitsDown() take 32-bit counts; this is not checked. (The low
/// reserve counts because its bytes can become used bytes again.)
///
/// Hexadecimal text takes two characters for each byte and a NUL. So the text of 2^30 bytes or more
/// exceeds the limit, but setHexStringBitCount() works even on such a text. A function that needs a
/// block of PTRDIFF_MAX bytes or more throws `std::bad_alloc`, as if memory were exhausted. The
/// buffer (or target) then keeps its old contents, but may have been realigned.
///
/// **Preconditions** are marked as such. Debug builds assert them; release builds do not check
/// them.
///
/// **Threads.** Distinct buffers are independent. Only one thread at a time may use a buffer, since
/// even reading may realign it. There is one exception: while no shift is pending, getSize(),
/// getBits(), getBitsLL() and bits2Number() write nothing, so several threads may call them at the
/// same time. After shiftBitsDown(), call ptr() once before the threads start: it realigns.
class Kel_ByteBuffer {
public:
    /// \name Construction
    /// @{

    /// Constructs an empty buffer without a block: getSize() is 0, ptr() is null.
    KELRT_API Kel_ByteBuffer() noexcept;

    /// Constructs a buffer whose bytes are all 0, as init() does. The sizes are in bytes.
    /// \throws std::bad_alloc
    KELRT_API Kel_ByteBuffer(std::uint64_t size, std::uint64_t padLow, std::uint64_t padHigh);

    /// Copies \a size bytes from \a source into a new block. The bytes of both reserves are 0.
    /// \pre source designates at least size bytes (it may be null when size is 0)
    /// \throws std::bad_alloc
    KELRT_API Kel_ByteBuffer(const unsigned char* source, std::uint64_t size, std::uint64_t padLow,
                             std::uint64_t padHigh);

    /// Copies the block with its layout and contents, including both reserves and the pending
    /// shift. \throws std::bad_alloc
    KELRT_API Kel_ByteBuffer(const Kel_ByteBuffer& other);

    /// Takes over the block of \a other, which is then as if default-constructed.
    KELRT_API Kel_ByteBuffer(Kel_ByteBuffer&& other) noexcept;

    /// Copies the block as the copy constructor does. Assigning a buffer to itself changes nothing.
    /// \throws std::bad_alloc; this buffer is then unchanged
    KELRT_API Kel_ByteBuffer& operator=(const Kel_ByteBuffer& other);

    /// Takes over the block of \a other, which is then as if default-constructed. Assigning a
    /// buffer to itself changes nothing.
    KELRT_API Kel_ByteBuffer& operator=(Kel_ByteBuffer&& other) noexcept;

    /// Releases the block.
    KELRT_API ~Kel_ByteBuffer();

    /// Replaces the block with a new one of \a padLow + \a size + \a padHigh bytes, all of them 0.
    /// No shift is pending afterwards.
    /// \throws std::bad_alloc if memory is exhausted or the sum is too large for a block; the
    /// buffer is then unchanged
    KELRT_API void init(std::uint64_t size, std::uint64_t padLow, std::uint64_t padHigh);

    /// @}
    /// \name Bytes
    /// Counts are in bytes. Positions are byte offsets from the first used byte.
    /// @{

    /// Returns the number of used bytes.
    [[nodiscard]] std::uint64_t getSize() const noexcept { return size; }

    /// Sets every byte of the block, both reserves included, to 0. Keeps the counts and a pending
    /// shift.
    KELRT_API void clear() noexcept;

    /// Realigns, and returns the address of the first used byte, or null without a block.
    char* ptr() noexcept { return reinterpret_cast<char*>(uPtr()); }

    /// Does the same as ptr().
    unsigned char* uPtr() noexcept {
        byteAlign();
        return used();
    }

    /// Realigns, and returns byte \a index. \pre 0 <= index < getSize()
    char& operator[](std::int32_t index) noexcept {
        assert(index >= 0 && static_cast<std::uint64_t>(index) < size && "0 <= index < getSize()");
        return ptr()[index];
    }

    /// Inserts \a byteCount bytes of unspecified value before byte \a atByte. If \a atByte is above
    /// half the size, the bytes from \a atByte on move into the high reserve; otherwise the bytes
    /// before \a atByte move into the low reserve. If this reserve is smaller than \a byteCount,
    /// the buffer first gets a new block in which the reserve is larger by \a byteCount.
    /// \code
    /// b0 b1 b2 b3, insertBytes(3, 2) => b0 b1 b2 x x b3
    /// b0 b1 b2 b3, insertBytes(9, 1) => b0 b1 b2 b3 x     // at or beyond the end: appended
    /// \endcode
    /// \return always 0
    /// \throws std::bad_alloc if memory is exhausted or the block would become too large; the
    /// buffer is then realigned and otherwise unchanged
    KELRT_API std::int32_t insertBytes(std::uint64_t atByte, std::uint64_t byteCount);

    /// Moves the last \a byteCount bytes into the high reserve. \pre byteCount <= getSize()
    KELRT_API void removeBytesAtEnd(std::uint64_t byteCount) noexcept;

    /// Moves the first \a byteCount bytes into the low reserve. A negative count moves bytes of the
    /// reserve back into the used part; their values do not change.
    /// \pre -padLow <= byteCount <= getSize()
    KELRT_API void moveStartPositionForward(std::int32_t byteCount) noexcept;

    /// @}
    /// \name Bit fields
    /// A field consists of \a bitCount bits. The first, bit \a bitPosition of the buffer, is the
    /// least significant. The field must end within the used bytes: the buffer never grows to hold
    /// a field. A field for which bitPosition + bitCount exceeds 2^64 - 1 is outside as well.
    /// @{

    /// Drops the \a bitCount lowest bits: every bit moves down by \a bitCount places, and zeros
    /// enter at the top of the last byte. The count adds to a pending shift. Of the sum, whole
    /// bytes are dropped immediately, and the other 0 to 7 bits stay pending. The bytes themselves
    /// do not change until the buffer realigns.
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

    /// Returns the value of a field: its lowest 64 bits if it is longer, 0 if it has no bits.
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

    /// Returns the low 32 bits of getBitsLL(). \throws std::logic_error as getBitsLL() does
    [[nodiscard]] std::uint32_t getBits(std::uint64_t bitPosition, std::uint64_t bitCount) {
        return static_cast<std::uint32_t>(getBitsLL(bitPosition, bitCount));
    }

    /// Writes the low \a bitCount bits of \a value to a field; bits of the field beyond the 64th
    /// become 0. Bits outside the field do not change.
    /// \code
    /// 00 00, setBitsLL(4, 8, 0xAB) => B0 0A
    /// \endcode
    /// \throws std::logic_error "Internal Error - Kel_ByteBuffer::setBits(ll) bad params." when the
    /// field reaches past the last used byte; the bytes are then unchanged
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

    /// Writes \a value, zero-extended to 64 bits, as setBitsLL() does.
    /// \throws std::logic_error as setBitsLL() does
    void setBits(std::uint64_t bitPosition, std::uint64_t bitCount, std::uint32_t value) {
        setBitsLL(bitPosition, bitCount, value);
    }

    /// @}
    /// \name Hexadecimal text
    /// A buffer that holds text has one character in each used byte, the terminating NUL included.
    /// The ordinary form shows the bytes as one number, most significant digit first. It is written
    /// in upper case and read in either case. The bit-mirrored form shows the bits in groups of
    /// four, from bit 0 on; the first bit of a group is the most significant bit of its digit.
    /// \code
    /// 21 43: "4321" in the ordinary form, "84C2" in the bit-mirrored form
    /// \endcode
    /// No error is reported for a character that is not a digit: each reading function says what
    /// value it has. The target of a conversion may be the source itself. If memory is exhausted,
    /// the target is unchanged; if it is also the source, it is realigned.
    /// @{

    /// Writes the bytes from \a fromByte on as ordinary text with a terminating NUL to \a out.
    /// \pre out lies outside this buffer and has room for 2 * (getSize() - fromByte) + 1
    /// characters, or for the NUL alone if fromByte is at or beyond the end
    KELRT_API void bin2HexString(std::uint64_t fromByte, unsigned char* out) noexcept;

    /// Replaces the contents of \a target with the ordinary text of the bytes from \a fromByte on.
    /// The target then has no reserves. It has 2 * n + 1 used bytes, where n is the size of this
    /// buffer, for every \a fromByte: if \a fromByte is not 0, more NULs follow the text.
    /// \code
    /// 21 43, bin2HexString(0, target) => "4321\0"
    /// 21 43, bin2HexString(1, target) => "43\0\0\0"
    /// \endcode
    /// \throws std::bad_alloc
    KELRT_API void bin2HexString(std::uint64_t fromByte, Kel_ByteBuffer& target);

    /// Fills a new buffer, which the caller deletes, in the same way. \throws std::bad_alloc
    [[nodiscard]] KELRT_API Kel_ByteBuffer* bin2HexString(std::uint64_t fromByte);

    /// Fills a new buffer, which the caller deletes, with the text of the bytes from \a fromByte
    /// on, truncated to \a bitCount bits by setHexStringBitCount().
    /// \code
    /// 21 43, bin2HexString(0, 12) => "321\0"
    /// FF FF, bin2HexString(0, 10) => "3FF\0"
    /// \endcode
    /// \throws std::bad_alloc
    [[nodiscard]] KELRT_API Kel_ByteBuffer* bin2HexString(std::uint64_t fromByte,
                                                          std::uint64_t bitCount);

    /// Reads the characters \a firstChar to \a lastChar of this buffer as ordinary text and writes
    /// its bytes to \a out, least significant byte first. Two digits a, b become the byte
    /// 16 * a + b, modulo 256. If the number of digits is odd, the first digit alone becomes the
    /// last byte. If \a firstChar is above \a lastChar, nothing is written. A character that is not
    /// a hexadecimal digit has the value of its code minus the code of '0'.
    /// \code
    /// "4321", hex2Bin(0, 3) => 21 43
    /// "4321", hex2Bin(1, 3) => 21 03
    /// \endcode
    /// \pre lastChar < getSize(), and out lies outside this buffer and has room for the bytes, one
    /// for every two digits, rounded up
    KELRT_API void hex2Bin(std::uint64_t firstChar, std::uint64_t lastChar,
                           unsigned char* out) noexcept;

    /// Replaces the contents of \a target with the bytes of the digits \a firstChar to \a lastChar.
    /// The target then has no reserves; it is empty if \a firstChar is above \a lastChar.
    /// \pre lastChar < getSize()
    /// \throws std::bad_alloc
    KELRT_API void hex2Bin(std::uint64_t firstChar, std::uint64_t lastChar, Kel_ByteBuffer& target);

    /// Fills a new buffer, which the caller deletes, in the same way.
    /// \pre lastChar < getSize()
    /// \throws std::bad_alloc
    [[nodiscard]] KELRT_API Kel_ByteBuffer* hex2Bin(std::uint64_t firstChar,
                                                    std::uint64_t lastChar);

    /// Converts bit-mirrored text to a new buffer, which the caller deletes. Each of its reserves
    /// has 10 bytes. A null pointer counts as empty text. If the number of characters is odd, the
    /// last one fills the low four bits of the last byte. A character that is not a hexadecimal
    /// digit has the value of the previous character, or 0 if it is the first.
    /// \code
    /// hex2BinReverse("80")  => 01
    /// hex2BinReverse("A5")  => A5
    /// hex2BinReverse("123") => 48 0C
    /// \endcode
    /// \throws std::bad_alloc
    [[nodiscard]] KELRT_API static Kel_ByteBuffer* hex2BinReverse(const char* hexText);

    /// Replaces the contents of \a target in the same way. \throws std::bad_alloc
    KELRT_API static void hex2BinReverse(const char* hexText, Kel_ByteBuffer& target);

    /// Truncates the ordinary text in this buffer to its \a bitCount least significant bits. The
    /// last ceil(bitCount / 4) digits stay; in the first of them, the excess high bits are cleared.
    /// The other digits move into the low reserve. A text with fewer digits does not change.
    /// \code
    /// "FFFF\0", setHexStringBitCount(10) => "3FF\0"
    /// \endcode
    /// \pre the last used byte is the terminating NUL
    KELRT_API void setHexStringBitCount(std::uint64_t bitCount) noexcept;

    /// @}
    /// \name Reordering
    /// These functions work in place; size, reserves and block stay. swapByteOrder(0, size) and
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
    /// \name Allocation of buffer objects
    /// The library creates buffers and the client deletes them, so both must use one allocator.
    /// An `operator new` or `operator delete` of a class hides all global forms. So the class
    /// declares every form of `new`, and every form of `delete` that takes no size. The sized forms
    /// are not needed: `delete` prefers the form without a size if a class has both.
    /// @{

    /// Allocates one object. \throws std::bad_alloc
    KELRT_API static void* operator new(std::size_t bytes);
    /// Allocates one object; returns null if memory is exhausted.
    KELRT_API static void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept;
    /// Returns \a place, where one object is then constructed.
    KELRT_API static void* operator new(std::size_t bytes, void* place) noexcept;
    /// Allocates an array. \throws std::bad_alloc
    KELRT_API static void* operator new[](std::size_t bytes);
    /// Allocates an array; returns null if memory is exhausted.
    KELRT_API static void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept;
    /// Returns \a place, where an array is then constructed.
    KELRT_API static void* operator new[](std::size_t bytes, void* place) noexcept;
    /// Allocates one object of an over-aligned derived class. \throws std::bad_alloc
    KELRT_API static void* operator new(std::size_t bytes, std::align_val_t alignment);
    /// Allocates one over-aligned object; returns null if memory is exhausted.
    KELRT_API static void* operator new(std::size_t bytes, std::align_val_t alignment,
                                        const std::nothrow_t&) noexcept;
    /// Allocates an array of over-aligned objects. \throws std::bad_alloc
    KELRT_API static void* operator new[](std::size_t bytes, std::align_val_t alignment);
    /// Allocates an array of over-aligned objects; returns null if memory is exhausted.
    KELRT_API static void* operator new[](std::size_t bytes, std::align_val_t alignment,
                                          const std::nothrow_t&) noexcept;
    /// Releases one object.
    KELRT_API static void operator delete(void* memory) noexcept;
    /// Releases one object whose constructor has thrown.
    KELRT_API static void operator delete(void* memory, const std::nothrow_t&) noexcept;
    /// Releases nothing: the caller owns \a place.
    KELRT_API static void operator delete(void* memory, void* place) noexcept;
    /// Releases an array.
    KELRT_API static void operator delete[](void* memory) noexcept;
    /// Releases an array after the constructor of an element has thrown.
    KELRT_API static void operator delete[](void* memory, const std::nothrow_t&) noexcept;
    /// Releases nothing: the caller owns \a place.
    KELRT_API static void operator delete[](void* memory, void* place) noexcept;
    /// Releases one over-aligned object.
    KELRT_API static void operator delete(void* memory, std::align_val_t) noexcept;
    /// Releases one over-aligned object whose constructor has thrown.
    KELRT_API static void operator delete(void* memory, std::align_val_t,
                                          const std::nothrow_t&) noexcept;
    /// Releases an array of over-aligned objects.
    KELRT_API static void operator delete[](void* memory, std::align_val_t) noexcept;
    /// Releases such an array after the constructor of an element has thrown.
    KELRT_API static void operator delete[](void* memory, std::align_val_t,
                                            const std::nothrow_t&) noexcept;
    /// @}

private:
    friend struct ValueAccess; // lets the functions of NumberValue.h check a field

    /// Realigns. If no shift is pending, this costs one branch.
    void byteAlign() noexcept {
        if (pendingBitShift != 0)
            byteAlignSlowCase();
    }
    KELRT_API void byteAlignSlowCase() noexcept;
    /// Moves the first \a bytes used bytes into the low reserve; 2^64 - n moves n bytes back.
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
    /// Returns true if the inline code can access the field: no shift is pending, and the field has
    /// 1 to 64 bits and lies within the complete units of the buffer. Unit n is the bytes 8 * n to
    /// 8 * n + 7. The inline code accesses exactly the units that hold bits of the field. So, if
    /// the first used byte is 8-byte aligned, no access crosses a cache line, and a store can be
    /// forwarded to a later load of the same unit.
    [[nodiscard]] bool isPlainField(std::uint64_t bitPosition,
                                    std::uint64_t bitCount) const noexcept {
        return pendingBitShift == 0 && bitCount - 1 < 64 &&
               bitPosition / 64 + (bitPosition % 64 + bitCount - 1) / 64 < size / 8;
    }
    KELRT_API std::uint64_t getBitsSlowCase(std::uint64_t bitPosition, std::uint64_t bitCount);
    KELRT_API void setBitsSlowCase(std::uint64_t bitPosition, std::uint64_t bitCount,
                                   std::uint64_t value);
    /// Converts a value from host order to little-endian, or back.
    [[nodiscard]] static std::uint64_t littleEndian(std::uint64_t value) noexcept {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
        value = (value >> 8 & 0x00FF00FF00FF00FF) | (value & 0x00FF00FF00FF00FF) << 8;
        value = (value >> 16 & 0x0000FFFF0000FFFF) | (value & 0x0000FFFF0000FFFF) << 16;
        value = value >> 32 | value << 32;
#endif
        return value;
    }
    /// Reads the little-endian 64-bit value in \a p[0..7].
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

    std::uint64_t startPosition = 0; // always equal to padLow; kept for the object layout
    std::int32_t pendingBitShift = 0;
    std::uint64_t size = 0;
    std::uint64_t padLow = 0;
    std::uint64_t padHigh = 0;
    std::unique_ptr<unsigned char[]> storage;
};

} // namespace KelRT
