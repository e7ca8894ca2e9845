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
    R"(usage: field_report capture=FILE | line="NAME: HEX"... [fields=FILE]
                    [register=NAME[,NAME...]] [scan=N[..M]] [show=all|changes]
                    [byteorder=big|little] [format=text|csv|json|jsonl] [output=FILE|temp]
       field_report --help | --version
)";

const char* const HELP = R"(
Prints the registers of a capture field by field. A field table says which fields they have.

Settings:
  capture=FILE   reads the capture from FILE; - is standard input
  line="NAME: HEX"
                 gives one line of a capture in place of a file; may be repeated
  fields=FILE    reads the field table from FILE; - is standard input, but not for both files.
                 The default is fields.csv in the data directory, which the variable
                 TOR_KEL_DATADIR names
  register=NAME[,NAME...]
                 reports only these registers
  scan=N[..M]    reports only scan N, or the scans N to M, of each register. The scans of a
                 register are numbered from 1
  show=changes   reports the first scan of a register as a whole, and of each later scan only the
                 fields whose raw value differs from that in the preceding scan
  byteorder=little
                 reads the first two digits of a value as its lowest byte, as in a memory dump
  format=text    prints a table for people; this is the default. The second scan of register ID
                 is labelled ID #2
  format=csv     prints comma-separated values: register, scan, field, lowest, width, raw, value,
                 unit, description. The first line has these names
  format=json    prints an array with one object for each field; the same names are the keys
  format=jsonl   prints each scan as one object on one line, as soon as its line has been read.
                 The keys are register, scan, width, description and fields, an array with one
                 object for each field
  output=FILE    writes the report to FILE; an older FILE stays until the report is complete
  output=temp    writes the report to a new file and prints the name of that file. It is in the
                 directory .kel below the directory that the variable USERPROFILE names
  --version      prints the version of the library

Capture: each line holds one scan of one register, in one of these forms:
  NAME WIDTH HEX          the width in bits, and the value, the most significant digit first
  NAME: HEX, NAME = HEX   without the width, if the table has a row for the register itself
The digits may have 0x in front and blanks or _ between them. # begins a comment.

Field table: each line describes one field, as comma-separated values:
  register, field, lowest bit, width, radix letter, scale, offset, unit, description, names
The last five may be empty, and empty columns at the end may be left out. A column with a comma
is enclosed in double quotes; in it, "" stands for one quote. A line that begins with # is a
comment. Bits and widths may be hexadecimal, with 0x in front. The fields of a register must have
different names.

A row without a field name describes the register itself: its width and its description. Its
lowest bit and its radix letter may be empty. A register without fields is reported as one field,
named (whole).

Radix letters: b binary, o octal, d or i signed decimal, u unsigned decimal, x hexadecimal,
s characters. Only d and i read the raw value as signed.

The value is raw value * scale + offset. If there is an offset or a unit but no scale, the scale
is 1. The value has as many decimals as the scale or the offset, whichever has more. A scale may
be a fraction. Its number of decimals is then the smallest that tells neighbouring raw values
apart: 1 for 100/255.

The column names holds codes and their names, such as 0=idle;1=shift;0x3=exit. A decimal code is
the raw value; a hexadecimal code is the bits of the raw value. The table for people shows the
name in place of the value. The other formats show it in a last column or key called name, which
exists only if a field of the table has names.

Bits that no field covers come after the fields of the scan. Each run of such bits has a row of
its own, in hexadecimal and without a field name, unless its bits are all 0.

For example, the capture
  IDCODE 32 4BA00477
and the table
  IDCODE,part_number,12,16,X,,,,"Given by the manufacturer"
  IDCODE,marker,0,1,b
give
  IDCODE    part_number  [27:12]  0xBA00               Given by the manufacturer
            marker         [0:0]     0b1
                         [31:28]     0x4
                          [11:1]   0x23B

For each fault of the input, one line is printed to standard error; all else is still reported.
The exit status is 0 if there was no fault, and 1 otherwise.

TOR_KEL_LOGFILE names a file for a log of the run. TOR_KEL_LOGDETAIL is the detail level of the
log: at 3 it shows each scan, at 4 also the calls. The header of a table on a terminal is bold
unless NO_COLOR is set and not empty.
)";

namespace {

constexpr const char* LINE = "line"; // only this setting may be repeated
constexpr std::array SETTINGS = {"capture", LINE,        "fields", "register", "scan",
                                 "show",    "byteorder", "format", "output"};

// Refuses what findKey() does not detect: unknown names, empty values and repeated settings.
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
        if (!isIt(LINE) && std::any_of(seen.begin(), seen.end(), isIt))
            throw Fault("'" + name + "' is set twice");
        seen.push_back(name);
    }
}

// Returns the index of `word` in `choices`, or 0, the default, for an empty word.
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
    settings.firstScan = integerOf(range.substr(0, dots), "the scan");
    settings.lastScan = dots == std::string::npos
                            ? settings.firstScan
                            : integerOf(range.substr(dots + 2), "the last scan");
    if (settings.firstScan == 0 || settings.lastScan < settings.firstScan)
        throw Fault("'" + range + "' selects no scan; scans are numbered from 1");
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

std::vector<std::string> linesOf(const std::vector<std::string>& arguments) {
    std::vector<std::string> lines;
    for (const std::string& argument : arguments) {
        const std::size_t end = argument.find('=');
        if (Kel_Util::stricmp(argument.substr(0, end), LINE) == 0)
            lines.push_back(argument.substr(end + 1));
    }
    return lines;
}

void checkInputs(const Settings& settings) {
    if (settings.capture.empty() && settings.lines.empty())
        throw Fault("capture=FILE or line=\"NAME: HEX\" is needed");
    if (!settings.capture.empty() && !settings.lines.empty())
        throw Fault("capture and line exclude each other");
    if (settings.capture == "-" && settings.table == "-")
        throw Fault("capture=- and fields=- would both read standard input");
}

} // namespace

Settings settingsOf(std::vector<std::string> arguments) {
    checkArguments(arguments);
    const auto valueOf = [&](const char* name) { return Kel_Util::findKey(arguments, name); };
    Settings settings;
    settings.capture = valueOf("capture");
    settings.lines = linesOf(arguments);
    settings.table = valueOf("fields");
    checkInputs(settings);
    settings.registers = namesOf(valueOf("register"));
    readScans(valueOf("scan"), settings);
    settings.onlyChanges = choiceOf(valueOf("show"), {"all", "changes"}, "value of show") == 1;
    settings.byteOrder = std::array{
        ByteOrder::BIG,
        ByteOrder::LITTLE}[choiceOf(valueOf("byteorder"), {"big", "little"}, "byteorder")];
    settings.format = std::array{
        FormatKind::TEXT, FormatKind::CSV, FormatKind::JSON,
        FormatKind::JSONL}[choiceOf(valueOf("format"), {"text", "csv", "json", "jsonl"}, "format")];
    settings.output = valueOf("output");
    return settings;
}

} // namespace field_report
