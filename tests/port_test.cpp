// SPDX-License-Identifier: MIT
//
// The file functions under the conventions of either host, over a host that stands in.
#include "KelRT/Kel_Util.h"
#include "files/files.h"
#include "port/port.h"
#include "port_stand_in.h"
#include "test_host.h"
#include "thrown_by.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

using namespace KelRT;
using Port::Conventions;
using Port::POSIX;
using Port::WINDOWS;
using test::host;
using test::thrownBy;

namespace {

using Texts = std::vector<std::string>;

std::string absolute(const Conventions& conventions, const std::string& path) {
    return Port::FileName(path.c_str(), conventions).GetAbsolutePath(false).c_str();
}

/// Windows as a tool finds it: on drive C, in C:\work.
class OnWindows : public ::testing::Test {
protected:
    OnWindows() {
        host = {};
        host.currentDirectories = {{0, "C:\\work"}, {'C', "C:\\work"}, {'d', "d:\\on\\d"}};
    }
    ~OnWindows() override { host = {}; }

    test_host::Variable home{"USERPROFILE", "C:\\Users\\user"};
    test_host::Variable searchPath{"PATH", "C:\\a;;C:\\b"};
    test_host::Variable dataDir{"TOR_KEL_DATADIR"};
    test_host::Variable sorvaDataDir{"TOR_KEL_SORVADATADIR"};
};

TEST(Conventions, NativeOnesAreThoseOfTheHost) {
    EXPECT_EQ(&Port::NATIVE, test_host::WINDOWS ? &WINDOWS : &POSIX);
}

TEST_F(OnWindows, UserDirectoryIsLookedForAndThenMade) {
    EXPECT_EQ(files::createUserDirectory(WINDOWS), "C:\\Users\\user\\.kel");
    EXPECT_EQ(host.calls, (Texts{"exist C:\\Users\\user\\.kel", "mkdir C:\\Users\\user\\.kel"}));
    host.calls.clear();
    EXPECT_EQ(files::createUserDirectory(WINDOWS), "C:\\Users\\user\\.kel");
    EXPECT_EQ(host.calls, Texts{"exist C:\\Users\\user\\.kel"});
}

TEST_F(OnWindows, UserDirectoryThatCannotBeMadeIsReported) {
    host.mkdirWorks = false;
    const std::string expected =
        "Cannot create C:\\Users\\user\\.kel directory, check the USERPROFILE variable.\n";
    EXPECT_EQ(thrownBy([] { files::createUserDirectory(WINDOWS); }), expected);
    EXPECT_EQ(thrownBy([] { files::createTempFile(WINDOWS, "trace"); }), expected);
}

TEST_F(OnWindows, TemporaryFileTakesTheFirstFreeName) {
    const std::string stem = "C:\\Users\\user\\.kel\\trace";
    host.existing = {"C:\\Users\\user\\.kel", stem + "0", stem + "1"};
    EXPECT_EQ(files::createTempFile(WINDOWS, "trace"), stem + "2");
    EXPECT_EQ(host.calls.back(), "create " + stem + "2");
    EXPECT_EQ(files::createTempFile(WINDOWS, "sub\\a.log"), "C:\\Users\\user\\.kel\\sub\\a.log0");
}

TEST_F(OnWindows, All32002NamesAreTriedInOrder) {
    const std::string stem = "C:\\Users\\user\\.kel\\trace";
    host.everythingExists = true;
    EXPECT_EQ(thrownBy([] { files::createTempFile(WINDOWS, "trace"); }),
              "Too many temporary files exist in the .kel directory with the name trace\n");
    Texts expected{"exist C:\\Users\\user\\.kel"};
    for (int number = 0; number <= 32001; ++number)
        expected.push_back("exist " + stem + std::to_string(number));
    EXPECT_EQ(host.calls, expected); // and none is created
}

TEST_F(OnWindows, LibraryIsProbedInTheCurrentDirectoryAndAlongThePath) {
    host.existing = {"C:\\a\\foo.dll"}; // and may not be read
    EXPECT_EQ(thrownBy([] { files::findLibrary(WINDOWS, "foo"); }),
              "Could not find foo in path.\n");
    EXPECT_EQ(host.calls,
              (Texts{"readable .\\foo.dll", "readable C:\\a\\foo.dll", "readable C:\\b\\foo.dll"}));
    host.readable = {"C:\\b\\foo.dll"};
    EXPECT_EQ(files::findLibrary(WINDOWS, "foo"), "C:\\b");
    host.readable.insert("C:\\a\\foo.dll");
    EXPECT_EQ(files::findLibrary(WINDOWS, "foo.dll"), "C:\\a");
    searchPath.set(std::nullopt);
    EXPECT_EQ(thrownBy([] { files::findLibrary(WINDOWS, "foo"); }),
              "PATH Environmental Variable not set.\n");
    host.readable.insert(".\\foo.dll");
    EXPECT_EQ(files::findLibrary(WINDOWS, "foo"), ".");
}

TEST_F(OnWindows, TwoSeparatorsAtTheEndOfThePathAreOneEmptyEntry) {
    host.readable = {"\\foo.dll"};
    searchPath.set("C:\\a;");
    EXPECT_EQ(thrownBy([] { files::findLibrary(WINDOWS, "foo"); }),
              "Could not find foo in path.\n");
    searchPath.set("C:\\a\\;;");
    host.calls.clear();
    EXPECT_EQ(files::findLibrary(WINDOWS, "foo"), "");
    EXPECT_EQ(host.calls,
              (Texts{"readable .\\foo.dll", "readable C:\\a\\\\foo.dll", "readable \\foo.dll"}));
}

TEST_F(OnWindows, DataDirectoriesComeFromOverridesOrTheTree) {
    struct {
        const char* variable;
        const char* caller;
        const char* library; // that can be opened
        const char* expected;
    } const cases[] = {
        {"D:\\data", "", "", "D:\\data\\"},
        {"D:/data/", "E:\\e", "", "D:\\data\\"},
        {"", "E:\\e", "", "E:\\e\\"},
        {"", "e/", "", "C:\\work\\e\\"},
        {"", "", ".\\libKelJtag.dll", "C:\\data\\kel\\"},
        {"", "", "C:\\tool\\bin\\x64\\libKelJtag.dll", "C:\\tool\\data\\kel\\"},
    };
    searchPath.set("C:\\a;C:\\tool\\bin\\x64");
    host.currentDirectories[0] = "C:\\work\\here";
    for (const auto& [variable, caller, library, expected] : cases) {
        dataDir.set(variable);
        host.readable = {library};
        const bool relative = std::string(caller) == "e/";
        host.currentDirectories[0] = relative ? "C:\\work" : "C:\\work\\here";
        EXPECT_EQ(files::dataDirectory(WINDOWS, caller), expected) << library;
    }
    host.readable = {"C:\\a\\libKelCore.dll"};
    EXPECT_EQ(files::sorvaDataDirectory(WINDOWS), "C:\\data\\lumatrace\\");
    sorvaDataDir.set("\\\\srv\\share\\data/");
    EXPECT_EQ(files::sorvaDataDirectory(WINDOWS), "\\\\srv\\share\\data\\");
}

TEST_F(OnWindows, NormalizedPathsKeepOrLackTheirLastSeparator) {
    struct {
        const char* path;
        const char* expected;
    } const cases[] = {{"", ""},
                       {".", "C:\\work"},
                       {".\\sub", "C:\\work\\sub"},
                       {"./sub\\", "C:\\work\\sub\\"},
                       {".x", "C:\\work\\.x"},
                       {"...", "C:\\work\\..."},
                       {"..\\x", "C:\\x"},
                       {"C:\\a\\b\\..\\c\\", "C:\\a\\c\\"},
                       {"C:\\a\\b\\..\\c", "C:\\a\\c"},
                       {"C:\\a\\..\\", "C:\\"},
                       {"C:\\a\\..", "C:"},
                       {"\\", "C:\\"},
                       {"a\\.", "C:\\work\\a"}};
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(files::normalize(WINDOWS, path), expected) << path;
    host.currentDirectories[0] = "C:\\";
    EXPECT_EQ(files::normalize(WINDOWS, "."), "C:\\");
    EXPECT_EQ(files::normalize(WINDOWS, ".\\a"), "C:\\a");
    host.currentDirectories[0] = "/";
    EXPECT_EQ(files::normalize(POSIX, "."), "/");
    EXPECT_EQ(files::normalize(POSIX, ".."), "");
}

TEST_F(OnWindows, UnreadableCurrentDirectoryConcernsEveryRelativePath) {
    host.currentDirectories.clear();
    for (const auto& conventions : {WINDOWS, POSIX}) {
        for (const char* const path : {".", ".\\", "./x", ".x", "..", "..\\x", "x/y"})
            EXPECT_EQ(thrownBy([&, path] { files::normalize(conventions, path); }),
                      "Could not read the current directory.\n")
                << path;
    }
    EXPECT_EQ(thrownBy([] { files::normalize(WINDOWS, "\\x"); }),
              "Could not read the current directory.\n");
    EXPECT_EQ(files::normalize(WINDOWS, "C:/x"), "C:\\x");
    EXPECT_EQ(files::normalize(POSIX, "\\x"), "/x");
}

TEST_F(OnWindows, ListingThatBreaksOffKeepsTheList) {
    host.listingBreaksOff = true;
    Texts list{"kept"};
    EXPECT_EQ(thrownBy([&] { Kel_Util::getDirectoryFileList("dir", true, list); }),
              "Could not open the directory: dir\n");
    EXPECT_EQ(list, Texts{"kept"});
    host.listingBreaksOff = false;
    Kel_Util::getDirectoryFileList("dir", false, list);
    EXPECT_EQ(list, (Texts{"first", "second"}));
    EXPECT_EQ(host.calls, (Texts{"list 0 dir", "list 1 dir"}));
}

TEST_F(OnWindows, AbsoluteFormKnowsDrivesAndShares) {
    struct {
        const char* path;
        const char* windows;
        const char* posix; // in /work
    } const cases[] = {
        {"c:/a/../b", "c:\\b", "/work/c:/b"},
        {"C:", "C:\\work", "/work/C:"},
        {"C:x", "C:\\work\\x", "/work/C:x"},
        {"d:x\\", "d:\\on\\d\\x\\", "/work/d:x/"},
        {"D:x", "D:\\x", "/work/D:x"}, // no current directory is known there
        {"C:\\..\\..", "C:\\", "/"},
        {"\\a/b", "C:\\a\\b", "/a/b"},
        {"//srv/share/../../x", "\\\\srv\\share\\x", "/x"},
        {"\\\\srv/share", "\\\\srv\\share", "/srv/share"},
        {"\\\\srv\\share\\", "\\\\srv\\share\\", "/srv/share/"},
        {"//srv/", "\\\\srv\\", "/srv/"},
        {"//srv", "\\\\srv", "/srv"},
        {"///a", "C:\\a", "/a"},
        {"//", "C:\\", "/"},
        {"1:\\a", "C:\\work\\1:\\a", "/work/1:/a"},
        {"", "C:\\work", "/work"},
    };
    for (const auto& [path, windows, posix] : cases) {
        host.currentDirectories[0] = "C:\\work";
        EXPECT_EQ(absolute(WINDOWS, path), windows) << path;
        host.currentDirectories[0] = "/work";
        EXPECT_EQ(absolute(POSIX, path), posix) << path;
    }
    host.currentDirectories[0] = "\\\\srv\\share\\deep";
    EXPECT_EQ(absolute(WINDOWS, "..\\..\\..\\x"), "\\\\srv\\share\\x");
    EXPECT_EQ(absolute(WINDOWS, "\\x"), "\\\\srv\\share\\x");
    host.currentDirectories[0] = "/a\\b"; // one name on that host
    EXPECT_EQ(absolute(POSIX, ".."), "/");
    EXPECT_EQ(absolute(POSIX, "c\\d"), "/a\\b/c/d");
}

/// What absolute() gives, found slowly: one character after the other is pushed on a text, and a
/// part is looked at when it is complete.
std::string slowAbsolute(char separator, const std::string& root, const std::string& path) {
    std::string text = root;
    std::string part;
    for (const char character : path + "/") {
        if (character != '/' && character != '\\') {
            part += character;
            continue;
        }
        if (part == "..")
            text.erase(text.size() > root.size() ? text.rfind(separator) : text.size());
        else if (!part.empty() && part != ".")
            text += separator + part;
        part.clear();
    }
    const bool ends = path.back() == '/' || path.back() == '\\';
    return text.size() == root.size() || ends ? text + separator : text;
}

TEST_F(OnWindows, AbsoluteFormAgreesWithTheModel) {
    constexpr unsigned SEED = 20110314;
    std::printf("seed %u\n", SEED);
    std::mt19937 random(SEED);
    const Texts pieces{".", "..", "/", "\\", "a", "bc", "...", "/", "..", "/"};
    host.currentDirectories[0] = "/";
    for (int round = 0; round < 20000; ++round) {
        std::string rest = round % 2 == 0 ? "/" : "\\";
        for (auto count = random() % 12; count != 0; --count)
            rest += pieces[random() % pieces.size()];
        EXPECT_EQ(absolute(WINDOWS, "C:" + rest), slowAbsolute('\\', "C:", rest)) << rest;
        EXPECT_EQ(absolute(POSIX, rest), slowAbsolute('/', "", rest)) << rest;
        const std::string normalized = files::normalize(POSIX, rest);
        EXPECT_EQ(Port::endsInSeparator(normalized), Port::endsInSeparator(rest)) << rest;
    }
}

} // namespace
