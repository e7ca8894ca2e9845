// SPDX-License-Identifier: MIT
//
// Exhausted memory on demand: failing_new.cpp replaces the global operator new of the test program.
#pragma once

#include <cstddef>

namespace test {

/// Which allocations fail: all from the chosen one, or that one alone.
enum class Refusal { from, only };

/// While one is alive, allocations fail after \a successes more of them.
class FailingNew {
public:
    explicit FailingNew(long successes = 0, Refusal refusal = Refusal::from);
    FailingNew(const FailingNew&) = delete;
    FailingNew& operator=(const FailingNew&) = delete;
    ~FailingNew();

    /// Whether an allocation has been refused since construction.
    static bool refused();

    /// The size of the largest block that was asked for since construction, in bytes.
    static std::size_t largestBlock();
};

/// True where the replacement also serves the shared library. (On Windows a DLL keeps its own.)
bool failingNewReachesTheLibrary();

} // namespace test
