// SPDX-License-Identifier: MIT
//
// Tests the file functions on the real host. A returned path is checked by opening the file.
#include "KelRT/Kel_Util.h"
#include "support/host.h"
#include "support/listing.h"
#include "support/outcome.h"
#include "support/threads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>

using namespace KelRT;
using namespace test;
using namespace test_host;

namespace {

std::string library(const std::string& name) {
    return name + (WINDOWS ? ".dll" : ".so");
}

/// Makes an empty directory the current one, the home and the only entry of PATH. Nothing overrides
/// the data directories.
class Files : public ::testing::Test {
protected:
    std::string temporary(const std::string& name) { return below(here / ".kel", name); }

    TemporaryDirectory here;
    CurrentDirectory current{here.path()};
    Variable home{"USERPROFILE", here.path()};
    Variable searchPath{"PATH", here.path()};
    Variable dataDir{"TOR_KEL_DATADIR"};
    Variable sorvaDataDir{"TOR_KEL_SORVADATADIR"};
};

TEST_F(Files, HomePathIsTheValueOfItsVariable) {
    for (const char* const value : {"C:\\Users\\user", "/home/user/", "relative"}) {
        home.set(value);
        EXPECT_EQ(Kel_Util::getHomePath(), value);
    }
    const char* const message = "USERPROFILE Environmental Variable is not set Correctly.\n";
    home.set("");
    EXPECT_EQ(outcome(Kel_Util::getHomePath), message);
    home.set({});
    EXPECT_EQ(outcome(Kel_Util::createDotLumatraceDir), message);
}

TEST_F(Files, UserDirectoryIsCreatedUnlessItsNameExists) {
    EXPECT_EQ(Kel_Util::createDotLumatraceDir(), here / ".kel");
    EXPECT_TRUE(std::filesystem::remove(here / ".kel"));
    writeFile(here / ".kel", "plain");
    EXPECT_EQ(Kel_Util::createDotLumatraceDir(), here / ".kel");
    EXPECT_EQ(Kel_Util::createDotLumatraceTempFile("trace"), temporary("trace0"));
    EXPECT_EQ(readWholeFile(here / ".kel"), "plain");
    for (const std::string& parent : {here / "missing", here / std::string(5000, 'n')}) {
        home.set(parent);
        EXPECT_EQ(outcome(Kel_Util::createDotLumatraceDir),
                  "Cannot create " + below(parent, ".kel") +
                      " directory, check the USERPROFILE variable.\n");
    }
}

TEST_F(Files, TemporaryFileTakesTheLowestFreeNumber) {
    std::filesystem::create_directories(temporary("trace1"));
    writeFile(temporary("trace0"), "kept");
    std::error_code noLink;
    std::filesystem::create_symlink(here / "victim", temporary("trace2"), noLink);
    if (noLink) // the host refuses to make one
        writeFile(temporary("trace2"));
    for (const char* const name : {"trace3", "trace4"}) {
        EXPECT_EQ(Kel_Util::createDotLumatraceTempFile("trace"), temporary(name));
        EXPECT_TRUE(opens(temporary(name)));
    }
    EXPECT_EQ(readWholeFile(temporary("trace0")), "kept");
    EXPECT_FALSE(opens(here / "victim"));
    const std::string inside = below("sub", "trace0");
    EXPECT_EQ(Kel_Util::createDotLumatraceTempFile(below("sub", "trace")), temporary(inside));
    EXPECT_FALSE(opens(temporary(inside))); // creation fails, which is not reported
}

TEST_F(Files, ThreadsThatStartTogetherGetDistinctTemporaryFiles) {
    Texts expected;
    for (int number = 0; number < 8; ++number)
        expected.push_back(temporary("trace" + std::to_string(number)));
    for (int round = 0; round < 100; ++round) {
        std::filesystem::remove_all(".kel");
        Texts created = resultsOfThreads(8, [](std::size_t /*number*/) {
            return outcome(Kel_Util::createDotLumatraceTempFile, "trace");
        });
        std::sort(created.begin(), created.end());
        EXPECT_EQ(created, expected);
    }
}

TEST_F(Files, NamesAndPathsEndAtTheirFirstNul) {
    const auto cut = [](std::string text) { return text.append("\0/../x.dll.so", 14); };
    std::filesystem::create_directory("d");
    writeFile(library("libfoo"));
    EXPECT_EQ(Kel_Util::createDotLumatraceTempFile(cut("trace")), temporary("trace0"));
    EXPECT_EQ(outcome(Kel_Util::findLibInPath, cut("libfoo")), ".");
    EXPECT_EQ(outcome(Kel_Util::findLibInPath, cut("libbar")), "Could not find libbar in path.\n");
    EXPECT_EQ(Kel_Util::isDirectory(cut("d")), 1);
    EXPECT_EQ(listed(cut("d")), Texts());
    EXPECT_EQ(listed(cut("no")), refused("no"));
    EXPECT_EQ(Kel_Util::normalizePath(cut("d")), here / "d");
    Kel_Util::setUserDataDirPath(cut("d"));
    EXPECT_EQ(Kel_Util::getDataDirPath(), below(here / "d", ""));
    Kel_Util::setUserDataDirPath(cut(""));
    EXPECT_EQ(outcome(Kel_Util::getDataDirPath), "Could not find libKelJtag in path.\n");
}

TEST_F(Files, DirectoriesAreListedAndOtherPathsRefused) {
    std::filesystem::create_directories("d/sub");
    writeFile("d/f.txt");
    const std::pair<std::string, Texts> directories[] = {
        {here.path(), {"d"}}, {"d", {"f.txt", "sub"}}, {"d/", {"f.txt", "sub"}}, {"d/sub", {}}};
    for (const auto& [path, names] : directories) {
        EXPECT_EQ(Kel_Util::isDirectory(path), 1) << path;
        EXPECT_EQ(listed(path), names) << path;
    }
    EXPECT_EQ(listed("d", true), (Texts{".", "..", "f.txt", "sub"}));
    for (const auto& path : Texts{"d/f.txt", "d/no", "d/f.txt/no", "", std::string(9999, 'n')}) {
        EXPECT_EQ(Kel_Util::isDirectory(path), 0) << path;
        EXPECT_EQ(listed(path), refused(path));
    }
    Texts list{"d/sub"};
    Kel_Util::getDirectoryFileList(list[0], false, list); // the argument is in the list
    EXPECT_EQ(list, Texts());
}

TEST_F(Files, DataDirectoriesAreOverriddenOrFoundBesideTheLibraries) {
    const auto expect = [&](const std::string& kel, const std::string& sorva) {
        EXPECT_EQ(outcome(Kel_Util::getDataDirPath), below(below(here / "data", kel), ""));
        EXPECT_EQ(outcome(Kel_Util::getSorvaDataDirPath), below(below(here / "data", sorva), ""));
    };
    std::filesystem::create_directories(library("wrong/libKelCore")); // a directory is no library
    searchPath.set((here / "wrong") + (WINDOWS ? ";" : ":") + (here / "bin/x64"));
    EXPECT_EQ(outcome(Kel_Util::getSorvaDataDirPath), "Could not find libKelCore in path.\n");
    std::filesystem::create_directories("bin/x64");
    writeFile(library("bin/x64/libKelJtag"));
    writeFile(library("bin/x64/libKelCore"));
    expect("kel", "lumatrace");
    for (const char* const end : {"", "/", "\\"}) {
        Kel_Util::setUserDataDirPath((here / "data/mine") + end);
        expect("mine", "lumatrace");
        sorvaDataDir.set((here / "data/none") + end);
        dataDir.set((here / "data/theirs") + end);
        expect("theirs", "none");
        dataDir.set("");
        sorvaDataDir.set("");
    }
    Kel_Util::setUserDataDirPath("");
    searchPath.set({}); // the current directory is searched without PATH, too
    const CurrentDirectory besideTheLibraries(here / "bin/x64");
    expect("kel", "lumatrace");
}

TEST_F(Files, CurrentDirectoryMayContainBackslashesBeLongOrBeRemoved) {
    if (WINDOWS)
        GTEST_SKIP() << "Windows has no such names and locks the current directory";
    std::string expected = here.path();
    std::string name = "a\\b";
    for (int level = 0; level < 21; ++level) { // more than 4,000 characters
        std::filesystem::create_directory(name);
        std::filesystem::current_path(name);
        expected = below(expected, name);
        name = std::string(200, 'n');
    }
    EXPECT_EQ(Kel_Util::normalizePath("."), expected);
    EXPECT_EQ(Kel_Util::normalizePath("x\\y/"), expected + "/x/y/");
    std::filesystem::remove_all(here / "a\\b");
    EXPECT_EQ(outcome(Kel_Util::normalizePath, "."), "Could not read the current directory.\n");
}

// On Windows, fopen decodes names by the code page or, in a UTF-8 locale of UCRT, as UTF-8. So must
// the library: in code page 1252, for example, 0x80 in the first name is U+20AC, not U+0080.
TEST_F(Files, NamesOutsideAsciiAreEncodedAsForFopen) {
    const std::pair<const char*, std::string> names[] = {
        {"C", "\x80 gr\xFC\xDF"}, {".UTF-8", "gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x92\xBE"}};
    for (const auto& [locale, name] : names) {
        if (std::setlocale(LC_ALL, locale) == nullptr)
            continue; // not UCRT
        ASSERT_TRUE(makeDirectory(here / name));
        EXPECT_EQ(Kel_Util::isDirectory(here / name), 1);
        home.set(here / name);
        const std::string kel = below(here / name, ".kel");
        for (const std::string& file : {name + "0", name + "1"}) {
            EXPECT_EQ(Kel_Util::createDotLumatraceTempFile(name), below(kel, file));
            EXPECT_TRUE(opens(Kel_Util::normalizePath(below(kel, file))));
        }
        EXPECT_EQ(listed(kel), (Texts{name + "0", name + "1"}));
        ASSERT_TRUE(changeDirectory(kel));
        EXPECT_EQ(Kel_Util::normalizePath("./x"), below(kel, "x"));
    }
}

TEST(LocalizedMessage, IsConvertedToTheLocaleAndCutBetweenCharacters) {
    const std::string locales[][3] = {
        // name of the locale, its bytes for L"\u3042" and for L"\U0001F4BE"
        {"C", "?", "?"},
        {"C.UTF-8", "\xE3\x81\x82", "\xF0\x9F\x92\xBE"},
        {".UTF-8", "\xE3\x81\x82", "\xF0\x9F\x92\xBE"}, // the name on Windows
        {".932", "\x82\xA0", "?"},
    };
    for (const auto& [locale, kana, disk] : locales) {
        if (std::setlocale(LC_ALL, locale.c_str()) == nullptr)
            continue;
        std::string most; // whole characters in at most 2,047 bytes
        while (most.size() + kana.size() <= 2047)
            most += kana;
        const std::pair<std::wstring, std::string> cases[] = {
            {L"", ""},
            {L"Disk full\n", "Disk full\n"},
            {L"<\U0001F4BE>", "<" + disk + ">"},
            {std::wstring(2048, L'\u3042') + L"x", most},
            {L"\xD800"
             L"x\xDC00\xD800",
             "?x??"}}; // halves of surrogate pairs
        for (const auto& [message, expected] : cases)
            EXPECT_EQ(Kel_Util::getLocalizedPortMsg(message.c_str()), expected) << locale;
    }
    EXPECT_EQ(Kel_Util::getLocalizedPortMsg(nullptr), "");
}

} // namespace
