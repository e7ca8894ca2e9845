// SPDX-License-Identifier: MIT
//
// Tests what only Windows has: drives, a limit on the length of paths, links with the attribute of
// a directory. A fake host injects links and failing searches. For this, the file defines the
// import pointers through which the library calls the system.
#include "KelRT/Kel_Util.h"
#include "support/host.h"
#include "support/outcome.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <windows.h>

using namespace KelRT;
using test::outcome;
using test_host::below;
using Texts = std::vector<std::string>;

namespace {

struct FakeHost {
    std::set<std::wstring> links; ///< reported as links to directories
    bool searchesFail = false;
};
FakeHost host;

template <typename Function>
Function systemFunction(Function /*type*/, const char* name) {
    const auto address = GetProcAddress(GetModuleHandleA("kernel32.dll"), name);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

DWORD WINAPI attributes(LPCWSTR path) {
    if (host.links.contains(path))
        return FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    return systemFunction(attributes, "GetFileAttributesW")(path);
}

BOOL WINAPI findNext(HANDLE search, LPWIN32_FIND_DATAW entry) {
    if (!host.searchesFail)
        return systemFunction(findNext, "FindNextFileW")(search, entry);
    SetLastError(ERROR_NETNAME_DELETED);
    return FALSE;
}

} // namespace

extern "C" {
decltype(&GetFileAttributesW) __imp_GetFileAttributesW = attributes; // NOLINT(*-reserved-*)
decltype(&FindNextFileW) __imp_FindNextFileW = findNext;             // NOLINT(*-reserved-*)
}

namespace {

/// Returns the sorted list from getDirectoryFileList(), or its message as the only entry.
Texts listed(const std::string& directory) {
    Texts list;
    const std::string message = outcome([&] {
        Kel_Util::getDirectoryFileList(directory, false, list);
        return std::string();
    });
    if (!message.empty())
        return {message};
    std::sort(list.begin(), list.end());
    return list;
}

Texts refused(const std::string& directory) {
    return {"Could not open the directory: " + directory + "\n"};
}

/// Provides an empty drive W:. Under Wine, the test task defines it; elsewhere, this class maps it
/// to an empty directory.
class EmptyDrive : public ::testing::Test {
protected:
    EmptyDrive() {
        if (!isThere())
            DefineDosDeviceA(0, "W:", target.path().c_str());
    }
    ~EmptyDrive() override {
        SetEnvironmentVariableA("=W:", nullptr);
        DefineDosDeviceA(DDD_REMOVE_DEFINITION, "W:", target.path().c_str());
    }
    static bool isThere() { return GetFileAttributesA("W:\\") != INVALID_FILE_ATTRIBUTES; }

    const test_host::TemporaryDirectory target;
};

TEST_F(EmptyDrive, IsListedAndHasACurrentDirectoryOfItsOwn) {
    ASSERT_EQ(GetFileAttributesA("V:\\"), INVALID_FILE_ATTRIBUTES);
    for (const char* const missing : {"V:\\", "V:/", "V:", "W:\\missing", "W:missing"})
        EXPECT_EQ(listed(missing), refused(missing));
    EXPECT_EQ(Kel_Util::normalizePath("V:x/"), "V:\\x\\");
    if (!isThere())
        GTEST_SKIP() << "no drive W: here, and none can be defined";
    for (const char* const root : {"W:\\", "W:/", "W:"})
        EXPECT_EQ(listed(root), Texts()) << root;

    std::filesystem::create_directory("W:\\sub");
    test_host::writeFile("W:\\sub\\f.txt");
    SetEnvironmentVariableA("=W:", "W:\\sub"); // as chdir() of the C library does
    EXPECT_TRUE(test_host::opens("W:f.txt"));
    EXPECT_EQ(Kel_Util::normalizePath("W:f.txt"), "W:\\sub\\f.txt");
    EXPECT_EQ(Kel_Util::normalizePath("w:../f/"), "W:\\f\\");
    EXPECT_EQ(listed("W:"), Texts{"f.txt"});
    std::filesystem::remove_all("W:\\sub");
}

std::wstring wide(const std::string& path) {
    return {path.begin(), path.end()};
}

/// Returns a form of the path that has no length limit. The system does not normalise it.
std::string unlimited(const std::string& path) {
    return "\\\\?\\" + path;
}

TEST(WindowsHost, UnlimitedPathIsListedWithAndWithoutSeparator) {
    const test_host::TemporaryDirectory here;
    std::filesystem::create_directory(here / "sub");
    for (const std::string& path : {unlimited(here.path()), unlimited(here / "")})
        EXPECT_EQ(listed(path), Texts{"sub"}) << path;
}

TEST(WindowsHost, LongDirectoryIsListedCorrectlyOrRefused) {
    const test_host::TemporaryDirectory here;
    const std::string parent = here / std::string(230 - here.path().size(), 'p');
    std::filesystem::create_directory(parent);
    const test_host::CurrentDirectory current(parent);
    for (int length = 240; length <= 280; length += length > 255 && length < 262 ? 1 : 5) {
        const std::string name(static_cast<std::size_t>(length) - parent.size() - 1, 'n');
        const std::string path = below(parent, name);
        const std::wstring directory = wide(unlimited(path));
        const std::wstring inside = wide(unlimited(below(path, "inside")));
        ASSERT_TRUE(CreateDirectoryW(directory.c_str(), nullptr));
        ASSERT_TRUE(CreateDirectoryW(inside.c_str(), nullptr));
        for (const std::string& given : {path, name}) {
            EXPECT_EQ(listed(parent), Texts{name}); // the result if the path is truncated
            const Texts found = listed(given);
            EXPECT_TRUE(found == Texts{"inside"} || found == refused(given)) << length;
        }
        EXPECT_TRUE(RemoveDirectoryW(inside.c_str()));
        EXPECT_TRUE(RemoveDirectoryW(directory.c_str()));
    }
}

TEST(WindowsHost, LinkIsADirectoryWhereItsTargetIsOne) {
    const test_host::TemporaryDirectory here;
    std::filesystem::create_directory(here / "directory");
    test_host::writeFile(here / "file");
    host.links = {wide(here / "directory"), wide(here / "file"), wide(here / "gone")};
    EXPECT_EQ(Kel_Util::isDirectory(here / "directory"), 1);
    EXPECT_EQ(Kel_Util::isDirectory(here / "file"), 0);
    EXPECT_EQ(Kel_Util::isDirectory(here / "gone"), 0);
    host = {};
}

TEST(WindowsHost, FailedSearchIsReported) {
    const test_host::TemporaryDirectory here;
    host.searchesFail = true;
    EXPECT_EQ(listed(here.path()), refused(here.path()));
    host = {};
}

} // namespace
