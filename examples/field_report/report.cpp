// SPDX-License-Identifier: MIT
#include "report.h"

#include "field_text.h"

#include "KelRT/MethodLogger.h"

#include <algorithm>
#include <iterator>

namespace field_report {

namespace {

constexpr std::size_t PIECE = 1 << 16; // bytes of report per write, of capture per progress line

Field wholeOf(std::uint64_t width) {
    Field field;
    field.name = "(whole)";
    field.width = width;
    return field;
}

} // namespace

Report::Report(const Settings& chosen, const FieldTable& fieldTable, Messages& faultMessages)
    : settings(&chosen), table(&fieldTable), messages(&faultMessages) {}

void Report::print(Lines& capture, Format& format, Output& output) {
    KelRT::MethodLogger trace;
    trace.setMethodName("print");
    std::string line;
    std::uint64_t due = 0; // the value of bytesRead() at which the progress is shown again
    for (bool more = true; more;) {
        try {
            more = capture.next(line);
            if (more)
                takeLine(line, format);
        } catch (const Fault& fault) {
            messages->reportFault(capture.place(), fault.what());
        }
        if (text.size() >= PIECE || capture.mayBlock())
            flush(output);
        if (capture.bytesRead() >= due) {
            messages->showProgress(capture.bytesRead(), capture.size());
            due = capture.bytesRead() + PIECE;
        }
    }
    complete = capture.isComplete();
    checkSelection();
    format.end(text);
    flush(output);
    messages->hideProgress();
}

void Report::takeLine(const std::string& line, Format& format) {
    try {
        readScan(line, settings->byteOrder, scan);
    } catch (const Fault&) {
        countScan(scan.name); // a faulty scan takes a number, too
        throw;
    }
    Register& entry = countScan(scan.name);
    if (entry.width == 0)
        takeFields(entry);
    if (entry.width != scan.width)
        throw Fault("register '" + entry.name + "' had " + std::to_string(entry.width) +
                    " bits before");
    if (entry.isSelected && entry.scans >= settings->firstScan && entry.scans <= settings->lastScan)
        report(entry, format);
}

Report::Register& Report::countScan(const std::string& name) {
    Register& entry = registers[name];
    if (++entry.scans == 1)
        entry.name = name;
    return entry;
}

// Takes the fields of a register from the table, now that its width is known.
void Report::takeFields(Register& entry) {
    entry.width = scan.width;
    entry.isSelected = isSelected(entry.name);
    const auto known = table->find(entry.name);
    const auto misfits = [&](const Field& field) {
        if (field.lowest + field.width <= entry.width)
            return false;
        messages->reportFault(field.place, "field '" + field.name + "' does not lie within the " +
                                               std::to_string(entry.width) +
                                               " bits of its register");
        return true;
    };
    if (known != table->end())
        std::remove_copy_if(known->second.begin(), known->second.end(),
                            std::back_inserter(entry.fields), misfits);
    if (entry.fields.empty())
        entry.fields.push_back(wholeOf(entry.width));
}

bool Report::isSelected(const std::string& name) const {
    const auto isIt = [&](const std::string& wanted) {
        return KelRT::Kel_Util::stricmp(wanted, name) == 0;
    };
    const auto& names = settings->registers;
    return names.empty() || std::any_of(names.begin(), names.end(), isIt);
}

void Report::report(const Register& entry, Format& format) {
    items.clear();
    for (const Field& field : entry.fields) {
        const std::string digits = digitsOf(scan.bits, field);
        items.push_back(
            {&entry.name, entry.scans, &field, rawText(field, digits), valueText(field, digits)});
    }
    format.addScan(items, text);
    anyReported = true;
}

void Report::checkSelection() {
    const auto missing = [&](const std::string& what) {
        complete = false;
        messages->reportFault("field_report", what + " is not in the capture");
    };
    for (const std::string& name : settings->registers)
        if (registers.count(name) == 0)
            missing("register '" + name + "'");
    if (complete && !anyReported && settings->firstScan > 1)
        missing("scan " + std::to_string(settings->firstScan));
}

void Report::flush(Output& output) {
    if (text.empty())
        return;
    messages->hideProgress();
    output.write(text);
    text.clear();
}

} // namespace field_report
