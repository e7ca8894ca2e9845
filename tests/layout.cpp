// SPDX-License-Identifier: MIT
//
// Checks the sizes and alignments that clients are compiled with. They are the same on every 64-bit
// host; 32-bit hosts align a 64-bit field to 8 bytes (Arm) or to 4 (x86). A change here breaks
// every program that is linked with an earlier build of this major version. abi/libKelUtil.abi
// holds the offsets of the fields.
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include <cstddef>
#include <string>
#include <vector>

namespace {

struct WideField {
    char first;
    std::uint64_t wide;
};

/// Selects the value for this host: 64-bit, 32-bit Arm or 32-bit x86.
constexpr std::size_t on(std::size_t on64, std::size_t onArm, std::size_t onX86) {
    if (sizeof(void*) == 8)
        return on64;
    return offsetof(WideField, wide) == 8 ? onArm : onX86;
}

template <typename Class>
constexpr bool has(std::size_t size, std::size_t alignment) {
    return sizeof(Class) == size && alignof(Class) == alignment;
}

using namespace KelRT;

static_assert(has<std::string>(on(32, 24, 24), on(8, 4, 4)));
static_assert(has<std::vector<int>>(on(24, 12, 12), on(8, 4, 4)));
static_assert(has<Kel_ByteBuffer>(on(48, 48, 40), on(8, 8, 4)));
static_assert(has<Kel_Exception>(on(40, 28, 28), on(8, 4, 4)));
static_assert(has<Kel_Number>(on(48, 32, 32), on(8, 8, 4)));
static_assert(has<Kel_StrTok>(on(64, 48, 48), on(8, 8, 4)));
static_assert(has<Logger>(on(80, 64, 52), on(8, 8, 4)));
static_assert(has<MethodLogger>(on(64, 48, 48), on(8, 4, 4)));

} // namespace
