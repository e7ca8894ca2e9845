// SPDX-License-Identifier: MIT
//
// Measures log records that are written to a file in memory (tmpfs), with one system call for each
// line, and records that are filtered out by their level. All contenders write the same lines,
// without a prefix.
#include "log_file.h"
#include "peers.h"
#include "row.h"

#include <array>

using namespace bench;

namespace {

constexpr unsigned RECORD_COUNT = 1000;
constexpr int WRITTEN = 1;
constexpr int FILTERED = 5;
/// Holds the arguments of a record: a text, a number printed in decimal, and one in hexadecimal.
struct Record {
    const char* state;
    unsigned bits;
    unsigned address;
};

std::vector<Record> randomRecords() {
    std::mt19937_64 random(RECORD_COUNT);
    std::vector<Record> all;
    for (unsigned i = 0; i < RECORD_COUNT; ++i)
        all.push_back({std::array{"idle", "update-instruction", "shift", "capture-data"}[i % 4],
                       static_cast<unsigned>(random() % 100'000), static_cast<unsigned>(random())});
    return all;
}

const std::vector<Record> ALL = randomRecords();

std::string same(std::string text) {
    return text;
}

void printRecord(int level, const Record& record) {
    KelRT::Logger::logger.printLog(level, "chain in state %s: shifted %u bits from 0x%08x\n",
                                   record.state, record.bits, record.address);
}

/// Returns a function that calls \a write for each record.
template <typename Write>
auto eachRecord(Write write) {
    return [write](const LogFile&) {
        for (const Record& record : ALL)
            write(record);
    };
}

void writtenRow(const LogFile& ownFile, const LogDirectory& directory) {
    Row row("records", "written", "40 to 80", RECORD_COUNT);
    const Writer own{ownFile,
                     eachRecord([](const Record& record) { printRecord(WRITTEN, record); }), same};
    row.add("KelUtil", own);
    row.addPeer<peers::Spdlog>("spdlog", [&](auto spdlog) {
        const std::string path = directory.file("spdlog.log");
        const auto logger = spdlog.open(path);
        return Writer{LogFile(path), eachRecord([spdlog, logger](const Record& record) {
                          spdlog.record(logger, true, record.state, record.bits, record.address);
                      }),
                      same};
    });
    row.addPeer<peers::Glog>("glog", [&](auto glog) {
        const std::string path = directory.file("glog.");
        glog.start(path);
        return Writer{LogFile(path), eachRecord([glog](const Record& record) {
                          glog.record(record.state, record.bits, record.address);
                      }),
                      same};
    });
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

// A contender for filtered records. It reads the level again for every record. Its result is the
// content of its file, which must be empty. The file is truncated only once, before all runs, since
// truncating it takes longer than a run.
template <typename Write>
struct Filtered {
    LogFile file;
    Write write;
    void run() {
        for (const auto& record : ALL) {
            write(record);
            benchmark::ClobberMemory();
        }
    }
    std::string result() { return file.text(); }
};
template <typename Write>
Filtered(LogFile, Write) -> Filtered<Write>;

int limitLevel = WRITTEN;

void askedRow(const LogFile& ownFile, const LogDirectory& directory) {
    Row row("records", "filtered, asked", "-", RECORD_COUNT);
    row.add("KelUtil", Filtered{ownFile, [](const Record& record) {
                                    const auto& logger = KelRT::Logger::logger;
                                    if (logger.shouldPrintLog(FILTERED))
                                        printRecord(FILTERED, record);
                                }});
    row.addPeer<peers::Glog>("VLOG", [&](auto glog) {
        return Filtered{LogFile(directory.file("glog.")), [glog](const Record& record) {
                            glog.filteredRecord(FILTERED, record.state);
                        }};
    });
    row.limit(Filtered{LogFile(directory.file("limit.log")), [](const Record& record) {
                           benchmark::DoNotOptimize(&limitLevel);
                           if (limitLevel >= FILTERED)
                               std::puts(record.state);
                       }});
}

void filteredRow(const LogFile& ownFile, const LogDirectory& directory) {
    Row row("records", "filtered, not asked", "-", RECORD_COUNT);
    row.add("KelUtil",
            Filtered{ownFile, [](const Record& record) { printRecord(FILTERED, record); }});
    row.addPeer<peers::Spdlog>("spdlog", [&](auto spdlog) {
        const std::string path = directory.file("filtered.log");
        const auto logger = spdlog.open(path);
        return Filtered{LogFile(path), [spdlog, logger](const Record& record) {
                            spdlog.record(logger, false, record.state, record.bits, record.address);
                        }};
    });
}

} // namespace

int main(int argc, char** argv) {
    static const LogDirectory directory; // removed even if a check fails
    const LogFile ownFile = startLogging(directory, "0");
    writtenRow(ownFile, directory);
    for (const char* name : {"KelUtil.log", "glog.", "limit.log"})
        LogFile(directory.file(name)).truncate(); // the filtered rows expect empty files
    askedRow(ownFile, directory);
    filteredRow(ownFile, directory);
    return runAll(argc, argv);
}
