// SPDX-License-Identifier: MIT
//
// Prints captured registers field by field. HELP in settings.cpp describes its input.
#include "field_table.h"
#include "formats.h"
#include "host.h"
#include "lines.h"
#include "messages.h"
#include "output.h"
#include "report.h"
#include "settings.h"

#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"
#include "KelRT/Version.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using namespace field_report;
using namespace KelRT;

namespace {

constexpr unsigned FAILURE = 0x80000001; // for setReturnStatus(), bit 31 marks a failure

// Reads the table that the settings name, or else the installed one. If it cannot be read, reports
// the fault and returns an empty table, so every register is printed as one field.
FieldTable tableFor(const Settings& settings, Messages& messages) {
    if (!settings.table.empty())
        return readTable(settings.table, messages);
    try {
        return readTable(Kel_Util::getDataDirPath() + "fields.csv", messages);
    } catch (const Kel_Exception& fault) { // its message ends in a newline
        messages.reportFault("field_report", Kel_Util::trimWhitespace(fault.what()) +
                                                 " Name a table with fields=FILE, or the directory "
                                                 "of fields.csv with TOR_KEL_DATADIR.");
    }
    return {};
}

// Returns the table of the named registers, or the whole table if there are no names. The columns
// of the report are then only as wide as the reported registers need.
FieldTable selectedOf(FieldTable table, const std::vector<std::string>& names) {
    FieldTable selected;
    for (const std::string& name : names)
        selected.insert(table.extract(name));
    return names.empty() ? std::move(table) : std::move(selected);
}

std::unique_ptr<Format> formatFor(const Settings& settings, const FieldTable& table) {
    if (settings.format == FormatKind::CSV)
        return makeCsvFormat(hasNames(table));
    if (settings.format == FormatKind::JSON)
        return makeJsonFormat(hasNames(table));
    if (settings.format == FormatKind::JSONL)
        return makeJsonLinesFormat(hasNames(table));
    const char* const noColour = std::getenv("NO_COLOR");
    const bool plain = !settings.output.empty() || (noColour != nullptr && *noColour != 0);
    return makeTextFormat(selectedOf(table, settings.registers), !plain && host::enableEscapes());
}

void report(const Settings& settings, Messages& messages) {
    for (const std::string& input : {settings.capture, settings.table})
        if (host::isSameFile(settings.output, input))
            throw Fault("the report would replace " + input);
    const auto capture = settings.lines.empty() ? openLines(settings.capture, messages)
                                                : std::make_unique<Lines>(settings.lines);
    if (capture == nullptr)
        return;
    const FieldTable table = tableFor(settings, messages);
    const bool hasTable = !table.empty() || !messages.anyFault();
    const auto format = formatFor(settings, table);
    Output output(settings.output, settings.format != FormatKind::TEXT);
    Report report(settings, table, messages);
    report.print(*capture, *format, output);
    if (settings.output.empty() || (hasTable && report.isComplete()))
        output.finish();
}

bool readSettings(const std::vector<std::string>& arguments, Settings& settings,
                  Messages& messages) {
    try {
        settings = settingsOf(arguments);
        return true;
    } catch (const Fault& fault) {
        messages.reportFault("field_report", fault.what());
        std::cerr << USAGE;
        return false;
    }
}

unsigned run(const std::vector<std::string>& arguments) {
    MethodLogger trace;
    trace.setMethodName("field_report");
    Messages messages;
    Settings settings;
    try {
        if (readSettings(arguments, settings, messages))
            report(settings, messages);
    } catch (const Fault& fault) {
        messages.reportFault("field_report", fault.what());
    } catch (const Kel_Exception& fault) {
        messages.reportFault("field_report", Kel_Util::trimWhitespace(fault.what()));
    }
    return trace.setReturnStatus(messages.anyFault() ? FAILURE : 0);
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto has = [&](const char* argument) {
        return std::find(arguments.begin(), arguments.end(), argument) != arguments.end();
    };
    std::ios::sync_with_stdio(false); // makes the streams several times faster
    if (has("--help") || has("--version")) {
        std::cout << (has("--help")
                          ? std::string(USAGE) + HELP
                          : std::string("field_report ") + getVersionWithBuildNumber() + '\n');
        return std::cout.flush() ? 0 : 1;
    }
    Logger::logger.startLogging();
    const unsigned status = run(arguments);
    Logger::logger.endLogging();
    return status == 0 ? 0 : 1;
}
