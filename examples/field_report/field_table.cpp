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

constexpr std::size_t COLUMNS = 9;

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
        if (column[++at] != '"') // at the end it is a NUL
            throw Fault("a quote within a quoted column has to be doubled");
    }
    column = std::move(text);
}

void checkBitRange(const Field& field) {
    if (field.width == 0)
        throw Fault("field '" + field.name + "' has a width of 0");
    if (field.lowest >= MAX_REGISTER_BITS || field.width > MAX_REGISTER_BITS - field.lowest)
        throw Fault("field '" + field.name + "' does not lie within the " +
                    std::to_string(MAX_REGISTER_BITS) + " bits that a register may have");
}

void readScale(const std::string& scale, const std::string& offset, Field& field) {
    field.scale = scale.empty() ? 0 : numberOf<double>(scale, "the scale");
    field.offset = offset.empty() ? 0 : numberOf<double>(offset, "the offset");
    if (field.scale == 0 && !(offset.empty() && field.unit.empty()))
        throw Fault("an offset or a unit needs a scale");
    field.decimals = std::max(decimalsOf(scale), decimalsOf(offset));
}

Field fieldOf(const std::vector<std::string>& columns) {
    if (columns.size() != COLUMNS)
        throw Fault("expected " + std::to_string(COLUMNS) + " columns, found " +
                    std::to_string(columns.size()));
    if (columns[0].empty())
        throw Fault("the register has no name");
    if (columns[4].size() != 1 || std::strchr("BODIUXSbodiuxs", columns[4][0]) == nullptr)
        throw Fault("'" + columns[4] + "' is not a radix letter");
    Field field;
    field.name = columns[1];
    field.lowest = numberOf<std::uint64_t>(columns[2], "the lowest bit");
    field.width = numberOf<std::uint64_t>(columns[3], "the width");
    field.radix = columns[4][0];
    field.unit = columns[7];
    field.description = columns[8];
    checkBitRange(field);
    readScale(columns[5], columns[6], field);
    return field;
}

void takeLine(const std::string& line, const std::string& place, FieldTable& table) {
    const auto columns = columnsOf(line);
    Field field = fieldOf(columns);
    field.place = place;
    table[columns[0]].push_back(std::move(field));
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

std::vector<std::string> columnsOf(const std::string& line) {
    // With quotes handled, the tokenizer would end a column at a doubled quote. So it cuts at every
    // comma, and the pieces of a quoted column are joined here.
    Kel_StrTok tokens(line.c_str(), Kel_StrTok::CSV_DELIM, false, false, false);
    std::vector<std::string> columns;
    bool open = false; // within the quotes of the last column
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
    return table;
}

} // namespace field_report
