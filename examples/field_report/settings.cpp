// SPDX-License-Identifier: MIT
#include "settings.h"

#include "decimal.h"

#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"

#include <algorithm>
#include <array>

namespace field_report {

using KelRT::Kel_StrTok;
using KelRT::Kel_Util;

const char* const USAGE =
    R"(usage: field_report capture=FILE [fields=FILE] [register=NAME[,NAME...]] [scan=N[..M]]
                    [byteorder=big|little] [format=text|csv|json] [output=FILE|temp]
       field_report --help | --version
)";

const char* const HELP = R"(
Prints the registers of a capture field by field, as a field table names them.

  capture=FILE   one scan of a register a line: name, width in bits, value as hexadecimal
                 digits, the most significant first; 0x in front, blanks and _ between digits
                 are allowed, # begins a comment; capture=- reads standard input
  fields=FILE    one field a line, as comma-separated values: register, field, lowest bit,
                 width in bits, radix letter, scale, offset, unit, description; the last four
                 may be empty; a column with a comma goes in double quotes, with "" for a quote;
                 a line that begins with # is a comment. Without this setting the table is
                 fields.csv in the data directory, which the variable TOR_KEL_DATADIR names
  register=NAME[,NAME...]
                 only these registers
  scan=N[..M]    only these scans; those of a register are numbered from 1
  byteorder=little
                 the first two digits of a value are its lowest byte, as in a memory dump
  format=text    a table for people, the default; the second scan of ID is printed as ID #2
  format=csv     comma-separated values: register, scan, field, lowest, width, raw, value,
                 unit, description; the first line names them
  format=json    an array of objects with the same names as keys
  output=FILE    the report goes into FILE, which is replaced once the report is complete
  output=temp    it goes into a new file below .kel in the directory that the variable
                 USERPROFILE names; the file's name is printed instead
  --version      prints the version of the library

Radix letters: b binary, o octal, d or i signed decimal, u unsigned decimal, x hexadecimal,
s characters. The scaled value is raw value * scale + offset, with as many decimals as the
scale or the offset, whichever has more; only d and i read the raw value as signed.

The capture
  IDCODE 32 4BA00477
and the table
  IDCODE,part_number,12,16,X,,,,"Given by the manufacturer"
give
  IDCODE    part_number  [27:12]  0xBA00               Given by the manufacturer

Each fault of the input is one line on standard error; all else is still reported. The exit
status is 0 when there was no fault, and 1 otherwise.
)";

namespace {

constexpr std::array SETTINGS = {"capture",   "fields", "register", "scan",
                                 "byteorder", "format", "output"};

// Rejects what findKey() would not notice: unknown names, empty values and repeated settings.
void checkArguments(const std::vector<std::string>& arguments) {
    std::vector<std::string> seen;
    for (const std::string& argument : arguments) {
        const std::size_t end = std::min(argument.find('='), argument.size());
        const std::string name = argument.substr(0, end);
        const auto isIt = [&](const std::string& known) {
            return Kel_Util::stricmp(name, known) == 0;
        };
        if (end == argument.size() || std::none_of(SETTINGS.begin(), SETTINGS.end(), isIt))
            throw Fault("'" + argument + "' is not a setting");
        if (end + 1 == argument.size())
            throw Fault("'" + argument + "' has no value");
        if (std::any_of(seen.begin(), seen.end(), isIt))
            throw Fault("'" + name + "' is set twice");
        seen.push_back(name);
    }
}

// The index of `word` in `choices`; 0, the default, for an empty word.
std::size_t choiceOf(const std::string& word, const std::vector<std::string>& choices,
                     const char* name) {
    for (std::size_t i = 0; i < choices.size(); ++i)
        if (word.empty() || Kel_Util::stricmp(word, choices[i]) == 0)
            return i;
    std::string list = choices[0];
    for (std::size_t i = 1; i < choices.size(); ++i)
        list += (i + 1 < choices.size() ? ", " : " or ") + choices[i];
    throw Fault("'" + word + "' is not a " + name + "; expected " + list);
}

void readScans(const std::string& range, Settings& settings) {
    if (range.empty())
        return;
    const std::size_t dots = range.find("..");
    settings.firstScan = numberOf<std::uint64_t>(range.substr(0, dots), "the scan");
    settings.lastScan = dots == std::string::npos
                            ? settings.firstScan
                            : numberOf<std::uint64_t>(range.substr(dots + 2), "the last scan");
    if (settings.firstScan == 0 || settings.lastScan < settings.firstScan)
        throw Fault("'" + range + "' selects no scan; they are numbered from 1");
}

std::vector<std::string> namesOf(const std::string& list) {
    Kel_StrTok tokens(list.c_str(), ", \t", false, false, false);
    std::vector<std::string> names;
    while (const char* const name = tokens.getNext())
        if (*name != 0)
            names.emplace_back(name);
    if (names.empty() && !list.empty())
        throw Fault("'register=" + list + "' names no register");
    return names;
}

} // namespace

Settings settingsOf(std::vector<std::string> arguments) {
    checkArguments(arguments);
    const auto valueOf = [&](const char* name) { return Kel_Util::findKey(arguments, name); };
    Settings settings;
    settings.capture = valueOf("capture");
    if (settings.capture.empty())
        throw Fault("capture=FILE is needed");
    settings.table = valueOf("fields");
    settings.registers = namesOf(valueOf("register"));
    readScans(valueOf("scan"), settings);
    settings.byteOrder = std::array{
        ByteOrder::BIG,
        ByteOrder::LITTLE}[choiceOf(valueOf("byteorder"), {"big", "little"}, "byteorder")];
    settings.format = std::array{
        FormatKind::TEXT, FormatKind::CSV,
        FormatKind::JSON}[choiceOf(valueOf("format"), {"text", "csv", "json"}, "format")];
    settings.output = valueOf("output");
    return settings;
}

} // namespace field_report
