// SPDX-License-Identifier: MIT
//
// Log records: written, each handed to the system as a line of its own, into a file in memory
// (tmpfs); and filtered out by their level. All write the same lines without a prefix.
#include "log_file.h"
#include "log_peers.h"
#include "row.h"

#include <iomanip>
#include <memory>

using namespace bench;

namespace {

constexpr unsigned RECORDS = 1000;
constexpr int WRITTEN = 1;
constexpr int FILTERED = 5;
constexpr const char* NAMES[] = {"idle", "update-instruction", "shift", "capture-data"};

const char* nameOf(unsigned record) {
    return NAMES[record % std::size(NAMES)];
}

std::string same(std::string text) {
    return text;
}

void printRecord(int level, unsigned i) {
    KelRT::Logger::logger.printLog(level, "chain %u: %s, %u bits at 0x%08x, status %d\n", i % 7,
                                   nameOf(i), 17 * i, 0x4000'0000 + i, -static_cast<int>(i % 5));
}

#ifdef HAVE_SPDLOG
void spdlogRecord(spdlog::logger& logger, spdlog::level::level_enum level, unsigned i) {
    logger.log(level, "chain {}: {}, {} bits at 0x{:08x}, status {}", i % 7, nameOf(i), 17 * i,
               0x4000'0000 + i, -static_cast<int>(i % 5));
}

std::shared_ptr<spdlog::logger> spdlogTo(const std::string& path) {
    auto logger = std::make_shared<spdlog::logger>(
        "bench", std::make_shared<spdlog::sinks::basic_file_sink_st>(path));
    logger->set_pattern("%v");
    logger->flush_on(spdlog::level::trace);
    return logger;
}
#endif

#ifdef HAVE_GLOG
/// The first record opens glog's file.
std::string startGlog(const LogDirectory& directory) {
    FLAGS_log_prefix = false;
    FLAGS_logbuflevel = -1; // flush each line
    FLAGS_max_log_size = 4095;
    google::SetLogDestination(google::GLOG_INFO, directory.file("glog.").c_str());
    google::SetLogSymlink(google::GLOG_INFO, "");
    google::SetLogFilenameExtension("");
    FLAGS_timestamp_in_logfile_name = false;
    google::InitGoogleLogging("bench");
    LOG(INFO) << "start";
    return directory.file("glog.");
}
#endif

void writtenRow(const LogFile& ownFile, const LogDirectory& directory) {
    Row row("records", "written", "40 to 80", RECORDS);
    const Writer own{ownFile,
                     [](const LogFile&) {
                         for (unsigned i = 0; i < RECORDS; ++i)
                             printRecord(WRITTEN, i);
                     },
                     same};
    row.add("KelUtil", own);
#ifdef HAVE_SPDLOG
    const auto logger = spdlogTo(directory.file("spdlog.log"));
    row.add("spdlog", Writer{LogFile(directory.file("spdlog.log")),
                             [logger](const LogFile&) {
                                 for (unsigned i = 0; i < RECORDS; ++i)
                                     spdlogRecord(*logger, spdlog::level::info, i);
                             },
                             same});
#else
    row.missing("spdlog");
#endif
#ifdef HAVE_GLOG
    row.add("glog", Writer{LogFile(startGlog(directory)),
                           [](const LogFile&) {
                               for (unsigned i = 0; i < RECORDS; ++i)
                                   LOG(INFO) << "chain " << i % 7 << ": " << nameOf(i) << ", "
                                             << 17 * i << " bits at 0x" << std::hex
                                             << std::setfill('0') << std::setw(8) << 0x4000'0000 + i
                                             << std::dec << ", status " << -static_cast<int>(i % 5);
                           },
                           same});
#else
    row.missing("glog");
#endif
    auto ready = own;
    ready.prepare();
    ready.run();
    row.limit(Writer{LogFile(directory.file("limit.log")),
                     [text = ready.result()](const LogFile& file) {
                         for (std::size_t from = 0; from < text.size();) {
                             const std::size_t next = text.find('\n', from) + 1;
                             file.write(&text[from], next - from);
                             from = next;
                         }
                     },
                     same});
}

// A contender in the rows of filtered records reads the level anew for every record, and proves
// that it has written nothing. Its file is empty from the start: emptying it takes longer than a
// run.
template <typename Record>
struct Filtered {
    LogFile file;
    Record record;
    void run() {
        for (unsigned i = 0; i < RECORDS; ++i) {
            record(i);
            benchmark::ClobberMemory();
        }
    }
    std::string result() { return file.text(); }
};
template <typename Record>
Filtered(LogFile, Record) -> Filtered<Record>;

int limitLevel = WRITTEN;

void askedRow(const LogFile& ownFile, const LogDirectory& directory) {
    Row row("records", "filtered, asked", "-", RECORDS);
    row.add("KelUtil", Filtered{ownFile, [](unsigned i) {
                                    auto& logger = KelRT::Logger::logger;
                                    if (logger.shouldPrintLog(FILTERED))
                                        logger.printLog(FILTERED, "chain %u: %s\n", i % 7,
                                                        nameOf(i));
                                }});
#ifdef HAVE_GLOG
    row.add("VLOG", Filtered{LogFile(directory.file("glog.")), [](unsigned i) {
                                 VLOG(FILTERED) << "chain " << i % 7 << ": " << nameOf(i);
                             }});
#else
    row.missing("VLOG");
#endif
    row.limit(Filtered{LogFile(directory.file("limit.log")), [](unsigned i) {
                           benchmark::DoNotOptimize(&limitLevel);
                           if (limitLevel >= FILTERED)
                               std::puts(nameOf(i));
                       }});
}

void filteredRow(const LogFile& ownFile, const LogDirectory& directory) {
    Row row("records", "filtered, written anyway", "-", RECORDS);
    row.add("KelUtil", Filtered{ownFile, [](unsigned i) {
                                    KelRT::Logger::logger.printLog(FILTERED, "chain %u: %s\n",
                                                                   i % 7, nameOf(i));
                                }});
#ifdef HAVE_SPDLOG
    const auto logger = spdlogTo(directory.file("filtered.log"));
    row.add("spdlog", Filtered{LogFile(directory.file("filtered.log")), [logger](unsigned i) {
                                   spdlogRecord(*logger, spdlog::level::debug, i);
                               }});
#else
    row.missing("spdlog");
#endif
}

} // namespace

int main(int argc, char** argv) {
    const LogDirectory directory;
    const LogFile ownFile = startLogging(directory, "0");
    writtenRow(ownFile, directory);
    for (const char* name : {"KelUtil.log", "glog.", "limit.log"})
        LogFile(directory.file(name)).empty(); // for the proofs below
    askedRow(ownFile, directory);
    filteredRow(ownFile, directory);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
