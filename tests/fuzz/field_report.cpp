// SPDX-License-Identifier: MIT
//
// Runs the report tool on an input that holds a capture, a line "%%" and a table of fields. For any
// input, each fault is one line with its place; the line ends of Windows give the same report and
// faults; and a report of only the changes has the same faults.
#include "../../tools/field_report/formats.h"
#include "../../tools/field_report/report.h"

#include "input.h"
#include "support/host.h"

#include <iostream>
#include <sstream>
#include <utility>

using namespace field_report;

namespace {

std::string withLineEnds(const std::string& text, const char* lineEnd) {
    std::string result;
    for (const char c : text)
        result += c == '\n' ? std::string(lineEnd) : std::string(1, c);
    return result;
}

// Returns the report and its faults. The report is a table for people or, with onlyChanges, JSON.
std::pair<std::string, std::string> reportOf(const std::string& capture, const std::string& table,
                                             const char* lineEnd, bool onlyChanges = false) {
    static const test_host::TemporaryDirectory directory;
    test_host::writeFile(directory / "capture", withLineEnds(capture, lineEnd));
    test_host::writeFile(directory / "table", withLineEnds(table, lineEnd));
    std::ostringstream faults;
    std::streambuf* const usual = std::cerr.rdbuf(faults.rdbuf());
    Messages messages;
    Lines lines(directory / "capture");
    const FieldTable fields = readTable(directory / "table", messages);
    Output output(directory / "report", true);
    Settings settings;
    settings.onlyChanges = onlyChanges;
    const auto format =
        onlyChanges ? makeJsonLinesFormat(hasNames(fields)) : makeTextFormat(fields, false);
    Report report(settings, fields, messages);
    report.print(lines, *format, output);
    output.finish();
    std::cerr.rdbuf(usual);
    fuzz::require(messages.anyFault() == !faults.str().empty(), "a fault is reported and counted");
    return {test_host::readWholeFile(directory / "report"), faults.str()};
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = fuzz::Input(data, size).text(size);
    const std::size_t cut = text.find("%%\n");
    const std::string capture = text.substr(0, cut);
    const std::string table = cut == std::string::npos ? "" : text.substr(cut + 3);
    const auto outcome = reportOf(capture, table, "\n");
    std::istringstream lines(outcome.second);
    for (std::string line; std::getline(lines, line);)
        fuzz::require(line.find("/capture:") != std::string::npos ||
                          line.find("/table:") != std::string::npos,
                      "a fault is one line with its place");
    fuzz::require(outcome == reportOf(capture, table, "\r\n"), "line ends make no difference");
    fuzz::require(outcome.second == reportOf(capture, table, "\n", true).second,
                  "changes have the faults of the whole");
    return 0;
}
