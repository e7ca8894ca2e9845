// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Exception.h"
#include "KelRT/Version.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <exception>
#include <regex>
#include <string>
#include <thread>

using namespace KelRT;

namespace {

// Every test runs in its own process, so each of these begins with empty version texts.

TEST(Version, TextsHaveTheirFormsAndTheLongestFillsTheOthers) {
    const std::string full = getVersionWithBuildNumber();
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(full, parts,
                                 std::regex(R"(((\d+\.\d+) [A-Z]\.\d\d[a-z]) - Compiled )"
                                            R"(((Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) )"
                                            R"([ 123]\d \d{4} [012]\d:[0-5]\d:[0-5]\d))")))
        << full;
    EXPECT_EQ(parts[1], getVersion());
    EXPECT_EQ(parts[2], getVersionNumber());
    EXPECT_EQ(parts[3], getBuildNumber());
}

TEST(Version, RepeatedQueriesGiveTheSamePointer) {
    for (const auto query :
         {getVersionNumber, getBuildNumber, getVersion, getVersionWithBuildNumber}) {
        const char* const first = query();
        const std::string text = first;
        static_cast<void>(getVersionWithBuildNumber());
        EXPECT_EQ(query(), first);
        EXPECT_EQ(text, first);
    }
}

TEST(Version, RacingFirstQueriesSeeWholeTexts) {
    constexpr std::size_t THREADS = 8;
    std::atomic<std::size_t> waiting{THREADS};
    std::array<std::string, THREADS> seen;
    std::array<std::thread, THREADS> threads;
    for (std::size_t i = 0; i < THREADS; ++i)
        threads[i] = std::thread([&waiting, &text = seen[i], i] {
            --waiting;
            while (waiting != 0)
                std::this_thread::yield();
            text = i % 2 == 0 ? getVersionWithBuildNumber()
                              : std::string(getVersion()) + " - Compiled " + getBuildNumber();
        });
    for (auto& thread : threads)
        thread.join();
    for (const auto& text : seen)
        EXPECT_EQ(text, getVersionWithBuildNumber());
}

TEST(Exception, CopiesAreIndependent) {
    const std::string withNul("a\0b", 3);
    Kel_Exception original(withNul);
    const Kel_Exception copy(original);
    Kel_Exception assigned("other");
    assigned = original;
    original = Kel_Exception("changed");
    EXPECT_EQ(copy.what() + assigned.what() + original.what(), withNul + withNul + "changed");
}

TEST(Exception, CallsTheOverridingWhat) {
    static_assert(!std::is_base_of_v<std::exception, Kel_Exception>);
    struct Wrapped : Kel_Exception {
        using Kel_Exception::Kel_Exception;
        std::string what() const override { return "wrapped " + Kel_Exception::what(); }
    };
    const Wrapped wrapped("cause");
    const Kel_Exception& exception = wrapped;
    EXPECT_EQ(exception.what(), "wrapped cause");
}

} // namespace
