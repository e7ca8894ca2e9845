// SPDX-License-Identifier: MIT
//
// Tests what only Windows has: drives, a limit on the length of paths, links with the attribute of
// a directory. A fake host injects links and failing searches. For this, the file defines the
// import pointers through which the library calls the system.
#include "KelRT/Kel_Util.h"
#include "support/host.h"
#include "support/listing.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include <windows.h>

using namespace KelRT;
using namespace test;
using test_host::below;

namespace {

std::set<std::wstring> links; // reported as links to directories
bool searchesFail = false;

template <typename Function>
Function systemFunction(Function /*type*/, const char* name) {
    const auto address = GetProcAddress(GetModuleHandleA("kernel32.dll"), name);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

DWORD WINAPI attributes(LPCWSTR path) {
    return links.contains(path) ? FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT
                                : systemFunction(attributes, "GetFileAttributesW")(path);
}

BOOL WINAPI findNext(HANDLE search, LPWIN32_FIND_DATAW entry) {
    if (!searchesFail)
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

/// Provides an empty directory and an empty drive W:. Under Wine, the test task defines the drive;
/// elsewhere, this class maps it to the directory.
class WindowsHost : public ::testing::Test {
protected:
    WindowsHost() {
        if (!std::filesystem::exists("W:\\"))
            DefineDosDeviceA(0, "W:", here.path().c_str());
    }
    ~WindowsHost() override { DefineDosDeviceA(DDD_REMOVE_DEFINITION, "W:", here.path().c_str()); }

    const test_host::TemporaryDirectory here;
};

TEST_F(WindowsHost, DriveIsListedAndHasACurrentDirectoryOfItsOwn) {
    ASSERT_FALSE(std::filesystem::exists("V:\\"));
    for (const char* const missing : {"V:\\", "V:/", "V:", "W:\\missing", "W:missing"})
        EXPECT_EQ(listed(missing), refused(missing));
    EXPECT_EQ(Kel_Util::normalizePath("V:x/"), "V:\\x\\");
    if (!std::filesystem::exists("W:\\"))
        GTEST_SKIP() << "no drive W: here, and none can be defined";
    for (const char* const root : {"W:\\", "W:/", "W:"}) {
        EXPECT_EQ(Kel_Util::isDirectory(root), 1) << root;
        EXPECT_EQ(listed(root), Texts()) << root;
    }
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

TEST_F(WindowsHost, DirectoryWithALongPathIsListedCorrectlyOrRefused) {
    const std::string parent = here / std::string(230 - here.path().size(), 'p');
    std::filesystem::create_directory(parent);
    const test_host::CurrentDirectory current(parent);
    for (int length = 240; length <= 280; length += length > 255 && length < 262 ? 1 : 5) {
        const std::string name(static_cast<std::size_t>(length) - parent.size() - 1, 'n');
        // A path with this prefix has no length limit, and the system does not normalise it.
        const std::string path = "\\\\?\\" + below(parent, name);
        const std::string inside = below(path, "inside");
        for (const std::string& made : {path, inside})
            ASSERT_TRUE(CreateDirectoryW(wide(made).c_str(), nullptr));
        EXPECT_EQ(listed(path), Texts{"inside"});
        EXPECT_EQ(listed(below(path, "")), Texts{"inside"});
        for (const std::string& given : {below(parent, name), name}) {
            EXPECT_EQ(listed(parent), Texts{name}); // `found` if `given` were cut to `parent`
            const Texts found = listed(given);
            EXPECT_TRUE(found == Texts{"inside"} || found == refused(given)) << length;
        }
        for (const std::string& made : {inside, path})
            EXPECT_TRUE(RemoveDirectoryW(wide(made).c_str()));
    }
}

TEST_F(WindowsHost, LinkIsADirectoryIfItsTargetIsOne) {
    std::filesystem::create_directory(here / "directory");
    test_host::writeFile(here / "file");
    links = {wide(here / "directory"), wide(here / "file"), wide(here / "gone")};
    EXPECT_EQ(Kel_Util::isDirectory(here / "directory"), 1);
    EXPECT_EQ(Kel_Util::isDirectory(here / "file"), 0);
    EXPECT_EQ(Kel_Util::isDirectory(here / "gone"), 0);
}

TEST_F(WindowsHost, FailureWhileADirectoryIsReadIsReported) {
    searchesFail = true;
    EXPECT_EQ(listed(here.path()), refused(here.path()));
    searchesFail = false;
}

} // namespace
