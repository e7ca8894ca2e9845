// SPDX-License-Identifier: MIT
//
// Tests the file functions under the conventions of both hosts. A fake host replaces the functions
// that call the real one. It injects failures that a real host will not produce.
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
using test_host::Variable;

namespace {

/// Records the calls, such as "exist NAME", and answers them.
struct FakeHost {
    std::set<std::string> successes; ///< the calls for which answer() returns true
    std::vector<std::string> calls;
    std::map<char, std::string> currentDirectories{///< by drive letter, 0 for the current drive
                                                   {0, "C:\\work"},
                                                   {'C', "C:\\work"},
                                                   {'d', "d:\\on\\d"},
                                                   {'E', "E:\\"}};

    bool answer(const std::string& call, const char* path) {
        return successes.contains(calls.emplace_back(call + " " + path));
    }
};
FakeHost host; // NOLINT(cert-err58-cpp): an exception here ends the test, as it should

} // namespace

namespace Port {

bool File::exist(const char* path) {
    return host.answer("exist", path);
}

bool File::isdir(const char* /*path*/) {
    return false; // no test needs it
}

// Always fails. If `successes` has the call, the reason is that another process has just created
// the directory.
bool File::mkdir(const char* path, bool flag) {
    if (host.answer(flag ? "mkdir with flag" : "mkdir", path))
        host.successes.insert(std::string("exist ") + path);
    return false;
}

bool File::readable(const char* path) {
    return host.answer("readable", path);
}

// Always fails. If `successes` has the call, the reason is that another process took the name.
Creation File::create(const char* path) {
    return host.answer("create", path) ? Creation::nameTaken : Creation::refused;
}

// Returns true for a lead byte of code page 932. The next byte may be 0x5C, the code of '\':
// "\x83\\" is one character.
bool isLeadByte(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
}

std::string currentDirectory(char drive) {
    return host.currentDirectories[drive];
}

UT_DIR::UT_DIR(const char* /*directory*/, std::uint8_t /*flag*/) {}

} // namespace Port

namespace {

TEST(FakeHost, TemporaryFileIsRefusedAfter32002Names) {
    const Variable home("USERPROFILE", "C:\\Users\\user");
    const std::string kel = "C:\\Users\\user\\.kel";
    for (const bool racing : {false, true}) { // true: other processes take each name first
        std::vector<std::string> expected{"exist " + kel};
        host.calls.clear();
        host.successes = {(racing ? "mkdir " : "exist ") + kel};
        if (racing)
            expected.insert(expected.end(), {"mkdir " + kel, "exist " + kel});
        for (int number = 0; number <= 32001; ++number) {
            const std::string file = kel + "\\trace" + std::to_string(number);
            expected.push_back("exist " + file);
            if (racing)
                expected.push_back("create " + file);
            host.successes.insert(expected.back());
        }
        EXPECT_EQ(outcome(files::createTempFile, WINDOWS, "trace"),
                  "Too many temporary files exist in the .kel directory with the name trace\n");
        EXPECT_EQ(host.calls, expected);
    }
}

TEST(FakeHost, LibraryIsSearchedInTheCurrentDirectoryAndThenInPath) {
    const char* const cases[][4] = {
        // PATH, name, file that opens, result
        {"C:\\a;;C:\\b", "foo", "C:\\b\\foo.dll", "C:\\b"},
        {"C:\\a;;C:\\b", "foo.dll", "C:\\a\\foo.dll", "C:\\a"},
        {"C:\\a", "foo.DLL", "C:\\a\\foo.DLL.dll", "C:\\a"},
        {"C:\\a", "foo.dll.bak", "C:\\a\\foo.dll.bak", "C:\\a"},
        {"\"C:\\a\"", "foo", "C:\\a\\foo.dll", "Could not find foo in path.\n"},
        {"", "foo", ".\\foo.dll", "."},
        {"", "foo", "", "PATH Environmental Variable not set.\n"},
        {"a;", "foo", "\\foo.dll", "Could not find foo in path.\n"},
        {";", "foo", "\\foo.dll", ""},
        {"C:/a/;;", "foo", "\\foo.dll", ""}, // ";;" at the end is one empty entry
    };
    const Variable searchPath("PATH");
    for (const auto& [path, name, file, expected] : cases) {
        searchPath.set(path);
        host.calls.clear();
        host.successes = {std::string("readable ") + file};
        EXPECT_EQ(outcome(files::findLibrary, WINDOWS, name), expected) << path;
    }
    EXPECT_EQ(host.calls,
              (std::vector<std::string>{"readable .\\foo.dll", "readable C:/a/\\foo.dll",
                                        "readable \\foo.dll"}));
}

TEST(FakeHost, NormalizedPathsKeepTheirDriveOrShare) {
    const char* const cases[][3] = {
        // path, result on Windows in C:\work, result on POSIX in /here
        {"", "", ""},
        {".", "C:\\work", "/here"},
        {"./sub\\", "C:\\work\\sub\\", "/here/sub/"},
        {"C:\\a\\..", "C:", "/here/C:"},
        {"..\\x", "C:\\x", "/x"},
        {"//", "C:\\", "/"},
        {"/a/..", "C:", ""},
        {"C:", "C:", "/here/C:"},
        {"d:x\\", "d:\\on\\d\\x\\", "/here/d:x/"},
        {"E:x", "E:\\x", "/here/E:x"},
        {"\\a/b", "C:\\a\\b", "/a/b"},
        {"//srv/share/../../x", "\\\\srv\\share\\x", "/x"},
        {"\\\\srv\\share\\", "\\\\srv\\share\\", "/srv/share/"},
        {"//srv", "\\\\srv", "/srv"},
        {"///a", "C:\\a", "/a"},
        {"1:\\a", "C:\\work\\1:\\a", "/here/1:/a"},
        {"C:\\\x83\\..\\z", "C:\\\x83\\..\\z", "/here/C:/z"}, // "\x83\\.." is one name on Windows
    };
    for (const auto& [path, windows, posix] : cases) {
        host.currentDirectories[0] = "C:\\work";
        EXPECT_EQ(files::normalize(WINDOWS, path), windows) << path;
        host.currentDirectories[0] = "/here";
        EXPECT_EQ(files::normalize(POSIX, path), posix) << path;
    }
    host.currentDirectories[0] = "/a\\b"; // a single name on POSIX
    EXPECT_EQ(files::normalize(POSIX, "../"), "/");
    EXPECT_EQ(files::normalize(POSIX, "c\\d"), "/a\\b/c/d");
}

TEST(FakeHost, SecondByteOfACharacterIsNoSeparator) {
    const char* const cases[][3] = {
        // current directory, path, result
        {"C:\\", ".", "C:\\"},
        {"C:\\", ".\\a", "C:\\a"},
        {"\\\\srv\\share\\deep", "..\\..\\..\\x", "\\\\srv\\share\\x"},
        {"\\\\srv\\share\\deep", "\\x", "\\\\srv\\share\\x"},
        {"C:\\\x83\\\\a", "..\\x", "C:\\\x83\\\\x"},
        {"", "C:\\\x83\\", "C:\\\x83\\"},
        {"", "C:\\\x83\\\\", "C:\\\x83\\\\"},
        {"", "C:/\x83\\/..\\z", "C:\\z"},
        {"C:\\work", "\xE0\x83\\\x83\\/", "C:\\work\\\xE0\x83\\\x83\\\\"},
        {"", "\\\\s\x83\\\\t\x83\\/../x", "\\\\s\x83\\\\t\x83\\\\x"},
        {"C:\\work", "\x83", "C:\\work\\\x83"}, // half a character
        {"", ".", "Could not read the current directory.\n"},
        {"", "..\\x", "Could not read the current directory.\n"},
        {"", "\\x", "Could not read the current directory.\n"},
        {"", "C:x", "Could not read the current directory.\n"},
    };
    for (const auto& [current, path, expected] : cases) {
        host.currentDirectories = {{0, current}};
        EXPECT_EQ(outcome(files::normalize, WINDOWS, path), expected) << path;
    }
    const Variable dataDir("TOR_KEL_DATADIR");
    EXPECT_EQ(files::dataDirectory(WINDOWS, "D:\\\x83\\"), "D:\\\x83\\\\");
    EXPECT_EQ(files::dataDirectory(WINDOWS, "D:\\\x83\\\\"), "D:\\\x83\\\\");
}

} // namespace
