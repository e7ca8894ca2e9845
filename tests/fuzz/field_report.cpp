// SPDX-License-Identifier: MIT
//
// Runs the report tool on an input that holds a capture, a line "%%" and a table of fields. Checks
// that each fault is one line that names a file. Line ends of Windows must change neither the
// report nor the faults. A report of only the changes must have the same faults.
#include "../../tools/field_report/formats.h"
#include "../../tools/field_report/report.h"

#include "input.h"
#include "support/host.h"

#include <iostream>
#include <sstream>
#include <utility>

using namespace field_report;

namespace {

std::string withCarriageReturns(std::string text) {
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2)
        text.insert(at, 1, '\r');
    return text;
}

// Returns the report and its faults. The report is a table for people or, with onlyChanges, JSON.
std::pair<std::string, std::string> reportOf(const std::string& capture, const std::string& table,
                                             bool onlyChanges = false) {
    static const test_host::TemporaryDirectory directory;
    test_host::writeFile(directory / "capture", capture);
    test_host::writeFile(directory / "table", table);
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
    fuzz::require(messages.anyFault() == !faults.str().empty(),
                  "a fault is counted if and only if it is printed");
    return {test_host::readWholeFile(directory / "report"), faults.str()};
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::string text = input.text(size);
    const std::size_t cut = text.find("%%\n");
    const std::string capture = text.substr(0, cut);
    const std::string table = cut == std::string::npos ? "" : text.substr(cut + 3);
    const auto [report, faults] = reportOf(capture, table);
    std::istringstream lines(faults);
    for (std::string line; std::getline(lines, line);)
        fuzz::require(line.find("/capture:") != std::string::npos ||
                          line.find("/table:") != std::string::npos,
                      ("this fault names no file: " + line).c_str());
    const auto ofWindows = reportOf(withCarriageReturns(capture), withCarriageReturns(table));
    fuzz::requireEqual(ofWindows.first, report, "the report of an input with line ends of Windows");
    fuzz::requireEqual(ofWindows.second, faults,
                       "the faults of an input with line ends of Windows");
    fuzz::requireEqual(reportOf(capture, table, true).second, faults,
                       "the faults of a report of only the changes");
    return 0;
}
