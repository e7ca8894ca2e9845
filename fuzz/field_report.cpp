// SPDX-License-Identifier: MIT
//
// The two readers of the report tool: a capture, a line "%%", and a table of fields. Whatever they
// hold, the tool reports, tells each fault in one line with its place, and makes nothing of the
// line ends of another host.
#define main fieldReportMain // NOLINT(cppcoreguidelines-macro-usage): the tool is one file
#include "../examples/field_report/field_report.cpp"
#undef main

#include "input.h"
#include "test_host.h"

#include <sstream>

namespace {

struct Outcome {
    std::string report;
    std::string faults;
    unsigned status;
    bool operator==(const Outcome&) const = default;
};

std::string withLineEnds(const std::string& text, const char* lineEnd) {
    std::string result;
    for (const char c : text)
        result += c == '\n' ? std::string(lineEnd) : std::string(1, c);
    return result;
}

Outcome reportOf(const std::string& capture, const std::string& table, const char* lineEnd) {
    static const test_host::TemporaryDirectory directory;
    const std::string capturePath = directory / "capture";
    const std::string tablePath = directory / "table";
    test_host::writeFile(capturePath, withLineEnds(capture, lineEnd));
    test_host::writeFile(tablePath, withLineEnds(table, lineEnd));
    std::ostringstream faults;
    std::ostringstream out;
    std::streambuf* const usual = std::cerr.rdbuf(faults.rdbuf());
    FieldReport report;
    fuzz::require(report.readLines(capturePath, &FieldReport::takeRegister), "a file is read");
    fuzz::require(report.readLines(tablePath, &FieldReport::takeField), "a file is read");
    report.print("", out);
    std::cerr.rdbuf(usual);
    return {out.str(), faults.str(), report.status};
}

void expectPlaces(const Outcome& outcome) {
    fuzz::require((outcome.status == 0) == outcome.faults.empty(), "a fault is told and counted");
    std::istringstream lines(outcome.faults);
    for (std::string line; std::getline(lines, line);) {
        // The first is the file's own name; a text of the input may hold another.
        const std::size_t name = std::min(line.find("/capture:"), line.find("/table:"));
        const std::size_t number = line.find(':', name) + 1; // 0 without a name
        fuzz::require(number < line.size() && line[number] >= '1' && line[number] <= '9',
                      "a fault is one line with its place");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = fuzz::Input(data, size).text(size);
    const std::size_t cut = text.find("%%\n");
    const std::string capture = text.substr(0, cut);
    const std::string table = cut == std::string::npos ? "" : text.substr(cut + 3);
    const Outcome outcome = reportOf(capture, table, "\n");
    expectPlaces(outcome);
    fuzz::require(outcome == reportOf(capture, table, "\r\n"), "line ends make no difference");
    return 0;
}
