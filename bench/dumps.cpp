// SPDX-License-Identifier: MIT
//
// Measures dumps of buffers into a file in memory (tmpfs). Each contender has its own form of
// table: the library writes 3.75 characters for a byte, spdlog and LLVM 3.4 to 3.6, and xxd 4.25
// with its column of characters. All tables must show the same bytes. The time of xxd is the user
// and system time of its process.
#include "dumps.h"
#include "peers.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <memory>

using namespace bench;

namespace {

std::string inOrder(const std::string& table) {
    return bytesOf(table, 2, false);
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

/// Runs a program that dumps its standard input, which is also a file in memory.
struct Process {
    std::string program;
    std::string input;
    LogFile file;

    void prepare() const { file.truncate(); }

    /// Returns the seconds that the process used.
    [[nodiscard]] double run() {
        char* arguments[] = {program.data(), nullptr};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, input.c_str(), O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions, file.descriptor(), STDOUT_FILENO);
        pid_t process = 0;
        const int error =
            ::posix_spawn(&process, program.c_str(), &actions, nullptr, arguments, environ);
        posix_spawn_file_actions_destroy(&actions);
        int status = 0;
        struct rusage used = {};
        if (error != 0 || ::wait4(process, &status, 0, &used) != process || status != 0)
            LogDirectory::fail(program + " failed");
        return seconds(used.ru_utime) + seconds(used.ru_stime);
    }

    [[nodiscard]] std::string result() const { return inOrder(file.text()); }
};

void rows(const LogFile& file, const LogDirectory& directory, const char* size,
          const Bytes& bytes) {
    Row row("dumps", "hexadecimal", size, bytes.size());
    row.add("KelUtil", ownDump(file, bytes, 2));
    row.addPeer<peers::Spdlog>("spdlog::to_hex", [&](auto spdlog) {
        const std::string path = directory.file("spdlog.log");
        const auto logger = spdlog.open(path);
        return Writer{LogFile(path),
                      [spdlog, logger, &bytes](const LogFile&) { spdlog.dump(logger, bytes); },
                      inOrder};
    });
    row.addPeer<peers::Llvm>("llvm::format_bytes", [&](auto llvm) {
        const LogFile own(directory.file("llvm.log"));
        const auto dump = std::make_shared<typename decltype(llvm)::Dump>(own.descriptor());
        return Writer{own, [dump, &bytes](const LogFile&) { dump->write(bytes); }, inOrder};
    });
    row.addPeer<peers::Xxd>("xxd", [&](auto xxd) {
        const std::string input = directory.file(std::to_string(bytes.size()));
        std::ofstream(input, std::ios::binary) << textOf(bytes);
        return Process{xxd.PROGRAM, input, LogFile(directory.file("xxd.log"))};
    });
    addLimit(row, directory, ownDump(file, bytes, 2), bytes);
}

} // namespace

int main(int argc, char** argv) {
    static const LogDirectory directory;               // removed even if a check fails
    const LogFile file = startLogging(directory, "2"); // hexadecimal, large buffers
    const Bytes small = randomBytes(1 << 20);
    const Bytes large = randomBytes(16 << 20);
    rows(file, directory, "1 MiB", small);
    rows(file, directory, "16 MiB", large);
    return runAll(argc, argv);
}
