// SPDX-License-Identifier: MIT
//
// Reports one capture: reads its lines and passes its scans to a format, one at a time.
#pragma once

#include "capture.h"
#include "field_table.h"
#include "formats.h"
#include "lines.h"
#include "messages.h"
#include "output.h"
#include "settings.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace field_report {

class Report {
public:
    Report(const Settings& chosen, const FieldTable& fieldTable, Messages& faultMessages);

    /// Prints the scans of \a capture. A line with a fault is reported and skipped.
    void print(Lines& capture, Format& format, Output& output);

    /// Returns false if the capture could not be read to its end, or lacks a register or a scan
    /// that the settings ask for.
    bool isComplete() const { return complete; }

private:
    struct Register {
        std::string name;          // as the capture first spells it
        Field whole;               // its width is 0 before the first valid line
        std::vector<Field> fields; // if there are none, `whole` is shown
        std::vector<Field> gaps;   // the bits that no field covers
        std::uint64_t scans = 0;   // how many have been read
        bool isSelected = false;
        KelRT::Kel_ByteBuffer previous; // the preceding scan, if only changes are shown
    };

    void takeLine(const std::string& line, Format& format);
    Register& countScan(const std::string& name);
    void takeFields(Register& entry);
    void checkWidth(const Register& entry) const;
    bool isSelected(const std::string& name) const;
    void report(Register& entry, Format& format);
    void addItem(const Field& field);
    void checkSelection();
    void flush(Output& output);

    const Settings* settings;
    const FieldTable* table;
    Messages* messages;
    std::map<std::string, Register, CaseInsensitiveLess> registers;
    Scan scan;
    ScanReport scanReport;
    std::string text; // the part of the report that is not yet written
    bool anyReported = false;
    bool complete = true;
};

} // namespace field_report
