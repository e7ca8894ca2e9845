// SPDX-License-Identifier: MIT
//
// Prints captured registers field by field. USAGE tells what it reads.
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

using namespace KelRT;

namespace {

constexpr const char* USAGE =
    R"(usage: field_report capture=FILE [fields=FILE] [register=NAME] [output=temp]

Prints the registers of a capture field by field, as a field table names them.

  capture=FILE   one register a line: name, width in bits, value as hexadecimal digits, the
                 most significant first (blanks between them are allowed); # begins a comment
  fields=FILE    one field a line, as comma-separated values: register, field, lowest bit,
                 width in bits, radix letter, scale, offset, unit, "description"; the last four
                 may be empty; a line that begins with # is a comment. Without this setting it
                 is fields.csv in the data directory, which TOR_KEL_DATADIR can name
  register=NAME  only this register
  output=temp    the report goes into a new temporary file, which is named instead

Radix letters: b binary, o octal, d signed decimal, u unsigned decimal, x hexadecimal,
s characters. The scaled value is raw value * scale + offset, with as many decimals as the
scale or the offset is written with.

Each fault of the input is one line on standard error; all else is still reported. The exit
status is 0 when there was no fault, and 1 otherwise.
)";

constexpr std::uint64_t MOST_BITS = std::uint64_t{1} << 20; // of a register
constexpr unsigned FAILURE = 0x80000001;                    // of a status; 0 is success

using BadInput = std::runtime_error;

struct Register {
    std::string name;
    std::uint64_t width = 0; // 0: its line was bad
    Kel_ByteBuffer bits;
};

struct Field {
    const Register* in;
    std::string name;
    std::uint64_t lowest;
    std::uint64_t width;
    char radix;
    double scale; // 0: there is no scaled value
    double offset;
    std::uint32_t decimals;
    std::string unit;
    std::string description;
};

using Row = std::array<std::string, 7>; // of the printed table

std::vector<std::string> split(const std::string& line, const char* delimiters, bool quotes) {
    // With quotes kept, the comma behind a closing quote belongs to the quoted column.
    Kel_StrTok tokens(line.c_str(), delimiters, quotes, false, quotes);
    std::vector<std::string> texts;
    while (const char* const token = tokens.getNext())
        texts.push_back(Kel_Util::trimWhitespace(token));
    return texts;
}

template <class Number>
Number numberOf(const std::string& text, const char* what) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end || !std::isfinite(static_cast<double>(number)))
        throw BadInput(std::string(what) + " '" + text + "' is not a number");
    return number;
}

std::uint32_t decimalsOf(const std::string& number) {
    const auto point = number.find('.');
    return point == std::string::npos ? 0 : static_cast<std::uint32_t>(number.size() - point - 1);
}

// The value of a register; its bit 0 is the lowest bit of the last digit.
Kel_ByteBuffer bitsOf(std::string digits, std::uint64_t width) {
    const auto bad = digits.find_first_not_of("0123456789ABCDEFabcdef");
    if (bad != std::string::npos)
        throw BadInput("'" + digits.substr(bad, 1) + "' is not a hexadecimal digit");
    digits.erase(0, digits.find_first_not_of('0'));
    const std::uint64_t whole = (width + 7) / 8 * 2; // the digits of whole bytes
    digits.insert(0, whole - std::min<std::uint64_t>(whole, digits.size()), '0');
    Kel_ByteBuffer text(reinterpret_cast<const unsigned char*>(digits.data()), digits.size(), 0, 0);
    Kel_ByteBuffer bits;
    text.hex2Bin(0, digits.size() - 1, bits);
    if (digits.size() > whole || bits.getBits(width, whole * 4 - width) != 0)
        throw BadInput("the value does not fit into " + std::to_string(width) + " bits");
    return bits;
}

// The field that a line of the table describes, checked against its register.
Field fieldOf(const std::vector<std::string>& columns, const Register* in) {
    if (in == nullptr)
        throw BadInput("register '" + columns[0] + "' is not in the capture");
    if (columns[4].size() != 1 || std::strchr("BODIUXSbodiuxs", columns[4][0]) == nullptr)
        throw BadInput("'" + columns[4] + "' is not a radix letter");
    const auto lowest = numberOf<std::uint64_t>(columns[2], "the lowest bit");
    const auto width = numberOf<std::uint64_t>(columns[3], "the width");
    if (in->width != 0 && (width == 0 || lowest >= in->width || width > in->width - lowest))
        throw BadInput("field '" + columns[1] + "' does not lie within the " +
                       std::to_string(in->width) + " bits of its register");
    const double scale = columns[5].empty() ? 0 : numberOf<double>(columns[5], "the scale");
    const double offset = columns[6].empty() ? 0 : numberOf<double>(columns[6], "the offset");
    if (scale == 0 && !(columns[6].empty() && columns[7].empty()))
        throw BadInput("an offset or a unit needs a scale");
    const auto decimals = std::max(decimalsOf(columns[5]), decimalsOf(columns[6]));
    return {in,    columns[1], lowest,   width,      columns[4][0],
            scale, offset,     decimals, columns[7], columns[8]};
}

// The raw value in its radix. The digits of a wide one take several lines, right under each other;
// a line that begins with '_' goes on where the one above it ended.
std::vector<std::string> rawLines(const Kel_Number& number, char radix) {
    const int letter = std::tolower(static_cast<unsigned char>(radix));
    const bool inFours = letter == 'x' || letter == 'b';
    const std::size_t group = inFours ? 4 : 20;
    const std::size_t most = inFours ? 20 : 21; // groups and what separates them
    std::string text = number.toString(radix);
    for (char& character : text)
        if (std::isprint(static_cast<unsigned char>(character)) == 0)
            character = '.'; // radix s
    const std::size_t sign = text[0] == '-' ? 1 : 0;
    std::string grouped;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (at > sign && (text.size() - at) % group == 0)
            grouped += '_';
        grouped += text[at];
    }
    const bool hasPrefix = inFours || letter == 'o';
    std::vector<std::string> lines{hasPrefix ? std::string{'0', static_cast<char>(letter)} : ""};
    std::size_t end = (grouped.size() - 1) % most + 1; // of the first line
    lines[0] += grouped.substr(0, end);
    for (; end < grouped.size(); end += most)
        lines.push_back(grouped.substr(end, most));
    return lines;
}

void addRows(std::vector<Row>& rows, const Field& field) {
    // The bits go into a number of just the field's width, however wide that is.
    Kel_ByteBuffer bits = field.in->bits;
    bits.shiftBitsDown(static_cast<std::int32_t>(field.lowest));
    const std::unique_ptr<Kel_ByteBuffer> digits(bits.bin2HexString(0, field.width));
    Kel_Number number(field.width);
    number.set('x', digits->ptr());

    Row row = {"", field.name, "", "", "", field.unit, field.description};
    row[2] = "[" + std::to_string(field.lowest + field.width - 1) + ":" +
             std::to_string(field.lowest) + "]";
    if (field.scale != 0)
        row[4] = number.toFloatString(field.scale, field.offset, field.decimals);
    for (const std::string& line : rawLines(number, field.radix)) {
        row[3] = line;
        rows.push_back(std::move(row));
        row = {};
    }
}

void printTable(const std::vector<Row>& rows, std::ostream& out) {
    const auto widthOf = [](const std::string& text) { // in characters of UTF-8, as in µs
        return static_cast<std::size_t>(
            std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
    };
    std::array<std::size_t, std::tuple_size_v<Row>> widths{};
    for (const Row& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], widthOf(row[i]));
    for (const Row& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string fill(widths[i] - widthOf(row[i]), ' ');
            line += (i >= 2 && i <= 4 ? fill + row[i] : row[i] + fill) + "  ";
        }
        out << line.erase(line.find_last_not_of(' ') + 1) << '\n';
    }
}

class FieldReport {
public:
    void tellFault(const std::string& where, const std::string& what) {
        status = FAILURE;
        std::cerr << where << ": " << what << '\n';
        Logger::logger.printLog(1, "%s: %s\n", where.c_str(), what.c_str());
    }

    // Hands over each line that holds something; what is thrown for one is told with its place.
    bool readLines(const std::string& path, void (FieldReport::*take)(const std::string&)) {
        MethodLogger trace;
        trace.setMethodName("readLines " + path);
        std::ifstream file(path);
        std::string line;
        for (unsigned number = 1; std::getline(file, line); ++number) {
            try {
                if (line.find('\0') != std::string::npos)
                    throw BadInput("the line holds a NUL character");
                line = Kel_Util::trimWhitespace(Kel_Util::stripEndingCR(line));
                if (!line.empty() && line[0] != '#')
                    (this->*take)(line);
            } catch (const BadInput& fault) {
                tellFault(path + ":" + std::to_string(number), fault.what());
            }
        }
        if (!file.eof())
            tellFault(path, "the file cannot be read");
        return trace.setReturn(file.eof());
    }

    void takeRegister(const std::string& line) {
        const auto words = split(Kel_Util::trimWhitespace(line.substr(0, line.find('#'))),
                                 Kel_StrTok::WHITE_SPACE, false);
        if (findRegister(words[0]) != nullptr)
            throw BadInput("register '" + words[0] + "' stands in the capture twice");
        Register& taken = registers.emplace_back();
        taken.name = words[0];
        if (words.size() < 3)
            throw BadInput("expected a name, a width in bits and a value");
        const auto width = numberOf<std::uint64_t>(words[1], "the width");
        if (width == 0 || width > MOST_BITS)
            throw BadInput("a register has 1 to " + std::to_string(MOST_BITS) + " bits");
        taken.bits = bitsOf(std::accumulate(words.begin() + 2, words.end(), std::string()), width);
        taken.width = width;
        Logger::logger.printLog(3, "%s, %u bits", words[0].c_str(), static_cast<unsigned>(width));
        Logger::logger.dumpBuffer(3, nullptr, taken.bits.uPtr(), static_cast<unsigned>(width));
    }

    void takeField(const std::string& line) {
        auto columns = split(line, Kel_StrTok::CSV_DELIM, true);
        if (columns.size() != 9)
            throw BadInput("expected 9 columns, found " + std::to_string(columns.size()));
        if (columns[8][0] == '"' && (columns[8].size() < 2 || line.back() != '"'))
            throw BadInput("the description does not end with its quote");
        Kel_Util::unQuote(columns);
        const Field field = fieldOf(columns, findRegister(columns[0]));
        if (field.in->width != 0) // else the register's own line was told
            fields.push_back(field);
    }

    void print(const std::string& onlyRegister, std::ostream& out) const {
        MethodLogger trace;
        trace.setMethodName("print");
        if (!onlyRegister.empty() && findRegister(onlyRegister) == nullptr)
            throw BadInput("register '" + onlyRegister + "' is not in the capture");
        std::vector<Row> rows = {
            {"REGISTER", "FIELD", "BITS", "RAW", "VALUE", "UNIT", "DESCRIPTION"}};
        for (const Register& each : registers) {
            if (each.width == 0 || (!onlyRegister.empty() && &each != findRegister(onlyRegister)))
                continue;
            rows.emplace_back(); // an empty line
            const std::size_t first = rows.size();
            for (const Field& field : fields)
                if (field.in == &each)
                    addRows(rows, field);
            if (rows.size() == first) // no field of it is known
                addRows(rows, {&each, "(whole)", 0, each.width, 'X', 0, 0, 0, "", ""});
            rows[first][0] = each.name;
        }
        printTable(rows, out);
    }

    unsigned status = 0;

private:
    const Register* findRegister(const std::string& name) const {
        for (const Register& each : registers)
            if (Kel_Util::stricmp(each.name, name) == 0)
                return &each;
        return nullptr;
    }

    std::vector<Register> registers;
    std::vector<Field> fields;
};

// A word that is no setting, such as a misspelt name, would otherwise be passed over.
void checkSettings(const std::vector<std::string>& words) {
    for (const std::string& word : words) {
        const auto name = word.substr(0, word.find('='));
        const auto isIt = [&](const char* known) { return Kel_Util::stricmp(name, known) == 0; };
        constexpr std::array SETTINGS = {"capture", "fields", "register", "output"};
        if (name == word || std::none_of(SETTINGS.begin(), SETTINGS.end(), isIt))
            throw BadInput("'" + word + "' is not a setting; --help lists them");
    }
}

// Prints on standard output, or into a new temporary file that is named there.
void printTo(const std::string& output, const FieldReport& report,
             const std::string& onlyRegister) {
    if (output.empty())
        return report.print(onlyRegister, std::cout);
    if (Kel_Util::stricmp(output, "temp") != 0)
        throw BadInput("'" + output + "' is no output; output=temp is the only one");
    const auto path = Kel_Util::createDotLumatraceTempFile("field_report");
    std::ofstream file(path);
    report.print(onlyRegister, file);
    if (!file.flush())
        throw BadInput("the report cannot be written to " + path);
    std::cout << "report written to " << path << '\n';
}

unsigned run(std::vector<std::string> words) {
    MethodLogger trace;
    trace.setMethodName("field_report");
    FieldReport report;
    try {
        checkSettings(words);
        const auto capture = Kel_Util::findKey(words, "capture");
        if (capture.empty())
            throw BadInput("capture=FILE is needed; --help tells more");
        auto table = Kel_Util::findKey(words, "fields");
        if (table.empty())
            table = Kel_Util::getDataDirPath() + "fields.csv";
        if (report.readLines(capture, &FieldReport::takeRegister)) {
            report.readLines(table, &FieldReport::takeField);
            printTo(Kel_Util::findKey(words, "output"), report,
                    Kel_Util::findKey(words, "register"));
        }
        if (!std::cout.flush())
            throw BadInput("the report cannot be written");
    } catch (const BadInput& fault) {
        report.tellFault("field_report", fault.what());
    } catch (const Kel_Exception& fault) { // its message ends in a newline
        report.tellFault("field_report", Kel_Util::trimWhitespace(fault.what()));
    }
    return trace.setReturnStatus(report.status);
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.empty() || words[0] == "--help") {
        std::cout << USAGE;
        return words.empty() ? 1 : 0;
    }
    Logger::logger.startLogging();
    const unsigned status = run(words);
    Logger::logger.endLogging();
    return status == 0 ? 0 : 1;
}
