// SPDX-License-Identifier: MIT
//
// Reports one capture: reads its lines and passes one scan after the other to a format.
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

    /// Reports the scans of \a capture. A line with a fault is reported as such and left out.
    void print(Lines& capture, Format& format, Output& output);

    /// False if the capture could not be read to its end, or does not hold what was asked for.
    bool isComplete() const { return complete; }

private:
    struct Register {
        std::string name;          // as first spelled in the capture
        Field whole;               // its width is 0 before the first good line
        std::vector<Field> fields; // within its width; if there are none, the whole is shown
        std::vector<Field> gaps;   // that the fields leave
        std::uint64_t scans = 0;
        bool isSelected = false;
        KelRT::Kel_ByteBuffer previous; // scan, if only changes are shown
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
    std::string text; // not yet written
    bool anyReported = false;
    bool complete = true;
};

} // namespace field_report
