// SPDX-License-Identifier: MIT
#include "field_text.h"
#include "formats.h"

#include "KelRT/NumberValue.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

namespace field_report {

namespace {

enum Column : std::uint8_t {
    REGISTER,
    FIELD,
    BITS,
    RAW,
    VALUE,
    UNIT,
    COLUMNS
}; // the description, which is not padded, follows them

// Counts the characters of UTF-8 text: 2 in "µs".
std::size_t lengthOf(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string labelOf(const ScanReport& report) {
    return report.scan == 1 ? *report.registerName
                            : *report.registerName + " #" + std::to_string(report.scan);
}

std::string bitRange(const Field& field) {
    return "[" + std::to_string(field.lowest + field.width - 1) + ":" +
           std::to_string(field.lowest) + "]";
}

// A raw value is printed in groups of `group` digits with '_' between them. A line has at most
// `most` characters, not counting the prefix. This is a multiple of group + 1, so every line after
// the first begins with '_'.
struct Layout {
    std::size_t group;
    std::size_t most;

    // Returns how many of `length` characters are in the first line; all other lines are full.
    std::size_t firstLine(std::size_t length) const { return ((length - 1) % most) + 1; }
};

Layout layoutOf(const Field& field) {
    const std::string_view prefix = prefixOf(field);
    return prefix == "0x" || prefix == "0b" ? Layout{4, 20} : Layout{20, 21};
}

std::string grouped(const std::string& raw, std::size_t group) {
    const std::size_t sign = raw[0] == '-' ? 1 : 0;
    std::string text;
    for (std::size_t at = 0; at < raw.size(); ++at) {
        if (at > sign && (raw.size() - at) % group == 0)
            text += '_';
        text += raw[at];
    }
    return text;
}

// Returns the maximum number of characters of a raw value, without '_' and prefix.
std::size_t maxRawLength(const Field& field) {
    const auto width = static_cast<std::size_t>(field.width);
    const auto decimals = [](std::size_t bits) {
        return static_cast<std::size_t>(static_cast<double>(bits) * std::log10(2.0)) + 1;
    };
    switch (field.radix | 0x20) {
    case 'b':
        return width;
    case 'o':
        return (width + 2) / 3;
    case 'x':
        return (width + 3) / 4;
    case 's':
        return (width + 7) / 8;
    default:
        return isSigned(field.radix) ? 1 + decimals(width - 1) : decimals(width);
    }
}

std::size_t maxRawWidth(const Field& field) {
    const Layout layout = layoutOf(field);
    const std::size_t digits = maxRawLength(field);
    const std::size_t length = digits + ((digits - 1) / layout.group);
    const std::size_t first = std::string_view(prefixOf(field)).size() + layout.firstLine(length);
    return length <= layout.most ? first : std::max(first, layout.most);
}

// Returns the maximum width of a scaled value. The lowest or the highest raw value has it, since
// the scaled value only rises or only falls between them. These two are 00...0 and 11...1 in an
// unsigned field, 10...0 and 01...1 in a signed field. All four are tried. A value beyond the range
// of double counts as "inf"; then the values between may be wider.
std::size_t maxScaledWidth(const Field& field) {
    if (field.scale == 0)
        return 0;
    const auto top = static_cast<std::size_t>(field.width - 1);
    KelRT::Kel_Number number(field.width);
    std::size_t width = 0;
    for (const unsigned char fill : std::array<unsigned char, 2>{0x00, 0xFF})
        for (const unsigned flip : {0U, 1U}) {
            std::vector<unsigned char> bytes(top / 8 + 1, fill);
            bytes[top / 8] ^= static_cast<unsigned char>(flip << top % 8);
            KelRT::bits2Number(bytes.data(), 0, number);
            width = std::max(width, valueText(field, number).size());
        }
    return width;
}

std::size_t maxValueWidth(const Field& field) {
    std::size_t width = maxScaledWidth(field);
    for (const auto& [code, name] : field.names)
        width = std::max(width, lengthOf(name));
    return width;
}

class TextFormat : public Format {
public:
    TextFormat(const FieldTable& table, bool bold) : boldHeader(bold) {
        constexpr std::array<std::string_view, COLUMNS> HEADER = {"REGISTER", "FIELD", "BITS",
                                                                  "RAW",      "VALUE", "UNIT"};
        std::transform(HEADER.begin(), HEADER.end(), widths.begin(), lengthOf);
        for (const auto& [name, entry] : table) {
            makeRoom(REGISTER, lengthOf(name + " #2"));
            if (entry.fields.empty())
                makeRoom(entry.whole);
            if (!entry.whole.description.empty())
                makeRoom(BITS, bitRange(entry.whole).size());
            for (const Field& field : entry.fields)
                makeRoom(field);
        }
    }

    void addScan(const ScanReport& report, std::string& text) override {
        std::string label = labelOf(report);
        makeRoom(REGISTER, lengthOf(label));
        for (const Item& item : report.items)
            if (item.field->place.empty()) // the field is not from the table
                makeRoom(*item.field);
        addHeader(text);
        text += '\n';
        const Field& whole = *report.whole;
        if (report.items[0].field != &whole && !whole.description.empty()) {
            addRow({label, "", bitRange(whole), "", "", ""}, whole.description, text);
            label.clear();
        }
        for (const Item& item : report.items) {
            addField(item, label, text);
            label.clear();
        }
    }

    void end(std::string& text) override { addHeader(text); }

private:
    void makeRoom(Column column, std::size_t length) {
        widths[column] = std::max(widths[column], length);
    }

    void makeRoom(const Field& field) {
        makeRoom(FIELD, lengthOf(field.name));
        makeRoom(BITS, bitRange(field).size());
        makeRoom(RAW, maxRawWidth(field));
        makeRoom(VALUE, maxValueWidth(field));
        makeRoom(UNIT, lengthOf(field.unit));
    }

    void addHeader(std::string& text) {
        if (std::exchange(headerIsDone, true))
            return;
        text += boldHeader ? "\x1B[1m" : "";
        addRow({"REGISTER", "FIELD", "BITS", "RAW", "VALUE", "UNIT"}, "DESCRIPTION", text);
        text.insert(text.size() - 1, boldHeader ? "\x1B[0m" : "");
    }

    void addField(const Item& item, const std::string& label, std::string& text) const {
        const Field& field = *item.field;
        const Layout layout = layoutOf(field);
        const std::string raw = grouped(printable(item.raw), layout.group);
        std::size_t shown = layout.firstLine(raw.size());
        const std::string first = prefixOf(field) + raw.substr(0, shown);
        // A name is printed in place of the value and its unit.
        const std::string_view value = item.name.empty() ? item.value : item.name;
        const std::string_view unit = item.name.empty() ? std::string_view(field.unit) : "";
        addRow({label, field.name, bitRange(field), first, value, unit}, field.description, text);
        for (; shown < raw.size(); shown += layout.most)
            addRow({"", "", "", std::string_view(raw).substr(shown, layout.most), "", ""}, "",
                   text);
    }

    void addRow(const std::array<std::string_view, COLUMNS>& cells, std::string_view description,
                std::string& text) const {
        for (std::size_t i = 0; i < COLUMNS; ++i) {
            const std::size_t length = lengthOf(cells[i]);
            const std::size_t fill = widths[i] - std::min(widths[i], length);
            const bool right = i >= BITS && i <= VALUE;
            text.append(right ? fill : 0, ' ').append(cells[i]).append(right ? 2 : fill + 2, ' ');
        }
        text += description;
        text.erase(text.find_last_not_of(' ') + 1);
        text += '\n';
    }

    std::array<std::size_t, COLUMNS> widths = {};
    bool boldHeader;
    bool headerIsDone = false;
};

} // namespace

std::unique_ptr<Format> makeTextFormat(const FieldTable& table, bool boldHeader) {
    return std::make_unique<TextFormat>(table, boldHeader);
}

} // namespace field_report
