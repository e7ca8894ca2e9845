// SPDX-License-Identifier: MIT
//
// Files and directories of the host. Each host has its own source; a fake host can replace it in
// tests. The names of File, UT_DIR and FileName, and their ignored flags, are those of the platform
// library that this layer replaces.
//
// A path is a NUL-terminated byte string in the host's narrow encoding and names the same file as
// it does for fopen. If the host refuses an operation (a missing or unreadable parent, a name that
// is too long), the result says so; only std::bad_alloc is thrown.
//
// Threads: the functions share only what the host shares (the current directory, the file system).
#pragma once

#include <atomic>
#include <cassert>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Port {

// The library holds one from load to unload, so that it exists before the first file operation and
// after the last. No supported host needs preparation, so it only counts its instances; File and
// UT_DIR assert that there is one.
class FileInit {
public:
    FileInit() noexcept { ++instances; }
    ~FileInit() { --instances; }
    FileInit(const FileInit&) = delete;
    FileInit& operator=(const FileInit&) = delete;

    static void assertReady() {
        assert(instances > 0 && "a FileInit exists during every file operation");
    }

private:
    // Constant-initialised, so it takes no part in the order of the globals.
    inline static std::atomic<int> instances{0};
};

// True for the first byte of a two-byte character in the narrow encoding of the host's paths.
[[nodiscard]] bool isLeadByte(char byte);

enum class Creation : std::uint8_t { created, nameTaken, refused };

struct File {
    // True if anything of that name exists, even a dangling symbolic link.
    [[nodiscard]] static bool exist(const char* path);

    // True if path names an existing directory or a symbolic link to one.
    [[nodiscard]] static bool isdir(const char* path);

    // Creates one directory, not its parents; true if it was created. The flag is ignored.
    static bool mkdir(const char* path, bool flag);

    // True if path is not a directory and opens for reading. Opening does not block.
    [[nodiscard]] static bool readable(const char* path);

    // Creates an empty file if nothing of that name exists, not even a dangling symbolic link.
    static Creation create(const char* path);
};

// The current directory, of any length; empty if it cannot be read. On hosts with drives, `drive`
// is a drive letter, or 0 for the current drive. The result for a drive that has no current
// directory, or does not exist, is the drive's root.
[[nodiscard]] std::string currentDirectory(char drive = 0);

// Iterates over the entries of a UT_DIR, which must outlive it unchanged.
class UT_DIR_ITERATOR {
public:
    explicit UT_DIR_ITERATOR(std::vector<std::string>::const_iterator entry) : current(entry) {}
    bool operator!=(const UT_DIR_ITERATOR& other) const { return current != other.current; }
    UT_DIR_ITERATOR& operator++() {
        ++current;
        return *this;
    }

    // The name of the current entry without its path, NUL-terminated; it belongs to the UT_DIR.
    const char* operator*() const { return current->c_str(); }

private:
    std::vector<std::string>::const_iterator current;
};

// The entries of a directory in the host's order, all read at construction.
class UT_DIR {
public:
    // Flag 1 leaves "." and ".." out; 0 includes them if the host lists them.
    UT_DIR(const char* directory, std::uint8_t flag);

    // 1 if the directory could be opened and read to its end, otherwise 0.
    int isvalid() const { return valid ? 1 : 0; }

    UT_DIR_ITERATOR begin() const { return UT_DIR_ITERATOR(entries.begin()); }
    UT_DIR_ITERATOR end() const { return UT_DIR_ITERATOR(entries.end()); }

private:
    [[nodiscard]] static bool isListed(std::string_view name, std::uint8_t flag) {
        return flag == 0 || (name != "." && name != "..");
    }

    std::vector<std::string> entries;
    bool valid = false;
};

} // namespace Port
