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
Prints the registers of a capture field by field, as a field table names them.

Settings:
  capture=FILE   the capture; capture=- reads standard input
  line="NAME: HEX"
                 a line of a capture, in place of a file; may be repeated
  fields=FILE    the field table; fields=- reads standard input, unless capture=- does. Without
                 this setting it is fields.csv in the data directory, which the variable
                 TOR_KEL_DATADIR names
  register=NAME[,NAME...]
                 only these registers
  scan=N[..M]    only these scans; those of a register are numbered from 1
  show=changes   a field only where its raw value differs from the preceding scan of its
                 register; the first scan of a register is whole
  byteorder=little
                 the first two digits of a value are its lowest byte, as in a memory dump
  format=text    a table for people, the default; the second scan of ID is printed as ID #2
  format=csv     comma-separated values: register, scan, field, lowest, width, raw, value,
                 unit, description; the first line names them
  format=json    an array of objects with the same names as keys
  format=jsonl   one object a scan and line, written when the scan is complete, with the keys
                 register, scan, width, description and fields, an array of objects
  output=FILE    the report goes into FILE, which is replaced once the report is complete
  output=temp    it goes into a new file below .kel in the directory that the variable
                 USERPROFILE names; the file's name is printed instead
  --version      prints the version of the library

Capture: one scan of a register a line.
  NAME WIDTH HEX    the width in bits, and the value, the most significant digit first
  NAME: HEX         also NAME = HEX; the width is that of the register's row in the table
0x in front, blanks and _ between digits are allowed; # begins a comment.

Field table: one field a line, as comma-separated values.
  register, field, lowest bit, width, radix letter, scale, offset, unit, description, names
The last five may be empty, and empty columns at the end may be left out. A column with a comma
goes in double quotes, with "" for a quote; a line that begins with # is a comment. Bits and
widths may be hexadecimal, with 0x in front. Two fields of a register have different names.

A row whose field name is empty is that of the register itself: its width and its description.
Its lowest bit and its radix letter may be empty. A register without fields is reported whole.

Radix letters: b binary, o octal, d or i signed decimal, u unsigned decimal, x hexadecimal,
s characters; only d and i read the raw value as signed.

The value is raw value * scale + offset. With an offset or a unit alone the scale is 1. The value
has as many decimals as the scale or the offset, whichever has more. A scale may be a fraction,
such as 100/255: it counts for the fewest decimals that tell neighbouring raw values apart, here 1.

Names are those of raw values, such as 0=idle;1=shift;0x3=exit. A code in hexadecimal is the bits of
the raw value. A name stands in the table for people where the value would; in the other forms it
is the last column or key, name, which is there if any field of the table has names.

After the fields of a scan, each run of bits that no field covers gets a row without a field name,
in hexadecimal, unless the bits are all 0.

The capture
  IDCODE 32 4BA00477
and the table
  IDCODE,part_number,12,16,X,,,,"Given by the manufacturer"
  IDCODE,marker,0,1,b
give
  IDCODE    part_number  [27:12]  0xBA00               Given by the manufacturer
            marker         [0:0]     0b1
                         [31:28]     0x4
                          [11:1]   0x23B

Each fault of the input is one line on standard error; all else is still reported. The exit
status is 0 when there was no fault, and 1 otherwise.

TOR_KEL_LOGFILE names a file for a log of the run, and TOR_KEL_LOGDETAIL its detail level: 3 shows
each scan, 4 the calls. NO_COLOR, set and not empty, makes the header of a table plain.
)";

namespace {

constexpr const char* LINE = "line"; // only this setting may be repeated
constexpr std::array SETTINGS = {"capture", LINE,        "fields", "register", "scan",
                                 "show",    "byteorder", "format", "output"};

// Rejects what findKey() does not detect: unknown names, empty values and repeated settings.
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
