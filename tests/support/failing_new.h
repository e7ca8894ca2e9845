// SPDX-License-Identifier: MIT
//
// Makes allocations fail: failing_new.cpp replaces the global operator new of the test program.
#pragma once

#include <cstdint>

namespace test {

/// Tells whether the allocations after the first failure fail, too.
enum class Failure : std::uint8_t { persistent, single };

/// While an object exists, the first \a successes allocations succeed, and the next one fails. With
/// Failure::persistent, all later ones fail, too.
class FailingNew {
public:
    explicit FailingNew(long successes = 0, Failure failure = Failure::persistent);
    FailingNew(const FailingNew&) = delete;
    FailingNew& operator=(const FailingNew&) = delete;
    ~FailingNew();

    /// Returns whether an allocation has failed since construction.
    static bool failed();
};

/// Returns whether the shared library uses the replacement, too. On Windows, a DLL keeps its own
/// operator new.
bool failingNewReachesTheLibrary();

} // namespace test
