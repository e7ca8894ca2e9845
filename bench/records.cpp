// SPDX-License-Identifier: MIT
//
// Log records: written, each handed to the system as a line of its own, into a file in memory
// (tmpfs); and filtered out by their level. All write the same lines without a prefix.
#include "log_file.h"
#include "log_peers.h"
#include "row.h"

#include <array>
#include <iomanip>
#include <memory>

using namespace bench;

namespace {

constexpr unsigned RECORDS = 1000;
constexpr int WRITTEN = 1;
constexpr int FILTERED = 5;
// What the records tell: a text, a decimal and a hexadecimal number.
struct Facts {
    const char* state;
    unsigned bits;
    unsigned address;
};

std::vector<Facts> facts() {
    std::mt19937_64 random(RECORDS);
    std::vector<Facts> all;
    for (unsigned i = 0; i < RECORDS; ++i)
        all.push_back({std::array{"idle", "update-instruction", "shift", "capture-data"}[i % 4],
                       static_cast<unsigned>(random() % 100'000), static_cast<unsigned>(random())});
    return all;
}

const std::vector<Facts> FACTS = facts();

std::string same(std::string text) {
    return text;
}

void printRecord(int level, const Facts& told) {
    KelRT::Logger::logger.printLog(level, "chain in state %s: shifted %u bits from 0x%08x\n",
                                   told.state, told.bits, told.address);
}

#ifdef HAVE_SPDLOG
void spdlogRecord(spdlog::logger& logger, spdlog::level::level_enum level, const Facts& told) {
    logger.log(level, "chain in state {}: shifted {} bits from 0x{:08x}", told.state, told.bits,
               told.address);
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
                         for (const auto& told : FACTS)
                             printRecord(WRITTEN, told);
                     },
                     same};
    row.add("KelUtil", own);
#ifdef HAVE_SPDLOG
    const auto logger = spdlogTo(directory.file("spdlog.log"));
    row.add("spdlog", Writer{LogFile(directory.file("spdlog.log")),
                             [logger](const LogFile&) {
                                 for (const auto& told : FACTS)
                                     spdlogRecord(*logger, spdlog::level::info, told);
                             },
                             same});
#else
    row.missing("spdlog");
#endif
#ifdef HAVE_GLOG
    row.add("glog", Writer{LogFile(startGlog(directory)),
                           [](const LogFile&) {
                               for (const auto& told : FACTS)
                                   LOG(INFO) << "chain in state " << told.state << ": shifted "
                                             << told.bits << " bits from 0x" << std::hex
                                             << std::setfill('0') << std::setw(8) << told.address;
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
        for (const auto& told : FACTS) {
            record(told);
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
    row.add("KelUtil", Filtered{ownFile, [](const Facts& told) {
                                    const auto& logger = KelRT::Logger::logger;
                                    if (logger.shouldPrintLog(FILTERED))
                                        printRecord(FILTERED, told);
                                }});
#ifdef HAVE_GLOG
    row.add("VLOG", Filtered{LogFile(directory.file("glog.")), [](const Facts& told) {
                                 VLOG(FILTERED) << "chain in state " << told.state;
                             }});
#else
    row.missing("VLOG");
#endif
    row.limit(Filtered{LogFile(directory.file("limit.log")), [](const Facts& told) {
                           benchmark::DoNotOptimize(&limitLevel);
                           if (limitLevel >= FILTERED)
                               std::puts(told.state);
                       }});
}

void filteredRow(const LogFile& ownFile, const LogDirectory& directory) {
    Row row("records", "filtered, written anyway", "-", RECORDS);
    row.add("KelUtil", Filtered{ownFile, [](const Facts& told) { printRecord(FILTERED, told); }});
#ifdef HAVE_SPDLOG
    const auto logger = spdlogTo(directory.file("filtered.log"));
    row.add("spdlog",
            Filtered{LogFile(directory.file("filtered.log")), [logger](const Facts& told) {
                         spdlogRecord(*logger, spdlog::level::debug, told);
                     }});
#else
    row.missing("spdlog");
#endif
}

} // namespace

int main(int argc, char** argv) {
    static const LogDirectory directory; // goes with the process, also when a proof fails
    const LogFile ownFile = startLogging(directory, "0");
    writtenRow(ownFile, directory);
    for (const char* name : {"KelUtil.log", "glog.", "limit.log"})
        LogFile(directory.file(name)).empty(); // for the proofs below
    askedRow(ownFile, directory);
    filteredRow(ownFile, directory);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
