// SPDX-License-Identifier: MIT
//
// Dumps of buffers into a file in memory (tmpfs). Each contender writes its own table: 3.75
// characters for a byte here, 3.4 to 3.6 from spdlog and LLVM, 4.25 from xxd with its column of
// characters. What all must have in common are the bytes that the tables tell. The figure of xxd is
// the user and system time of its process.
//
// How a dump looks is settled when logging starts, so this makes two programs: bench_dumps, and
// bench_dump_bits (DUMP_BITS) for the bit form, 10.5 characters for a byte, which has the limit
// alone beside it: each form should cost in proportion to its text.
#include "log_file.h"
#include "log_peers.h"
#include "peers.h"
#include "row.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <memory>
#include <sstream>

using namespace bench;

namespace {

#ifdef DUMP_BITS
constexpr const char* LOG_FLAGS = "3"; // bits, whole
constexpr unsigned DIGITS = 8;
#else
constexpr const char* LOG_FLAGS = "2"; // hexadecimal, whole
constexpr unsigned DIGITS = 2;
#endif

/// The bytes that a table tells: those in a line between the colon behind its address and the
/// column of characters, in front of which are two blanks.
/// \param digits    of a byte: 2 hexadecimal ones or 8 bits
/// \param lastFirst the first byte stands on the right
std::string bytesOf(const std::string& table, unsigned digits, bool lastFirst) {
    std::string bytes;
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos)
            continue;
        std::erase(line.erase(std::min(line.find("  ", colon + 2), line.size())), ' ');
        std::string row;
        for (std::size_t i = line.find(':') + 1; i < line.size(); i += digits)
            row +=
                static_cast<char>(std::stoi(line.substr(i, digits), nullptr, digits == 2 ? 16 : 2));
        if (lastFirst)
            std::reverse(row.begin(), row.end());
        bytes += row;
    }
    return bytes;
}

auto own(const LogFile& file, const Bytes& bytes) {
    return Writer{file,
                  [&bytes](const LogFile&) {
                      KelRT::Logger::logger.dumpBuffer(1, nullptr, bytes.data(),
                                                       static_cast<unsigned>(8 * bytes.size()));
                  },
                  [](const std::string& table) { return bytesOf(table, DIGITS, true); }};
}

template <typename Own>
void addLimit(Row& row, const LogDirectory& directory, Own ready, const std::string& bytes) {
    static constexpr std::size_t PIECE = 64 << 10;
    ready.prepare();
    ready.run();
    if (ready.result() != bytes)
        LogDirectory::fail("a dump of other bytes");
    row.limit(Writer{LogFile(directory.file("limit.log")),
                     [text = ready.file.text()](const LogFile& file) {
                         for (std::size_t i = 0; i < text.size(); i += PIECE)
                             file.write(&text[i], std::min(PIECE, text.size() - i));
                     },
                     [](const std::string& table) { return table; }});
}

#ifdef DUMP_BITS

void rows(const LogFile& file, const LogDirectory& directory, const char* size,
          const Bytes& bytes) {
    Row row("dumps", "bits", size, bytes.size());
    row.add("KelUtil", own(file, bytes));
    addLimit(row, directory, own(file, bytes), textOf(bytes));
}

#else

std::string inOrder(const std::string& table) {
    return bytesOf(table, 2, false);
}

#ifdef HAVE_SPDLOG
auto spdlogDump(const LogDirectory& directory, const Bytes& bytes) {
    const std::string path = directory.file("spdlog.log");
    auto logger = std::make_shared<spdlog::logger>(
        "bench", std::make_shared<spdlog::sinks::basic_file_sink_st>(path));
    logger->set_pattern("%v");
    logger->flush_on(spdlog::level::trace);
    return Writer{LogFile(path),
                  [logger, &bytes](const LogFile&) { logger->info("{}", spdlog::to_hex(bytes)); },
                  inOrder};
}
#endif

#ifdef HAVE_LLVM
auto llvmDump(const LogDirectory& directory, const Bytes& bytes) {
    const LogFile file(directory.file("llvm.log"));
    const auto stream = std::make_shared<llvm::raw_fd_ostream>(file.descriptor(), false);
    return Writer{file,
                  [stream, &bytes](const LogFile&) {
                      *stream << llvm::format_bytes(bytes, 0);
                      stream->flush();
                  },
                  inOrder};
}
#endif

#ifdef HAVE_XXD
/// xxd, reading the bytes from a file in memory too.
struct Xxd {
    std::string input;
    LogFile file;

    void prepare() const { file.empty(); }

    /// The time of its own is what the process used, in seconds.
    [[nodiscard]] double run() const {
        char name[] = HAVE_XXD;
        char* arguments[] = {name, nullptr};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, input.c_str(), O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions, file.descriptor(), STDOUT_FILENO);
        pid_t process = 0;
        const int error = ::posix_spawn(&process, name, &actions, nullptr, arguments, environ);
        posix_spawn_file_actions_destroy(&actions);
        int status = 0;
        struct rusage used = {};
        if (error != 0 || ::wait4(process, &status, 0, &used) != process || status != 0)
            LogDirectory::fail("xxd failed");
        return seconds(used.ru_utime) + seconds(used.ru_stime);
    }

    [[nodiscard]] std::string result() const { return inOrder(file.text()); }

    static double seconds(const timeval& time) {
        return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    }
};
#endif

void rows(const LogFile& file, const LogDirectory& directory, const char* size,
          const Bytes& bytes) {
    Row row("dumps", "hexadecimal", size, bytes.size());
    row.add("KelUtil", own(file, bytes));
#ifdef HAVE_SPDLOG
    row.add("spdlog::to_hex", spdlogDump(directory, bytes));
#else
    row.missing("spdlog::to_hex");
#endif
#ifdef HAVE_LLVM
    row.add("llvm::format_bytes", llvmDump(directory, bytes));
#else
    row.missing("llvm::format_bytes");
#endif
#ifdef HAVE_XXD
    const std::string input = directory.file(std::to_string(bytes.size()));
    std::ofstream(input, std::ios::binary) << textOf(bytes);
    row.add("xxd", Xxd{input, LogFile(directory.file("xxd.log"))});
#else
    row.missing("xxd");
#endif
    addLimit(row, directory, own(file, bytes), textOf(bytes));
}

#endif

} // namespace

int main(int argc, char** argv) {
    static const LogDirectory directory; // goes with the process, also when a proof fails
    const LogFile file = startLogging(directory, LOG_FLAGS);
    const Bytes small = randomBytes(1 << 20);
    const Bytes large = randomBytes(16 << 20);
    rows(file, directory, "1 MiB", small);
    rows(file, directory, "16 MiB", large);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
