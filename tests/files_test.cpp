// SPDX-License-Identifier: MIT
//
// The file functions on the real host. Every path that is returned is proved by opening it.
#include "KelRT/Kel_Util.h"
#include "test_host.h"
#include "thrown_by.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

using namespace KelRT;
using test::thrownBy;
using test_host::below;
using test_host::opens;
using test_host::writeFile;

namespace {

constexpr const char* SEP = test_host::SEPARATOR;
constexpr const char* LIST = test_host::WINDOWS ? ";" : ":";

/// \a name with the extension of library files.
std::string library(const std::string& name) {
    return name + (test_host::WINDOWS ? ".dll" : ".so");
}

/// An empty directory that is current, home and all of PATH, with no override set.
class Files : public ::testing::Test {
protected:
    ~Files() override { Kel_Util::setUserDataDirPath(""); }

    void makeDirectory(const std::string& name) {
        std::filesystem::create_directories(here / name);
    }
    std::string inUserDirectory(const std::string& name) const {
        return below(here / ".kel", name);
    }

    test_host::TemporaryDirectory here;
    test_host::CurrentDirectory current{here.path()};
    test_host::Variable home{"USERPROFILE", here.path()};
    test_host::Variable searchPath{"PATH", here.path()};
    test_host::Variable dataDir{"TOR_KEL_DATADIR"};
    test_host::Variable sorvaDataDir{"TOR_KEL_SORVADATADIR"};
};

TEST_F(Files, HomePathIsTheVariableAsItStands) {
    for (const std::string value : {"C:\\Users\\user", "/home/user/", "relative"}) {
        home.set(value);
        EXPECT_EQ(Kel_Util::getHomePath(), value);
    }
    const std::string refusal = "USERPROFILE Environmental Variable is not set Correctly.\n";
    for (const auto& value : {std::optional<std::string>(""), std::optional<std::string>()}) {
        home.set(value);
        EXPECT_EQ(thrownBy(Kel_Util::getHomePath), refusal);
        EXPECT_EQ(thrownBy(Kel_Util::createDotLumatraceDir), refusal);
        EXPECT_EQ(thrownBy([] { Kel_Util::createDotLumatraceTempFile("trace"); }), refusal);
    }
}

TEST_F(Files, UserDirectoryIsMadeOnceAndThenFound) {
    const std::string expected = here / ".kel";
    EXPECT_EQ(Kel_Util::isDirectory(expected), 0);
    EXPECT_EQ(Kel_Util::createDotLumatraceDir(), expected);
    EXPECT_EQ(Kel_Util::isDirectory(expected), 1);
    writeFile(inUserDirectory("kept"));
    EXPECT_EQ(Kel_Util::createDotLumatraceDir(), expected);
    EXPECT_TRUE(opens(inUserDirectory("kept")));
}

TEST_F(Files, AnythingNamedAsTheUserDirectoryIsTakenForIt) {
    writeFile(here / ".kel", "plain");
    EXPECT_EQ(Kel_Util::createDotLumatraceDir(), here / ".kel");
    EXPECT_EQ(test_host::readWholeFile(here / ".kel"), "plain");
    const std::string temporary = Kel_Util::createDotLumatraceTempFile("trace");
    EXPECT_EQ(temporary, inUserDirectory("trace0"));
    EXPECT_FALSE(opens(temporary));
}

TEST_F(Files, UserDirectoryNeedsItsParent) {
    for (const std::string& parent : {here / "missing", here / std::string(5000, 'n')}) {
        home.set(parent);
        EXPECT_EQ(thrownBy(Kel_Util::createDotLumatraceDir),
                  "Cannot create " + below(parent, ".kel") +
                      " directory, check the USERPROFILE variable.\n");
        EXPECT_EQ(Kel_Util::isDirectory(parent), 0);
    }
}

TEST_F(Files, TemporaryFileTakesTheLowestFreeNumber) {
    makeDirectory(".kel");
    makeDirectory(".kel/trace1"); // a directory takes its number too
    const std::string stem = inUserDirectory("trace");
    writeFile(stem + "0", "kept");
    writeFile(stem + "3", "kept");
    for (const char* const number : {"2", "4"}) {
        EXPECT_EQ(Kel_Util::createDotLumatraceTempFile("trace"), stem + number);
        EXPECT_EQ(test_host::readWholeFile(stem + number), "");
    }
    EXPECT_EQ(test_host::readWholeFile(stem + "0"), "kept");
    EXPECT_EQ(Kel_Util::createDotLumatraceTempFile("trace.log"), stem + ".log0");
    EXPECT_TRUE(opens(stem + ".log0"));
}

TEST_F(Files, TemporaryFileInASubdirectoryNeedsIt) {
    const std::string base = below("sub", "trace");
    const std::string expected = inUserDirectory(base + "0");
    EXPECT_EQ(Kel_Util::createDotLumatraceTempFile(base), expected);
    EXPECT_FALSE(opens(expected));
    EXPECT_EQ(Kel_Util::isDirectory(inUserDirectory("sub")), 0);
    makeDirectory(".kel/sub");
    EXPECT_EQ(Kel_Util::createDotLumatraceTempFile(base), expected);
    EXPECT_TRUE(opens(expected));
}

TEST_F(Files, TemporaryFileIsNeverMadeThroughALink) {
    makeDirectory(".kel");
    std::error_code refused;
    std::filesystem::create_symlink(here / "victim", inUserDirectory("trace0"), refused);
    if (refused)
        GTEST_SKIP() << "no symbolic links here";
    EXPECT_EQ(Kel_Util::createDotLumatraceTempFile("trace"), inUserDirectory("trace1"));
    EXPECT_FALSE(opens(here / "victim"));
}

TEST_F(Files, TemporaryNamesEndAt32001) {
    if (test_host::WINDOWS)
        GTEST_SKIP() << "takes minutes; the stand-in for the host shows it";
    makeDirectory(".kel");
    const std::string stem = inUserDirectory("trace");
    for (int number = 0; number <= 32000; ++number)
        writeFile(stem + std::to_string(number));
    EXPECT_EQ(Kel_Util::createDotLumatraceTempFile("trace"), stem + "32001");
    EXPECT_TRUE(opens(stem + "32001"));
    EXPECT_EQ(thrownBy([] { Kel_Util::createDotLumatraceTempFile("trace"); }),
              "Too many temporary files exist in the .kel directory with the name trace\n");
    EXPECT_FALSE(opens(stem + "32002"));
}

TEST_F(Files, OnlyDirectoriesAreDirectories) {
    makeDirectory("d");
    writeFile(here / "f");
    struct {
        std::string path;
        int expected;
    } const cases[] = {{here.path(), 1},
                       {"d", 1},
                       {"d/", 1},
                       {".", 1},
                       {"..", 1},
                       {"f", 0},
                       {"d/missing", 0},
                       {"f/below", 0},
                       {"", 0},
                       {std::string(300, 'n'), 0},
                       {std::string(40000, 'n'), 0}};
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(Kel_Util::isDirectory(path), expected) << path;
}

TEST_F(Files, LibraryFileNameGetsTheExtensionUnlessItHoldsIt) {
    searchPath.set(std::nullopt);
    const std::string upper = test_host::WINDOWS ? "foo.DLL" : "foo.SO";
    struct {
        std::string name;
        std::string file;
    } const cases[] = {{"foo", library("foo")},
                       {library("foo"), library("foo")},
                       {upper, library(upper)},
                       {library("foo") + ".bak", library("foo") + ".bak"},
                       {library(""), library("")}};
    for (const auto& [name, file] : cases) {
        EXPECT_NE(thrownBy([&name = name] { Kel_Util::findLibInPath(name); }), "nothing") << name;
        writeFile(here / file);
        EXPECT_EQ(Kel_Util::findLibInPath(name), ".") << name;
        std::filesystem::remove(here / file);
    }
}

TEST_F(Files, LibraryIsFoundInTheFirstDirectoryThatHasIt) {
    for (const std::string& name : {std::string("a"), std::string("b"), library("c/libfoo")})
        makeDirectory(name); // the last one is no library
    writeFile(here / library("b/libfoo"));
    const std::string a = here / "a";
    const std::string b = here / "b";
    const std::string c = here / "c";
    struct {
        std::string path;
        std::string expected;
    } const cases[] = {{a + LIST + b, b},
                       {a + LIST + LIST + b, b},
                       {LIST + b + LIST + c, b},
                       {b + SEP, b + SEP},
                       {b + "/", b + "/"},
                       {"b", "b"},
                       {c + LIST + b + LIST + LIST, b}};
    for (const auto& [value, expected] : cases) {
        searchPath.set(value);
        const std::string found = Kel_Util::findLibInPath("libfoo");
        EXPECT_EQ(found, expected) << value;
        EXPECT_TRUE(opens(below(found, library("libfoo")))) << value;
    }
    writeFile(here / library("a/libfoo"));
    searchPath.set(a + LIST + b);
    EXPECT_EQ(Kel_Util::findLibInPath("libfoo"), a);
    writeFile(here / library("libfoo"));
    EXPECT_EQ(Kel_Util::findLibInPath("libfoo"), ".");
}

TEST_F(Files, LibraryThatIsNowhereIsReportedByTheNameGiven) {
    makeDirectory("a");
    const std::string endsEmpty = (here / "a") + LIST + LIST;
    for (const std::string& value :
         {here / "a", std::string(LIST), "\"" + here.path() + "\"", endsEmpty}) {
        searchPath.set(value);
        EXPECT_EQ(thrownBy([] { Kel_Util::findLibInPath("libKelJtag"); }),
                  "Could not find libKelJtag in path.\n")
            << value;
        EXPECT_EQ(thrownBy(Kel_Util::getDataDirPath), "Could not find libKelJtag in path.\n");
        EXPECT_EQ(thrownBy(Kel_Util::getSorvaDataDirPath), "Could not find libKelCore in path.\n");
    }
    for (const auto& value : {std::optional<std::string>(""), std::optional<std::string>()}) {
        searchPath.set(value);
        EXPECT_EQ(thrownBy([] { Kel_Util::findLibInPath("libKelJtag"); }),
                  "PATH Environmental Variable not set.\n");
    }
}

/// An installation tree with one file in each of the two data directories.
class DataDirectories : public Files {
protected:
    DataDirectories() {
        for (const char* const name : {"tool/bin/x64", "tool/data/kel", "tool/data/lumatrace",
                                       "tool/data/mine", "tool/data/theirs"})
            makeDirectory(name);
        writeFile(here / library("tool/bin/x64/libKelJtag"));
        writeFile(here / library("tool/bin/x64/libKelCore"));
        searchPath.set(here / "tool/bin/x64");
    }

    /// The directory of the data of one family, and proof that it can be used as it stands.
    std::string inTree(const std::string& family, const std::string& found) {
        writeFile(here / "tool/data/" + family + "/table.csv");
        EXPECT_TRUE(opens(found + "table.csv")) << found;
        return below(below(below(here / "tool", "data"), family), "");
    }
};

TEST_F(DataDirectories, InstallationTreeDecidesWithoutOverrides) {
    std::string found = Kel_Util::getDataDirPath();
    EXPECT_EQ(found, inTree("kel", found));
    found = Kel_Util::getSorvaDataDirPath();
    EXPECT_EQ(found, inTree("lumatrace", found));

    // The library in the current directory comes first, and the search-path plays no part.
    searchPath.set(std::nullopt);
    const test_host::CurrentDirectory besideTheLibraries(here / "tool/bin/x64");
    found = Kel_Util::getDataDirPath();
    EXPECT_EQ(found, inTree("kel", found));
    found = Kel_Util::getSorvaDataDirPath();
    EXPECT_EQ(found, inTree("lumatrace", found));
}

TEST_F(DataDirectories, VariableGoesBeforeTheCallersDirectoryBeforeTheTree) {
    const std::string tree = Kel_Util::getDataDirPath();
    const std::string mine = here / "tool/data/mine";
    Kel_Util::setUserDataDirPath(mine);
    std::string found = Kel_Util::getDataDirPath();
    EXPECT_EQ(found, inTree("mine", found));
    EXPECT_NE(Kel_Util::getSorvaDataDirPath(), found);

    dataDir.set(here / "tool/data/theirs");
    found = Kel_Util::getDataDirPath();
    EXPECT_EQ(found, inTree("theirs", found));
    dataDir.set("");
    EXPECT_EQ(Kel_Util::getDataDirPath(), inTree("mine", mine + SEP));
    Kel_Util::setUserDataDirPath("");
    EXPECT_EQ(Kel_Util::getDataDirPath(), tree);

    sorvaDataDir.set(here / "tool/data/theirs");
    found = Kel_Util::getSorvaDataDirPath();
    EXPECT_EQ(found, inTree("theirs", found));
}

TEST_F(DataDirectories, OverridesMayEndInASeparatorOfEitherKindAndNeedNotExist) {
    searchPath.set(std::nullopt); // the search would fail: it must not be made
    const std::string expected = here / "none" + SEP;
    for (const char* const end : {"", "/", "\\"}) {
        dataDir.set((here / "none") + end);
        sorvaDataDir.set((here / "none") + end);
        EXPECT_EQ(Kel_Util::getDataDirPath(), expected) << end;
        EXPECT_EQ(Kel_Util::getSorvaDataDirPath(), expected) << end;
        dataDir.set(std::nullopt);
        Kel_Util::setUserDataDirPath((here / "none") + end);
        EXPECT_EQ(Kel_Util::getDataDirPath(), expected) << end;
    }
}

TEST_F(Files, NormalizedPathsNameTheSameFile) {
    makeDirectory("sub/deep");
    writeFile(here / "sub/f");
    struct {
        const char* path;
        std::string expected;
    } const cases[] = {{"sub/f", below("sub", "f")},
                       {"./sub\\f", below("sub", "f")},
                       {".\\sub//deep/..\\f", below("sub", "f")},
                       {"sub/missing/../f", below("sub", "f")}};
    for (const auto& [path, expected] : cases) {
        const std::string found = Kel_Util::normalizePath(path);
        EXPECT_EQ(found, here / expected) << path;
        EXPECT_TRUE(opens(found)) << path;
        EXPECT_EQ(Kel_Util::normalizePath(found), found);
    }
    const test_host::CurrentDirectory inSub(here / "sub");
    EXPECT_EQ(Kel_Util::normalizePath("."), here / "sub");
    EXPECT_EQ(Kel_Util::normalizePath("./"), here / "sub" + SEP);
    EXPECT_EQ(Kel_Util::normalizePath(".."), here.path());
    EXPECT_EQ(Kel_Util::normalizePath("..\\x/"), here / "x" + SEP);
    EXPECT_EQ(Kel_Util::normalizePath(""), "");
    EXPECT_EQ(Kel_Util::normalizePath(std::string("f\0g", 3)), below(here / "sub", "f"));
}

TEST_F(Files, CurrentDirectoryMayHaveAnyNameAndLength) {
    if (test_host::WINDOWS)
        GTEST_SKIP() << "names there hold no separators and paths are short";
    std::string expected = here / "a\\b";
    std::filesystem::create_directory(expected);
    std::filesystem::current_path(expected);
    for (int level = 0; level < 20; ++level) { // 4,000 characters and more
        const std::string name(200, 'n');
        std::filesystem::create_directory(name);
        std::filesystem::current_path(name);
        expected += "/" + name;
    }
    EXPECT_EQ(Kel_Util::normalizePath("."), expected);
    EXPECT_EQ(Kel_Util::normalizePath("x\\y/"), expected + "/x/y/");
}

TEST_F(Files, LostCurrentDirectoryConcernsEveryRelativePath) {
    if (test_host::WINDOWS)
        GTEST_SKIP() << "a current directory cannot be removed; the stand-in shows it";
    makeDirectory("lost");
    const test_host::CurrentDirectory lost(here / "lost");
    std::filesystem::remove(here / "lost");
    for (const char* const path : {".", "./x", "x", "..", "../x/", "..\\x"})
        EXPECT_EQ(thrownBy([path] { Kel_Util::normalizePath(path); }),
                  "Could not read the current directory.\n")
            << path;
    EXPECT_EQ(Kel_Util::normalizePath("/a/../b"), "/b");
    EXPECT_EQ(Kel_Util::normalizePath(""), "");
}

std::vector<std::string> sorted(std::vector<std::string> list) {
    std::sort(list.begin(), list.end());
    return list;
}

TEST_F(Files, ListingReplacesTheList) {
    makeDirectory("d/sub");
    writeFile(here / "d/f.txt");
    std::vector<std::string> list{"old", "older", here / "d"};
    Kel_Util::getDirectoryFileList(list[2], false, list);
    EXPECT_EQ(sorted(list), (std::vector<std::string>{"f.txt", "sub"}));
    Kel_Util::getDirectoryFileList("d/", true, list);
    EXPECT_EQ(sorted(list), (std::vector<std::string>{".", "..", "f.txt", "sub"}));
    Kel_Util::getDirectoryFileList("d/sub", false, list);
    EXPECT_TRUE(list.empty());
}

TEST_F(Files, ListingThatFailsKeepsTheList) {
    writeFile(here / "f");
    for (const std::string& directory : {std::string("missing"), std::string("f"), std::string(),
                                         here / "x/y", std::string(5000, 'n')}) {
        std::vector<std::string> list{"kept"};
        EXPECT_EQ(thrownBy([&] { Kel_Util::getDirectoryFileList(directory, true, list); }),
                  "Could not open the directory: " + directory + "\n");
        EXPECT_EQ(list, std::vector<std::string>{"kept"});
    }
}

TEST_F(Files, PathOnADriveCountsFromTheCurrentDirectoryThere) {
    if (!test_host::WINDOWS)
        GTEST_SKIP() << "no drives here";
    const std::string drive = here.path().substr(0, 2);
    EXPECT_EQ(Kel_Util::normalizePath(drive + "x"), here / "x");
    EXPECT_EQ(Kel_Util::normalizePath("Q:x/"), "Q:\\x\\"); // no such drive
    EXPECT_EQ(Kel_Util::normalizePath("\\x"), drive + "\\x");
    EXPECT_EQ(Kel_Util::isDirectory(drive), 1);
    std::vector<std::string> list;
    Kel_Util::getDirectoryFileList(drive, false, list); // of the current directory there
    EXPECT_TRUE(list.empty());
}

// 0x80 to 0x9F are where a code page and the first 256 characters of Unicode differ.
TEST_F(Files, NamesOutsideAsciiAreTheBytesThatFopenTakes) {
    const std::string name = "\x80 gr\xFC\xDF";
    const std::string file = Kel_Util::createDotLumatraceTempFile(name);
    EXPECT_EQ(file, inUserDirectory(name + "0"));
    ASSERT_TRUE(opens(file));
    EXPECT_EQ(Kel_Util::createDotLumatraceTempFile(name), inUserDirectory(name + "1"));

    std::vector<std::string> list;
    Kel_Util::getDirectoryFileList(here / ".kel", false, list);
    EXPECT_EQ(sorted(list), (std::vector<std::string>{name + "0", name + "1"}));
    EXPECT_TRUE(opens(Kel_Util::normalizePath(".kel/" + name + "0")));
}

TEST(LocalizedMessage, EveryCharacterIsNarrowOrAQuestionMark) {
    struct {
        const wchar_t* message;
        const char* expected;
    } const cases[] = {{nullptr, ""},
                       {L"", ""},
                       {L"Disk full", "Disk full"},
                       {L"5 \u20AC off\n", "5 ? off\n"},
                       {L"\u4E2D\u6587", "??"},
                       {L"<\U0001F4BE>", "<?>"}}; // one character, however many units
    for (const auto& [message, expected] : cases)
        EXPECT_EQ(Kel_Util::getLocalizedPortMsg(message), expected);
    const std::wstring half(1, static_cast<wchar_t>(0xD800));
    EXPECT_EQ(Kel_Util::getLocalizedPortMsg((half + L"x" + half).c_str()), "?x?");
}

TEST(LocalizedMessage, IsCutAt2047Bytes) {
    for (const std::size_t length : {2046U, 2047U, 2048U, 5000U})
        EXPECT_EQ(Kel_Util::getLocalizedPortMsg(std::wstring(length, L'm').c_str()),
                  std::string(std::min<std::size_t>(length, 2047), 'm'));
}

// The first locale that the host has, and the form of a character of several bytes there.
TEST(LocalizedMessage, IsNeverCutInsideACharacter) {
    const std::string before = std::setlocale(LC_CTYPE, nullptr);
    std::string form;
    if (std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr)
        form = "\xE3\x81\x82";
    else if (std::setlocale(LC_CTYPE, ".932") != nullptr)
        form = "\x82\xA0";
    else
        GTEST_SKIP() << "no locale with characters of several bytes";
    for (std::size_t fit = 2043; fit <= 2047; ++fit) {
        const std::string whole = std::string(fit, 'm') + form + "x";
        const std::size_t cut = fit + form.size() > 2047 ? fit : 2047;
        EXPECT_EQ(Kel_Util::getLocalizedPortMsg((std::wstring(fit, L'm') + L"\u3042x").c_str()),
                  whole.substr(0, cut));
    }
    ASSERT_NE(std::setlocale(LC_CTYPE, before.c_str()), nullptr);
}

} // namespace
