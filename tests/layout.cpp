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
    std::uint64_t wide;
};

// Each list below has values for 64-bit hosts, 32-bit Arm and 32-bit x86. HOST selects this host's.
constexpr int HOST = sizeof(void*) == 8 ? 0 : alignof(WideField) == 8 ? 1 : 2;

template <typename Class>
constexpr bool has(const std::size_t (&sizes)[3], const std::size_t (&alignments)[3]) {
    return sizeof(Class) == sizes[HOST] && alignof(Class) == alignments[HOST];
}

using namespace KelRT;

static_assert(has<std::string>({32, 24, 24}, {8, 4, 4}));
static_assert(has<std::vector<int>>({24, 12, 12}, {8, 4, 4}));
static_assert(has<Kel_ByteBuffer>({48, 48, 40}, {8, 8, 4}));
static_assert(has<Kel_Exception>({40, 28, 28}, {8, 4, 4}));
static_assert(has<Kel_Number>({48, 32, 32}, {8, 8, 4}));
static_assert(has<Kel_StrTok>({64, 48, 48}, {8, 8, 4}));
static_assert(has<Logger>({80, 64, 52}, {8, 8, 4}));
static_assert(has<MethodLogger>({64, 48, 48}, {8, 4, 4}));

} // namespace
