// SPDX-License-Identifier: MIT
//
// Gives access to the files and directories of the host, which is the operating system. Each host
// has its own source, which a fake host can replace in tests. The names File, UT_DIR and FileName
// and the flags that are ignored come from the platform library that this layer replaces.
//
// A path is a NUL-terminated byte string in the host's narrow encoding. It names the file that
// fopen() would open. If the host refuses an operation, for example because a parent is missing or
// a name is too long, the result says so. The functions throw nothing but std::bad_alloc.
//
// Threads: the functions share no state but the host's (the current directory, the file system).
#pragma once

#include <atomic>
#include <cassert>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Port {

// Counts its instances and does nothing else, since no supported host needs preparation for file
// operations. The library has one instance from load to unload, so it outlives every file
// operation. File and UT_DIR assert that an instance exists.
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
    // The initialiser is constant, so this is 0 before the constructor of any global runs.
    inline static std::atomic<int> instances{0};
};

// Returns true for the first byte of a two-byte character in the narrow encoding of the host's
// paths.
[[nodiscard]] bool isLeadByte(char byte);

enum class Creation : std::uint8_t { created, nameTaken, refused };

struct File {
    // Returns true if anything of that name exists, even a dangling symbolic link.
    [[nodiscard]] static bool exist(const char* path);

    // Returns true if path names an existing directory or a symbolic link to one.
    [[nodiscard]] static bool isdir(const char* path);

    // Creates one directory, but not its parents, and returns true if it did. The flag is ignored.
    static bool mkdir(const char* path, bool flag);

    // Returns true if path is not a directory and opens for reading. Opening does not block.
    [[nodiscard]] static bool readable(const char* path);

    // Creates an empty file, unless anything of that name exists, even a dangling symbolic link.
    static Creation create(const char* path);
};

// Returns the current directory, however long it is, or "" if it cannot be read. On hosts with
// drives, `drive` is a drive letter, or 0 for the current drive. For a drive that has no current
// directory, or does not exist, the result is the drive's root.
[[nodiscard]] std::string currentDirectory(char drive = 0);

// Iterates over the entries of a UT_DIR, which must outlive the iterator unchanged.
class UT_DIR_ITERATOR {
public:
    explicit UT_DIR_ITERATOR(std::vector<std::string>::const_iterator entry) : current(entry) {}
    bool operator!=(const UT_DIR_ITERATOR& other) const { return current != other.current; }
    UT_DIR_ITERATOR& operator++() {
        ++current;
        return *this;
    }

    // Returns the name of the current entry without its path, NUL-terminated. The UT_DIR owns it.
    const char* operator*() const { return current->c_str(); }

private:
    std::vector<std::string>::const_iterator current;
};

// Reads all entries of a directory at construction and keeps them in the host's order.
class UT_DIR {
public:
    // Flag 1 leaves "." and ".." out; 0 includes them if the host lists them.
    UT_DIR(const char* directory, std::uint8_t flag);

    // Returns 1 if the directory could be opened and read to its end, otherwise 0.
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
