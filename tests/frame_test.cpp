// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Exception.h"
#include "KelRT/Version.h"
#include "support/threads.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <regex>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace KelRT;

namespace {

// Every test runs in its own process, so no version text has been composed when it starts.

TEST(Version, TheLongestTextHasTheDocumentedFormAndContainsTheOthers) {
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

TEST(Version, ThreadsGetTheSameCompleteTexts) {
    const auto queries = {getVersionNumber, getBuildNumber, getVersion, getVersionWithBuildNumber};
    // Holds the pointer that a query returns, and a copy of the text.
    using Seen = std::pair<const char*, std::string>;
    const auto query = [&](std::size_t number) {
        const char* const text = queries.begin()[number % 4]();
        return Seen(text, text);
    };
    const std::vector<Seen> first = test::resultsOfThreads(8, query);
    for (std::size_t i = 0; i < first.size(); ++i)
        EXPECT_EQ(query(i), first[i]);
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
    const Kel_Exception& exception = Wrapped("cause");
    EXPECT_EQ(exception.what(), "wrapped cause");
}

} // namespace
