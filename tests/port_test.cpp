// SPDX-License-Identifier: MIT
//
// Tests the file functions under the conventions of both hosts. A fake host replaces the functions
// that call the real one. It injects failures that a real host will not produce.
#include "KelRT/Kel_Util.h"
#include "files/data_dirs.h"
#include "files/home.h"
#include "files/library_search.h"
#include "files/paths.h"
#include "port/file_name.h"
#include "support/host.h"
#include "support/outcome.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

using namespace KelRT;
using Port::POSIX;
using Port::WINDOWS;
using test::outcome;
using Texts = std::vector<std::string>;

namespace {

struct FakeHost {
    std::set<std::string> readable;        ///< files that open for reading
    std::set<std::string> createdByOthers; ///< others create these just before the library does
    std::set<std::string> directories;     ///< these exist; mkdir() adds one that others create
    bool everythingExists = false;
    bool listingFails = false;
    std::map<char, std::string> currentDirectories; ///< by drive letter, 0 for the current drive

    std::vector<std::string> calls; ///< such as "exist NAME"
};
FakeHost host; // reset for each test

void record(const std::string& call, const char* path) {
    host.calls.push_back(call + " " + path);
}

} // namespace

namespace Port {

bool File::exist(const char* path) {
    record("exist", path);
    return host.everythingExists || host.directories.contains(path);
}

bool File::isdir(const char* path) {
    record("isdir", path);
    return false;
}

bool File::mkdir(const char* path, bool flag) {
    record(flag ? "mkdir with flag" : "mkdir", path);
    if (host.createdByOthers.contains(path))
        host.directories.insert(path);
    return false;
}

bool File::readable(const char* path) {
    record("readable", path);
    return host.readable.contains(path);
}

Creation File::create(const char* path) {
    record("create", path);
    return host.createdByOthers.contains(path) ? Creation::nameTaken : Creation::refused;
}

bool isLeadByte(char /*byte*/) {
    return false;
}

std::string currentDirectory(char drive) {
    const auto found = host.currentDirectories.find(drive);
    return found != host.currentDirectories.end() ? found->second : "";
}

UT_DIR::UT_DIR(const char* directory, std::uint8_t flag) {
    record("list " + std::to_string(flag), directory);
    entries = {"first", "second"};
    valid = !host.listingFails;
}

} // namespace Port

namespace {

constexpr const char* UNREADABLE = "Could not read the current directory.\n";

std::string absolute(const Port::Conventions& conventions, const std::string& path) {
    return Port::FileName(path.c_str(), conventions).GetAbsolutePath(false).c_str();
}

/// Sets up a fake Windows host whose current directory is C:\work.
class OnWindows : public ::testing::Test {
protected:
    OnWindows() {
        host = {};
        host.currentDirectories = {
            {0, "C:\\work"}, {'C', "C:\\work"}, {'d', "d:\\on\\d"}, {'E', "E:\\"}};
    }
    ~OnWindows() override { host = {}; }

    test_host::Variable home{"USERPROFILE", "C:\\Users\\user"};
    test_host::Variable searchPath{"PATH", "C:\\a;;C:\\b"};
    test_host::Variable dataDir{"TOR_KEL_DATADIR"};
};

TEST_F(OnWindows, All32002NamesAreTriedInOrder) {
    EXPECT_EQ(outcome(files::createTempFile, WINDOWS, "trace"),
              "Cannot create C:\\Users\\user\\.kel directory, check the USERPROFILE variable.\n");
    host.everythingExists = true;
    host.calls.clear();
    EXPECT_EQ(outcome(files::createTempFile, WINDOWS, "trace"),
              "Too many temporary files exist in the .kel directory with the name trace\n");
    Texts expected{"exist C:\\Users\\user\\.kel"};
    for (int number = 0; number <= 32001; ++number)
        expected.push_back("exist C:\\Users\\user\\.kel\\trace" + std::to_string(number));
    EXPECT_EQ(host.calls, expected); // and no file is created
}

TEST_F(OnWindows, WhatAnotherProcessCreatesIsNotCreatedAgain) {
    const std::string kel = "C:\\Users\\user\\.kel";
    host.createdByOthers = {kel, kel + "\\trace0", kel + "\\trace1"};
    EXPECT_EQ(outcome(files::createTempFile, WINDOWS, "trace"), kel + "\\trace2");
    Texts expected{"exist " + kel, "mkdir " + kel, "exist " + kel};
    for (const char* const name : {"trace0", "trace1", "trace2"})
        for (const char* const call : {"exist ", "create "})
            expected.push_back(call + kel + "\\" + name);
    EXPECT_EQ(host.calls, expected);
    for (int number = 0; number <= 32001; ++number)
        host.createdByOthers.insert(kel + "\\trace" + std::to_string(number));
    EXPECT_EQ(outcome(files::createTempFile, WINDOWS, "trace"),
              "Too many temporary files exist in the .kel directory with the name trace\n");
    EXPECT_EQ(host.calls.back(), "create " + kel + "\\trace32001");
}

TEST_F(OnWindows, LibraryIsProbedInTheCurrentDirectoryAndAlongThePath) {
    const char* const cases[][4] = {
        // PATH, name, readable file, result
        {"C:\\a;;C:\\b", "foo", "C:\\b\\foo.dll", "C:\\b"},
        {"C:\\a;;C:\\b", "foo.dll", "C:\\a\\foo.dll", "C:\\a"},
        {"", "foo", ".\\foo.dll", "."},
        {"", "foo", "", "PATH Environmental Variable not set.\n"},
        {"a;", "foo", "\\foo.dll", "Could not find foo in path.\n"},
        {";", "foo", "\\foo.dll", ""},
        {"C:/a/;;", "foo", "\\foo.dll", ""}, // ends in one empty entry, not two
    };
    for (const auto& [path, name, readable, expected] : cases) {
        searchPath.set(path);
        host.calls.clear();
        host.readable = {readable};
        EXPECT_EQ(outcome(files::findLibrary, WINDOWS, name), expected) << path;
    }
    EXPECT_EQ(host.calls,
              (Texts{"readable .\\foo.dll", "readable C:/a/\\foo.dll", "readable \\foo.dll"}));
    searchPath.set("C:\\a;C:\\tool\\bin\\x64");
    host.readable = {"C:\\tool\\bin\\x64\\libKelJtag.dll"};
    EXPECT_EQ(files::dataDirectory(WINDOWS, ""), "C:\\tool\\data\\kel\\");
    EXPECT_EQ(files::dataDirectory(WINDOWS, "../e/"), "C:\\e\\");
}

TEST_F(OnWindows, NormalizedPathsEndInASeparatorIfGivenOne) {
    EXPECT_EQ(files::normalize(WINDOWS, ""), "");
    EXPECT_EQ(files::normalize(WINDOWS, "./sub\\"), "C:\\work\\sub\\");
    EXPECT_EQ(files::normalize(WINDOWS, "C:\\a\\..\\"), "C:\\");
    EXPECT_EQ(files::normalize(WINDOWS, "C:\\a\\.."), "C:");
    host.currentDirectories[0] = "C:\\";
    EXPECT_EQ(files::normalize(WINDOWS, "."), "C:\\");
    EXPECT_EQ(files::normalize(WINDOWS, ".\\a"), "C:\\a");
    host.currentDirectories.clear();
    for (const char* const path : {".", ".\\", "./x", ".x", "..", "..\\x", "x/y"}) {
        EXPECT_EQ(outcome(files::normalize, WINDOWS, path), UNREADABLE) << path;
        EXPECT_EQ(outcome(files::normalize, POSIX, path), UNREADABLE) << path;
    }
    for (const char* const path : {"\\x", "C:x"})
        EXPECT_EQ(outcome(files::normalize, WINDOWS, path), UNREADABLE);
    EXPECT_EQ(files::normalize(WINDOWS, "C:/x"), "C:\\x");
    EXPECT_EQ(files::normalize(POSIX, "\\x"), "/x");
}

TEST_F(OnWindows, FailedListingKeepsTheList) {
    host.listingFails = true;
    Texts list{"kept"};
    EXPECT_THROW(Kel_Util::getDirectoryFileList("dir", true, list), Kel_Exception);
    EXPECT_EQ(list, Texts{"kept"});
    host.listingFails = false;
    Kel_Util::getDirectoryFileList("dir", false, list);
    EXPECT_EQ(list, (Texts{"first", "second"}));
    EXPECT_EQ(host.calls, (Texts{"list 0 dir", "list 1 dir"}));
}

TEST_F(OnWindows, AbsoluteFormKnowsDrivesAndShares) {
    const char* const cases[][3] = {
        // path, absolute form in C:\work, absolute form in /here
        {"c:/a/../b", "c:\\b", "/here/c:/b"},
        {"..\\x", "C:\\x", "/x"},
        {"//", "C:\\", "/"},
        {"C:", "C:\\work", "/here/C:"},
        {"C:x", "C:\\work\\x", "/here/C:x"},
        {"d:x\\", "d:\\on\\d\\x\\", "/here/d:x/"},
        {"E:x", "E:\\x", "/here/E:x"},
        {"C:\\..\\..", "C:\\", "/"},
        {"\\a/b", "C:\\a\\b", "/a/b"},
        {"//srv/share/../../x", "\\\\srv\\share\\x", "/x"},
        {"\\\\srv/share", "\\\\srv\\share", "/srv/share"},
        {"\\\\srv\\share\\", "\\\\srv\\share\\", "/srv/share/"},
        {"//srv/", "\\\\srv\\", "/srv/"},
        {"//srv", "\\\\srv", "/srv"},
        {"///a", "C:\\a", "/a"},
        {"1:\\a", "C:\\work\\1:\\a", "/here/1:/a"},
        {"", "C:\\work", "/here"},
    };
    for (const auto& [path, windows, posix] : cases) {
        host.currentDirectories[0] = "C:\\work";
        EXPECT_EQ(absolute(WINDOWS, path), windows) << path;
        host.currentDirectories[0] = "/here";
        EXPECT_EQ(absolute(POSIX, path), posix) << path;
    }
    host.currentDirectories[0] = "\\\\srv\\share\\deep";
    EXPECT_EQ(absolute(WINDOWS, "..\\..\\..\\x"), "\\\\srv\\share\\x");
    EXPECT_EQ(absolute(WINDOWS, "\\x"), "\\\\srv\\share\\x");
    host.currentDirectories[0] = "/a\\b"; // a single name on POSIX
    EXPECT_EQ(absolute(POSIX, ".."), "/");
    EXPECT_EQ(absolute(POSIX, "c\\d"), "/a\\b/c/d");
}

// Returns true for a lead byte of code page 932. The next byte may be 0x5C, the code of '\':
// "\x83\\" is one character.
bool isLeadByteOf932(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
}

TEST_F(OnWindows, SeparatorsStandBetweenCharacters) {
    constexpr Port::Conventions CODE_PAGE_932{'\\', ";", ".dll", isLeadByteOf932};
    const char* const cases[][2] = {
        {"C:\\\x83\\", "C:\\\x83\\"},
        {"C:\\\x83\\\\", "C:\\\x83\\\\"},
        {"C:/\x83\\/..\\z", "C:\\z"},
        {"C:\\\x83\\..\\z", "C:\\\x83\\..\\z"}, // "\x83\\.." is one name
        {"\xE0\x83\\\x83\\/", "C:\\work\\\xE0\x83\\\x83\\\\"},
        {"\\\\s\x83\\\\t\x83\\/../x", "\\\\s\x83\\\\t\x83\\\\x"},
        {"\x83", "C:\\work\\\x83"}, // half a character
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(files::normalize(CODE_PAGE_932, path), expected) << path;
    EXPECT_EQ(files::normalize(WINDOWS, "C:\\\x83\\..\\z"), "C:\\z");
    host.currentDirectories[0] = "C:\\\x83\\\\a";
    EXPECT_EQ(files::normalize(CODE_PAGE_932, "..\\x"), "C:\\\x83\\\\x");
    for (const char* const path : {"D:\\\x83\\", "D:\\\x83\\\\"}) {
        const test_host::Variable sorva("TOR_KEL_SORVADATADIR", path);
        EXPECT_EQ(files::dataDirectory(CODE_PAGE_932, path), "D:\\\x83\\\\");
        EXPECT_EQ(files::sorvaDataDirectory(CODE_PAGE_932), "D:\\\x83\\\\");
        sorva.set({});
    }
}

} // namespace
