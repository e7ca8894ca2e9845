// SPDX-License-Identifier: MIT
//
// Each contender writes to its own file in memory (tmpfs, /dev/shm). The file is truncated before
// each run, outside the measured time, so that every run allocates new pages. This also moves the
// contender's own descriptor back to the start of the file.
#pragma once

#include "row.h"

#include "KelRT/Logger.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

namespace bench {

/// Creates the directory of the files, and removes it when the process ends.
class LogDirectory {
public:
    LogDirectory() {
        if (::mkdtemp(location.data()) == nullptr)
            fail("no directory in /dev/shm");
    }
    LogDirectory(const LogDirectory&) = delete;
    LogDirectory& operator=(const LogDirectory&) = delete;
    ~LogDirectory() {
        const std::string command = "rm -rf " + location;
        if (std::system(command.c_str()) != 0)
            std::perror(location.c_str());
    }
    [[nodiscard]] std::string file(const std::string& name) const { return location + '/' + name; }
    [[nodiscard]] const std::string& path() const { return location; }

    [[noreturn]] static void fail(const std::string& what) {
        std::fprintf(stderr, "%s\n", what.c_str());
        std::exit(1);
    }

private:
    std::string location = "/dev/shm/kelutil-bench-XXXXXX";
};

class LogFile {
public:
    /// Finds the descriptor of \a file if this process has it open, and opens it otherwise.
    explicit LogFile(std::string file) : location(std::move(file)), openDescriptor(find()) {
        if (openDescriptor < 0)
            openDescriptor = ::open(location.c_str(), O_WRONLY | O_CREAT, 0600);
        if (openDescriptor < 0)
            LogDirectory::fail("cannot write " + location);
    }

    [[nodiscard]] int descriptor() const { return openDescriptor; }

    void truncate() const {
        if (::lseek(openDescriptor, 0, SEEK_SET) != 0 || ::ftruncate(openDescriptor, 0) != 0)
            LogDirectory::fail("cannot empty " + location);
    }

    [[nodiscard]] std::string text() const {
        std::ifstream file(location, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void write(const char* text, std::size_t size) const {
        if (::write(openDescriptor, text, size) != static_cast<ssize_t>(size))
            LogDirectory::fail("cannot write " + location);
    }

private:
    [[nodiscard]] int find() const {
        struct stat wanted = {};
        struct stat open = {};
        if (::stat(location.c_str(), &wanted) != 0)
            return -1;
        for (int descriptor = 3; descriptor < 256; ++descriptor)
            if (::fstat(descriptor, &open) == 0 && open.st_ino == wanted.st_ino &&
                open.st_dev == wanted.st_dev)
                return descriptor;
        return -1;
    }

    std::string location;
    int openDescriptor;
};

/// A contender that writes to a file. Its result is what `text` returns for the file's content.
template <typename Write, typename Text>
struct Writer {
    LogFile file;
    Write write;
    Text text;
    void prepare() { file.truncate(); }
    void run() { write(file); }
    std::string result() { return text(file.text()); }
};

template <typename Write, typename Text>
Writer(LogFile, Write, Text) -> Writer<Write, Text>;

/// Starts the library's logging at detail level 1, once in a process, and returns its file.
inline LogFile startLogging(const LogDirectory& directory, const char* flags) {
    const std::string path = directory.file("KelUtil.log");
    ::setenv("TOR_KEL_LOGFILE", path.c_str(), 1);
    ::setenv("TOR_KEL_LOGDETAIL", "1", 1);
    ::setenv("TOR_KEL_LOGFLAGS", flags, 1);
    KelRT::Logger::logger.startLogging();
    return LogFile(path);
}

} // namespace bench
