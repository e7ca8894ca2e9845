// SPDX-License-Identifier: MIT
#include "port/host.h"

#include "port/runtime.h"

#include <cerrno>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Port {
namespace {

// Opens a file and owns its descriptor. If a signal interrupts the opening, it is repeated. While
// an instance exists, its thread cannot be cancelled, so no descriptor leaks.
class Descriptor {
public:
    Descriptor(const char* path, int flags) {
        errno = EINTR; // to enter the loop
        while (number < 0 && errno == EINTR)
            number = ::open(path, flags | O_CLOEXEC | O_NOCTTY, 0666); // NOLINT(*-vararg)
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (isOpen())
            ::close(number);
    }
    bool isOpen() const { return number >= 0; }
    bool isDirectory() const {
        struct stat status{};
        return ::fstat(number, &status) == 0 && S_ISDIR(status.st_mode);
    }

private:
    const CancellationDisabled cancellationGuard;
    int number = -1;
};

} // namespace

bool isLeadByte(char /*byte*/) {
    return false; // a path is plain bytes
}

bool File::exist(const char* path) {
    FileInit::assertReady();
    struct stat status{};
    return ::lstat(path, &status) == 0;
}

bool File::isdir(const char* path) {
    FileInit::assertReady();
    struct stat status{};
    return ::stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

bool File::mkdir(const char* path, bool /*flag*/) {
    FileInit::assertReady();
    return ::mkdir(path, 0777) == 0;
}

bool File::readable(const char* path) {
    FileInit::assertReady();
    // Without O_NONBLOCK, opening could block: on a device, or on a FIFO that has no writer. With
    // it, opening fails with EWOULDBLOCK while another process has a write lease on the file. Such
    // a file counts as readable, since a blocking open would succeed after a wait.
    const Descriptor file(path, O_RDONLY | O_NONBLOCK);
    return file.isOpen() ? !file.isDirectory() : errno == EWOULDBLOCK;
}

Creation File::create(const char* path) {
    FileInit::assertReady();
    if (Descriptor(path, O_WRONLY | O_CREAT | O_EXCL).isOpen())
        return Creation::created;
    return errno == EEXIST ? Creation::nameTaken : Creation::refused;
}

std::string currentDirectory(char /*drive*/) {
    std::string text(256, '\0');
    while (::getcwd(text.data(), text.size()) == nullptr) {
        if (errno != ERANGE)
            return {};
        text.resize(2 * text.size());
    }
    return text.substr(0, text.find('\0'));
}

UT_DIR::UT_DIR(const char* directory, std::uint8_t flag) {
    FileInit::assertReady();
    const CancellationDisabled cancellationGuard;
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(directory), closedir);
    if (!stream)
        return;
    // readdir() returns null both at the end and on failure. Only a failure sets errno.
    errno = 0;
    while (const dirent* const entry = readdir(stream.get())) {
        if (isListed(entry->d_name, flag))
            entries.emplace_back(entry->d_name);
        errno = 0;
    }
    valid = errno == 0;
}

} // namespace Port
