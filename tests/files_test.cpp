// SPDX-License-Identifier: MIT
//
// Tests the file functions on the real host. A returned path is checked by opening the file.
#include "KelRT/Kel_Util.h"
#include "support/host.h"
#include "support/outcome.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <clocale>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <vector>

using namespace KelRT;
using namespace test_host;
using test::outcome;

namespace {

using Texts = std::vector<std::string>;

constexpr const char* LIST = WINDOWS ? ";" : ":";
constexpr const char* NOT_IN_PATH = "Could not find libfoo in path.\n";
const std::optional<std::string> UNSET;

std::string library(const std::string& name) {
    return name + (WINDOWS ? ".dll" : ".so");
}

/// Calls getDirectoryFileList and returns \a list as it leaves it, sorted.
Texts listed(const std::string& directory, bool listFlag, Texts list = {"old"}) {
    Kel_Util::getDirectoryFileList(directory, listFlag, list);
    std::sort(list.begin(), list.end());
    return list;
}

/// Makes an empty directory the current one, the home and the only entry of PATH. Nothing overrides
/// the data directories.
class Files : public ::testing::Test {
protected:
    ~Files() override { Kel_Util::setUserDataDirPath(""); }

    void makeDirectories(const Texts& names) {
        for (const auto& name : names)
            std::filesystem::create_directories(here / name);
    }
    std::string temporary(const std::string& name) { return below(here / ".kel", name); }

    TemporaryDirectory here;
    CurrentDirectory current{here.path()};
    Variable home{"USERPROFILE", here.path()};
    Variable searchPath{"PATH", here.path()};
    Variable dataDir{"TOR_KEL_DATADIR"};
    Variable sorvaDataDir{"TOR_KEL_SORVADATADIR"};
};

TEST_F(Files, HomeIsTheVariableAsItStands) {
    for (const char* const value : {"C:\\Users\\user", "/home/user/", "relative"}) {
        home.set(value);
        EXPECT_EQ(Kel_Util::getHomePath(), value);
    }
    for (const auto& value : {UNSET, std::optional<std::string>("")}) {
        home.set(value);
        for (const auto function : {Kel_Util::getHomePath, Kel_Util::createDotLumatraceDir})
            EXPECT_EQ(outcome(function),
                      "USERPROFILE Environmental Variable is not set Correctly.\n");
    }
}

TEST_F(Files, UserDirectoryIsMadeOnceAndThenTakenAsItIs) {
    EXPECT_EQ(Kel_Util::createDotLumatraceDir(), here / ".kel");
    writeFile(temporary("kept"));
    EXPECT_EQ(Kel_Util::createDotLumatraceDir(), here / ".kel");
    EXPECT_TRUE(opens(temporary("kept")));
    std::filesystem::remove_all(here / ".kel");
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
    makeDirectories({".kel/trace1"}); // a directory also takes up its number
    writeFile(temporary("trace0"), "kept");
    for (const std::string& name : {std::string("trace2"), std::string("trace3")}) {
        EXPECT_EQ(Kel_Util::createDotLumatraceTempFile("trace"), temporary(name));
        EXPECT_TRUE(opens(temporary(name)));
    }
    EXPECT_EQ(readWholeFile(temporary("trace0")), "kept");
    const std::string inside = below("sub", "trace");
    EXPECT_EQ(Kel_Util::createDotLumatraceTempFile(inside), temporary(inside + "0"));
    EXPECT_FALSE(opens(temporary(inside + "0"))); // creation fails, which is not reported
}

// Several threads use a new home directory at once.
TEST_F(Files, EachTemporaryFileIsReturnedOnceAndKeepsItsContent) {
    constexpr int ROUNDS = 20;
    constexpr int CALLERS = 8;
    for (int round = 0; round < ROUNDS; ++round) {
        const std::string place = here / ("home" + std::to_string(round));
        std::filesystem::create_directory(place);
        home.set(place);
        std::vector<std::string> made(CALLERS);
        std::atomic<int> waiting{CALLERS};
        std::vector<std::thread> callers;
        callers.reserve(made.size());
        for (std::string& path : made)
            callers.emplace_back([&] {
                --waiting;
                while (waiting > 0)
                    std::this_thread::yield();
                path = outcome(Kel_Util::createDotLumatraceTempFile, "trace");
                writeFile(path, path);
            });
        for (std::thread& caller : callers)
            caller.join();
        for (const std::string& path : made)
            EXPECT_EQ(readWholeFile(path), path);
        std::sort(made.begin(), made.end());
        for (int number = 0; number < CALLERS; ++number)
            EXPECT_EQ(made[static_cast<std::size_t>(number)],
                      below(below(place, ".kel"), "trace" + std::to_string(number)));
    }
}

TEST_F(Files, NamesAndPathsEndAtTheirFirstNul) {
    const auto cut = [](std::string text) { return text.append("\0/../x.dll.so", 14); };
    makeDirectories({".kel", "d"});
    EXPECT_EQ(Kel_Util::createDotLumatraceTempFile(cut("trace")), temporary("trace0"));
    EXPECT_EQ(Kel_Util::createDotLumatraceTempFile(cut("trace")), temporary("trace1"));
    writeFile(library("libfoo"));
    EXPECT_EQ(outcome(Kel_Util::findLibInPath, cut("libfoo")), ".");
    EXPECT_EQ(outcome(Kel_Util::findLibInPath, cut("libbar")), "Could not find libbar in path.\n");
    EXPECT_EQ(Kel_Util::isDirectory(cut("d")), 1);
    EXPECT_EQ(listed(cut("d"), false), Texts());
    EXPECT_EQ(outcome([&] { return listed(cut("no"), false).front(); }),
              "Could not open the directory: no\n");
    EXPECT_EQ(Kel_Util::normalizePath(cut("d")), here / "d");
    Kel_Util::setUserDataDirPath(cut("d"));
    EXPECT_EQ(Kel_Util::getDataDirPath(), below(here / "d", ""));
    Kel_Util::setUserDataDirPath(cut(""));
    EXPECT_EQ(outcome(Kel_Util::getDataDirPath), "Could not find libKelJtag in path.\n");
}

TEST_F(Files, TemporaryFileIsNeverMadeThroughALink) {
    makeDirectories({".kel"});
    std::error_code refused;
    std::filesystem::create_symlink(here / "victim", temporary("trace0"), refused);
    if (refused)
        GTEST_SKIP() << "no symbolic links here";
    EXPECT_EQ(Kel_Util::createDotLumatraceTempFile("trace"), temporary("trace1"));
    EXPECT_FALSE(opens(here / "victim"));
}

TEST_F(Files, OnlyDirectoriesAreDirectories) {
    makeDirectories({"d"});
    writeFile(here / "f");
    for (const std::string& path : {here.path(), std::string("d"), std::string("d/")})
        EXPECT_EQ(Kel_Util::isDirectory(path), 1) << path;
    for (const std::string& path : {std::string("f"), std::string("d/missing"),
                                    std::string("f/below"), std::string(), std::string(9999, 'n')})
        EXPECT_EQ(Kel_Util::isDirectory(path), 0) << path;
}

TEST_F(Files, LibraryIsWhereTheFirstFileOpens) {
    makeDirectories({"a", library("c/libfoo"), "b~1"}); // a directory is no library
    writeFile(here / library("b~1/libfoo"));
    const std::string a = here / "a";
    const std::string b = here / "b~1";
    const std::string paths[][2] = {{a + LIST + LIST + b + LIST, b},
                                    {LIST + (here / "c") + LIST + b, b},
                                    {b + "/", b + "/"},
                                    {"b~1", "b~1"},
                                    {a + LIST + LIST, NOT_IN_PATH},
                                    {"\"" + b + "\"", NOT_IN_PATH},
                                    {"", "PATH Environmental Variable not set.\n"}};
    for (const auto& [path, expected] : paths) {
        searchPath.set(path);
        EXPECT_EQ(outcome(Kel_Util::findLibInPath, "libfoo"), expected) << path;
    }
    const std::string upper = WINDOWS ? "foo.DLL" : "foo.SO";
    const std::string names[][2] = {{library("foo"), library("foo")},
                                    {upper, library(upper)},
                                    {library("foo") + ".bak", library("foo") + ".bak"}};
    for (const auto& [name, file] : names) {
        writeFile(here / file);
        EXPECT_EQ(outcome(Kel_Util::findLibInPath, name), ".");
        std::filesystem::remove(here / file);
    }
}

TEST_F(Files, DataDirectoriesComeFromOverridesBeforeTheTree) {
    for (const std::string name : {"data/kel", "data/lumatrace", "data/mine", "data/theirs"})
        makeDirectories({name, "bin/x64"});
    const auto expect = [&](const std::string& kel, const std::string& sorva) {
        EXPECT_EQ(outcome(Kel_Util::getDataDirPath), below(below(here / "data", kel), ""));
        EXPECT_EQ(outcome(Kel_Util::getSorvaDataDirPath), below(below(here / "data", sorva), ""));
    };
    EXPECT_EQ(outcome(Kel_Util::getDataDirPath), "Could not find libKelJtag in path.\n");
    EXPECT_EQ(outcome(Kel_Util::getSorvaDataDirPath), "Could not find libKelCore in path.\n");
    writeFile(here / library("bin/x64/libKelJtag"));
    writeFile(here / library("bin/x64/libKelCore"));
    searchPath.set(here / "bin/x64");
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
    searchPath.set(UNSET); // the current directory comes first
    const CurrentDirectory besideTheLibraries(here / "bin/x64");
    expect("kel", "lumatrace");
}

TEST_F(Files, PathOnADriveCountsFromTheCurrentDirectoryThere) {
    if (!WINDOWS)
        GTEST_SKIP() << "no drives here";
    const std::string drive = here.path().substr(0, 2);
    EXPECT_EQ(Kel_Util::normalizePath(drive + "x"), here / "x");
    EXPECT_EQ(Kel_Util::normalizePath("Q:x/"), "Q:\\x\\"); // no such drive
    EXPECT_EQ(Kel_Util::normalizePath("\\x"), drive + "\\x");
    EXPECT_EQ(Kel_Util::isDirectory(drive), 1);
    EXPECT_EQ(listed(drive, false), Texts());
}

TEST_F(Files, CurrentDirectoryMayHaveAnyNameAndLengthAndBeRemoved) {
    if (WINDOWS)
        GTEST_SKIP() << "Windows allows no separators in names, limits paths and locks the current "
                        "directory";
    std::string expected = here / "a\\b";
    makeDirectories({"a\\b"});
    std::filesystem::current_path(expected);
    for (int level = 0; level < 20; ++level) { // 4,000 characters and more
        const std::string name(200, 'n');
        std::filesystem::create_directory(name);
        std::filesystem::current_path(name);
        expected = below(expected, name);
    }
    EXPECT_EQ(Kel_Util::normalizePath("."), expected);
    EXPECT_EQ(Kel_Util::normalizePath("x\\y/"), expected + "/x/y/");
    std::filesystem::remove_all(here / "a\\b");
    for (const char* const path : {".", "./x", "x", "..", "../x/", "..\\x"})
        EXPECT_EQ(outcome(Kel_Util::normalizePath, path),
                  "Could not read the current directory.\n");
    EXPECT_EQ(Kel_Util::normalizePath("/a/../b"), "/b");
}

TEST_F(Files, ListingReplacesTheListOrKeepsIt) {
    makeDirectories({"d/sub"});
    writeFile(here / "d/f.txt");
    EXPECT_EQ(listed("d", false), (Texts{"f.txt", "sub"}));
    EXPECT_EQ(listed("d/", true), (Texts{".", "..", "f.txt", "sub"}));
    EXPECT_EQ(listed("d/sub", false), Texts());
    Texts list{"kept", "d/sub"};
    for (const std::string& directory : {std::string("no"), std::string("d/f.txt"), std::string(),
                                         std::string("d/no"), std::string(5000, 'n')}) {
        const auto read = [&] {
            Kel_Util::getDirectoryFileList(directory, true, list);
            return "";
        };
        EXPECT_EQ(outcome(read), "Could not open the directory: " + directory + "\n");
        EXPECT_EQ(list, (Texts{"kept", "d/sub"}));
    }
    Kel_Util::getDirectoryFileList(list[1], false, list); // the argument is an element of the list
    EXPECT_EQ(list, Texts());
}

/// Sets a UTF-8 locale for a scope, if the host has one.
class Utf8Locale {
public:
    Utf8Locale() = default;
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;
    ~Utf8Locale() { static_cast<void>(std::setlocale(LC_ALL, "C")); }
    explicit operator bool() const { return isSet; }

private:
    bool isSet =
        std::setlocale(LC_ALL, "C.UTF-8") != nullptr || std::setlocale(LC_ALL, ".UTF-8") != nullptr;
};

// On Windows, fopen decodes names by the code page or, in a UTF-8 locale of UCRT, as UTF-8. The
// first name has 0x80, since code pages and Unicode differ at 0x80 to 0x9F.
TEST_F(Files, NamesOutsideAsciiAreTheBytesThatFopenTakes) {
    const auto expectSameFiles = [&](const std::string& name) {
        ASSERT_TRUE(makeDirectory(here / name));
        EXPECT_EQ(Kel_Util::isDirectory(here / name), 1);
        home.set(here / name);
        const std::string kel = below(here / name, ".kel");
        for (const std::string& file : {name + "0", name + "1"}) {
            EXPECT_EQ(Kel_Util::createDotLumatraceTempFile(name), below(kel, file));
            EXPECT_TRUE(opens(Kel_Util::normalizePath(below(name, below(".kel", file)))));
        }
        EXPECT_EQ(listed(kel, false), (Texts{name + "0", name + "1"}));
        ASSERT_TRUE(changeDirectory(kel));
        EXPECT_EQ(Kel_Util::normalizePath("./x"), below(kel, "x"));
        ASSERT_TRUE(changeDirectory(here.path()));
    };
    expectSameFiles("\x80 gr\xFC\xDF");
    if (const Utf8Locale locale; locale)
        expectSameFiles("gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x92\xBE");
}

TEST(LocalizedMessage, EveryCharacterIsNarrowOrAQuestionMark) {
    const wchar_t half[] = {static_cast<wchar_t>(0xD800), L'x', static_cast<wchar_t>(0xD800), 0};
    const wchar_t pair[] = {static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0xDC00), 0};
    struct {
        const wchar_t* message;
        const char* expected;
    } const cases[] = {{nullptr, ""},
                       {L"", ""},
                       {L"Disk full", "Disk full"},
                       {L"5 \u20AC off\n", "5 ? off\n"},
                       {L"\u4E2D\u6587", "??"},
                       {half, "?x?"},
                       {pair, sizeof(wchar_t) == 2 ? "?" : "??"},
                       {L"<\U0001F4BE>", "<?>"}}; // one character, however many units
    for (const auto& [message, expected] : cases)
        EXPECT_EQ(Kel_Util::getLocalizedPortMsg(message), expected);
}

TEST(LocalizedMessage, IsCutAt2047BytesBetweenCharacters) {
    EXPECT_EQ(Kel_Util::getLocalizedPortMsg(std::wstring(5000, L'm').c_str()),
              std::string(2047, 'm'));
    std::string form; // a multibyte character in the first available locale
    const Utf8Locale locale;
    if (locale)
        form = "\xE3\x81\x82";
    else if (std::setlocale(LC_CTYPE, ".932") != nullptr)
        form = "\x82\xA0";
    else
        GTEST_SKIP() << "no locale with multibyte characters";
    for (std::size_t fit = 2043; fit <= 2047; ++fit) {
        const std::wstring message = std::wstring(fit, L'm') + L"\u3042x";
        EXPECT_EQ(
            Kel_Util::getLocalizedPortMsg(message.c_str()),
            (std::string(fit, 'm') + form + "x").substr(0, fit + form.size() > 2047 ? fit : 2047));
    }
}

TEST(LocalizedMessage, IsUtf8InAUtf8Locale) {
    const Utf8Locale locale;
    if (!locale)
        GTEST_SKIP() << "no UTF-8 locale";
    const wchar_t half[] = {L'<', static_cast<wchar_t>(0xDCBE), L'>', 0};
    EXPECT_EQ(Kel_Util::getLocalizedPortMsg(L"\u20AC \U0001F4BE"), "\xE2\x82\xAC \xF0\x9F\x92\xBE");
    EXPECT_EQ(Kel_Util::getLocalizedPortMsg(half), "<?>");
}

} // namespace
