// SPDX-License-Identifier: MIT
#include "field_table.h"

#include "capture.h"
#include "decimal.h"
#include "lines.h"

#include "KelRT/Kel_StrTok.h"
#include "KelRT/MethodLogger.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace field_report {

using KelRT::Kel_StrTok;
using KelRT::Kel_Util;

namespace {

using Columns = std::vector<std::string>;

enum Column : std::uint8_t {
    REGISTER,
    FIELD,
    LOWEST,
    WIDTH,
    RADIX,
    SCALE,
    OFFSET,
    UNIT,
    DESCRIPTION,
    NAMES,
    COLUMNS
};

bool hasOddQuotes(const std::string& text) {
    return std::count(text.begin(), text.end(), '"') % 2 != 0;
}

// "a ""b""" => a "b"
void unquote(std::string& column) {
    if (column[0] != '"')
        return;
    Kel_Util::unQuote(column);
    std::string text;
    for (std::size_t at = 0; at < column.size(); ++at) {
        text += column[at];
        if (column[at] != '"')
            continue;
        if (column[++at] != '"') // std::string has a NUL at its end
            throw Fault("a quote within a quoted column has to be doubled");
    }
    column = std::move(text);
}

void checkBitRange(const Field& field) {
    const std::string what = field.name.empty() ? "the register" : "field '" + field.name + "'";
    if (field.width == 0)
        throw Fault(what + " has a width of 0");
    if (field.lowest >= MAX_REGISTER_BITS || field.width > MAX_REGISTER_BITS - field.lowest)
        throw Fault(what + " does not lie within the " + std::to_string(MAX_REGISTER_BITS) +
                    " bits that a register may have");
}

void readScale(const Columns& columns, Field& field) {
    const bool isScaled = !(columns[OFFSET].empty() && columns[UNIT].empty());
    const Decimal scale =
        columns[SCALE].empty() ? Decimal{isScaled ? 1.0 : 0.0, 0} : scaleOf(columns[SCALE]);
    const Decimal offset =
        columns[OFFSET].empty() ? Decimal() : decimalOf(columns[OFFSET], "the offset");
    if (scale.value == 0 && isScaled)
        throw Fault("a field with a scale of 0 must have neither an offset nor a unit");
    field.scale = scale.value;
    field.offset = offset.value;
    field.decimals = std::max(scale.decimals, offset.decimals);
    field.unit = columns[UNIT];
}

Field fieldOf(const Columns& columns) {
    const std::string& radix = columns[RADIX];
    if (radix.empty())
        throw Fault("the radix letter is missing");
    if (radix.size() != 1 || std::strchr("BODIUXSbodiuxs", radix[0]) == nullptr)
        throw Fault("'" + radix + "' is not a radix letter");
    Field field;
    field.name = columns[FIELD];
    field.lowest = integerOf(columns[LOWEST], "the lowest bit");
    field.width = integerOf(columns[WIDTH], "the width");
    field.radix = radix[0];
    field.description = columns[DESCRIPTION];
    checkBitRange(field);
    readScale(columns, field);
    field.names = codeNamesOf(columns[NAMES], field.width, isSigned(field.radix));
    return field;
}

// Reads the row of a register itself as one field that covers the register. Its lowest bit and its
// radix letter may be empty.
Field registerOf(Columns columns) {
    const auto setDefault = [&](Column column, const char* value) {
        if (columns[column].empty())
            columns[column] = value;
    };
    setDefault(LOWEST, "0");
    setDefault(RADIX, "X");
    Field whole = fieldOf(columns);
    if (whole.lowest != 0)
        throw Fault("the lowest bit of a register must be 0");
    whole.name = wholeOf(whole.width).name;
    return whole;
}

void addRegister(Field whole, const std::string& name, RegisterFields& entry) {
    if (entry.whole.width != 0)
        throw Fault("register '" + name + "' has a row already, at " + entry.whole.place);
    entry.whole = std::move(whole);
}

void addField(Field field, const std::string& name, RegisterFields& entry) {
    if (!entry.fieldNames.insert(field.name).second)
        throw Fault("register '" + name + "' has a field '" + field.name + "' already");
    entry.fields.push_back(std::move(field));
}

void takeLine(const std::string& line, const std::string& place, FieldTable& table) {
    Columns columns = columnsOf(line);
    if (columns.size() > COLUMNS)
        throw Fault("expected at most " + std::to_string(COLUMNS) + " columns, found " +
                    std::to_string(columns.size()));
    columns.resize(COLUMNS); // empty columns at the end may be left out
    const std::string& name = columns[REGISTER];
    if (name.empty())
        throw Fault("the register has no name");
    const bool isRegister = columns[FIELD].empty();
    Field field = isRegister ? registerOf(columns) : fieldOf(columns);
    field.place = place;
    (isRegister ? addRegister : addField)(std::move(field), name, table[name]);
}

void takeLines(Lines& lines, FieldTable& table, Messages& messages) {
    std::string line;
    for (bool more = true; more;) {
        try {
            more = lines.next(line);
            if (more)
                takeLine(line, lines.place(), table);
        } catch (const Fault& fault) {
            messages.reportFault(lines.place(), fault.what());
        }
    }
}

} // namespace

bool isSigned(char radix) {
    return std::strchr("DIdi", radix) != nullptr;
}

Field wholeOf(std::uint64_t width) {
    Field field;
    field.name = "(whole)";
    field.width = width;
    return field;
}

void removeMisfits(std::vector<Field>& fields, std::uint64_t width, Messages& messages) {
    const auto misfits = [&](const Field& field) {
        if (field.lowest + field.width <= width)
            return false;
        messages.reportFault(field.place, "field '" + field.name + "' does not lie within the " +
                                              std::to_string(width) + " bits of its register");
        return true;
    };
    fields.erase(std::remove_if(fields.begin(), fields.end(), misfits), fields.end());
}

std::vector<Field> gapsBetween(std::vector<Field> fields, std::uint64_t width) {
    const auto isHigher = [](const Field& a, const Field& b) {
        return a.lowest + a.width > b.lowest + b.width;
    };
    std::sort(fields.begin(), fields.end(), isHigher);
    fields.emplace_back(); // this empty field at bit 0 ends the lowest gap
    std::vector<Field> gaps;
    std::uint64_t left = width; // all bits from here on belong to a field or a gap
    for (const Field& field : fields) {
        const std::uint64_t end = field.lowest + field.width;
        if (end < left) {
            gaps.emplace_back();
            gaps.back().lowest = end;
            gaps.back().width = left - end;
        }
        left = std::min(left, field.lowest);
    }
    return gaps;
}

std::uint64_t widthOf(const std::string& registerName, const FieldTable& table) {
    const auto known = table.find(registerName);
    return known == table.end() ? 0 : known->second.whole.width;
}

bool hasNames(const FieldTable& table) {
    const auto isNamed = [](const Field& field) { return !field.names.empty(); };
    return std::any_of(table.begin(), table.end(), [&](const auto& entry) {
        const RegisterFields& known = entry.second;
        return isNamed(known.whole) ||
               std::any_of(known.fields.begin(), known.fields.end(), isNamed);
    });
}

std::vector<std::string> columnsOf(const std::string& line) {
    // The tokenizer's own handling of quotes would end a column at a doubled quote. So it splits at
    // every comma, and the pieces of a quoted column are joined here.
    Kel_StrTok tokens(line.c_str(), Kel_StrTok::CSV_DELIM, false, false, false);
    std::vector<std::string> columns;
    bool open = false; // true within the quotes of the last column
    while (const char* const token = tokens.getNext()) {
        if (open)
            columns.back().append(",").append(token);
        else
            columns.emplace_back(token + std::strspn(token, Kel_StrTok::WHITE_SPACE));
        if (columns.back()[0] == '"' && hasOddQuotes(token))
            open = !open;
    }
    if (open)
        throw Fault("a quoted column does not end on its line");
    for (std::string& column : columns)
        column = Kel_Util::trimWhitespace(column);
    std::for_each(columns.begin(), columns.end(), unquote);
    return columns;
}

FieldTable readTable(const std::string& path, Messages& messages) {
    KelRT::MethodLogger trace;
    trace.setMethodName("readTable " + path);
    FieldTable table;
    if (const auto lines = openLines(path, messages))
        takeLines(*lines, table, messages);
    for (auto& [name, entry] : table)
        if (entry.whole.width != 0)
            removeMisfits(entry.fields, entry.whole.width, messages);
    return table;
}

} // namespace field_report
