// SPDX-License-Identifier: MIT
//
// Makes allocations fail: failing_new.cpp replaces the global operator new of the test program.
#pragma once

#include <cstdint>

namespace test {

/// Which allocations fail: all from the chosen one on, or that one alone.
enum class Failure : std::uint8_t { persistent, single };

/// While an object is alive, \a successes more allocations succeed; then one fails, or all do.
class FailingNew {
public:
    explicit FailingNew(long successes = 0, Failure failure = Failure::persistent);
    FailingNew(const FailingNew&) = delete;
    FailingNew& operator=(const FailingNew&) = delete;
    ~FailingNew();

    /// Whether an allocation has failed since construction.
    static bool failed();
};

/// Whether the shared library uses the replacement, too. (On Windows a DLL keeps its own.)
bool failingNewReachesTheLibrary();

} // namespace test
