// SPDX-License-Identifier: MIT
#include "report.h"

#include "field_text.h"

#include "KelRT/MethodLogger.h"
#include "KelRT/NumberValue.h"

#include <algorithm>
#include <utility>

namespace field_report {

using KelRT::Kel_ByteBuffer;

namespace {

// The report is written in pieces of at least this many bytes.
constexpr std::size_t PIECE = 1 << 16;

constexpr std::uint64_t STEP = 64; // the most bits that getBitsLL() reads

// Returns true if the bits of `field` differ from those in `previous`, or from 0 if it is null.
bool differ(const Field& field, Kel_ByteBuffer& bits, Kel_ByteBuffer* previous) {
    for (std::uint64_t at = 0; at < field.width; at += STEP) {
        const std::uint64_t count = std::min(STEP, field.width - at);
        const std::uint64_t before =
            previous == nullptr ? 0 : previous->getBitsLL(field.lowest + at, count);
        if (bits.getBitsLL(field.lowest + at, count) != before)
            return true;
    }
    return false;
}

} // namespace

Report::Report(const Settings& chosen, const FieldTable& fieldTable, Messages& faultMessages)
    : settings(&chosen), table(&fieldTable), messages(&faultMessages) {}

void Report::print(Lines& capture, Format& format, Output& output) {
    KelRT::MethodLogger trace;
    trace.setMethodName("print");
    std::string line;
    for (bool more = true; more;) {
        try {
            more = capture.next(line);
            if (more)
                takeLine(line, format);
        } catch (const Fault& fault) {
            messages->reportFault(capture.place(), fault.what());
        }
        if (text.size() >= PIECE || capture.mayBlock() || settings->format == FormatKind::JSONL)
            flush(output);
    }
    complete = capture.isComplete();
    checkSelection();
    format.end(text);
    flush(output);
}

void Report::takeLine(const std::string& line, Format& format) {
    try {
        readScan(line, settings->byteOrder, *table, scan);
    } catch (const Fault&) {
        countScan(scan.name); // a faulty scan is numbered as well
        throw;
    }
    Register& entry = countScan(scan.name);
    if (entry.whole.width == 0)
        takeFields(entry);
    checkWidth(entry);
    if (!entry.isSelected)
        return;
    if (entry.scans >= settings->firstScan && entry.scans <= settings->lastScan)
        report(entry, format);
    if (settings->onlyChanges)
        entry.previous = std::move(scan.bits);
}

Report::Register& Report::countScan(const std::string& name) {
    Register& entry = registers[name];
    if (++entry.scans == 1)
        entry.name = name;
    return entry;
}

// Takes the fields of a register from the table. A register without a row there gets the width of
// its first scan.
void Report::takeFields(Register& entry) {
    entry.isSelected = isSelected(entry.name);
    const auto known = table->find(entry.name);
    if (known != table->end()) {
        entry.whole = known->second.whole;
        entry.fields = known->second.fields;
    }
    if (entry.whole.width == 0) {
        entry.whole = wholeOf(scan.width);
        removeMisfits(entry.fields, scan.width, *messages);
    }
    if (!entry.fields.empty())
        entry.gaps = gapsBetween(entry.fields, entry.whole.width);
}

void Report::checkWidth(const Register& entry) const {
    if (entry.whole.width == scan.width)
        return;
    const std::string bits = std::to_string(entry.whole.width) + " bits";
    throw Fault(entry.whole.place.empty()
                    ? "register '" + entry.name + "' had " + bits + " before"
                    : "the table gives register '" + entry.name + "' " + bits);
}

bool Report::isSelected(const std::string& name) const {
    const auto isIt = [&](const std::string& wanted) {
        return KelRT::Kel_Util::stricmp(wanted, name) == 0;
    };
    const auto& names = settings->registers;
    return names.empty() || std::any_of(names.begin(), names.end(), isIt);
}

void Report::report(Register& entry, Format& format) {
    scanReport.registerName = &entry.name;
    scanReport.scan = entry.scans;
    scanReport.whole = &entry.whole;
    scanReport.items.clear();
    Kel_ByteBuffer* const previous = entry.previous.getSize() == 0 ? nullptr : &entry.previous;
    const auto takeField = [&](const Field& field) {
        if (previous == nullptr || differ(field, scan.bits, previous))
            addItem(field);
    };
    if (entry.fields.empty())
        takeField(entry.whole);
    std::for_each(entry.fields.begin(), entry.fields.end(), takeField);
    for (const Field& gap : entry.gaps)
        if (differ(gap, scan.bits, previous))
            addItem(gap);
    if (!scanReport.items.empty())
        format.addScan(scanReport, text);
    anyReported = true;
}

void Report::addItem(const Field& field) {
    KelRT::Kel_Number number(field.width);
    KelRT::bits2Number(scan.bits, field.lowest, number);
    scanReport.items.push_back(
        {&field, rawText(field, number), valueText(field, number), nameText(field, number)});
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
    output.write(text);
    text.clear();
}

} // namespace field_report
