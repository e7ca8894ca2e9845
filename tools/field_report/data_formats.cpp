// SPDX-License-Identifier: MIT
//
// Defines the formats for programs: CSV, JSON and JSON lines. Their text is always valid UTF-8,
// even if the input is not.
#include "field_text.h"
#include "formats.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace field_report {

namespace {

// Lead bytes from `first` to `last` begin a character of `length` bytes whose second byte is
// `least` to `most`. These ranges exclude overlong encodings, surrogates, and code points above
// U+10FFFF.
struct Lead {
    unsigned first, last;
    std::size_t length;
    unsigned least, most;
};
constexpr Lead LEADS[] = {{0xC2, 0xDF, 2, 0x80, 0xBF}, {0xE0, 0xE0, 3, 0xA0, 0xBF},
                          {0xE1, 0xEC, 3, 0x80, 0xBF}, {0xED, 0xED, 3, 0x80, 0x9F},
                          {0xEE, 0xEF, 3, 0x80, 0xBF}, {0xF0, 0xF0, 4, 0x90, 0xBF},
                          {0xF1, 0xF3, 4, 0x80, 0xBF}, {0xF4, 0xF4, 4, 0x80, 0x8F}};

// Returns the length of the character at the start of `text`, or 0 if it is not well-formed UTF-8.
std::size_t characterLength(std::string_view text) {
    const auto byte = [&](std::size_t at) {
        return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
    };
    if (byte(0) < 0x80)
        return 1;
    const auto* const lead =
        std::find_if(std::begin(LEADS), std::end(LEADS), [&](const Lead& each) {
            return byte(0) >= each.first && byte(0) <= each.last;
        });
    if (lead == std::end(LEADS) || byte(1) < lead->least || byte(1) > lead->most)
        return 0;
    for (std::size_t at = 2; at < lead->length; ++at)
        if ((byte(at) & 0xC0) != 0x80)
            return 0;
    return lead->length;
}

// Replaces each byte that belongs to no well-formed character with U+FFFD.
std::string utf8(std::string_view text) {
    if (std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; }))
        return std::string(text);
    std::string result;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        result += length == 0 ? "\xEF\xBF\xBD" : text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

// Returns false if the value is missing, or is beyond the range of double and so prints as "inf" or
// "nan".
bool isNumber(const std::string& value) {
    return !value.empty() && value.find_first_of("in") == std::string::npos;
}

class CsvFormat : public Format {
public:
    explicit CsvFormat(bool isNamed) : named(isNamed) {}

    void addScan(const ScanReport& report, std::string& text) override {
        addHeader(text);
        for (const Item& item : report.items)
            add(report, item, text);
    }

    void end(std::string& text) override { addHeader(text); }

private:
    void addHeader(std::string& text) {
        if (std::exchange(headerIsDone, true))
            return;
        text += "register,scan,field,lowest,width,raw,value,unit,description";
        text += named ? ",name\r\n" : "\r\n";
    }

    void add(const ScanReport& report, const Item& item, std::string& text) const {
        const Field& field = *item.field;
        addColumn(*report.registerName, text);
        text.append(std::to_string(report.scan)) += ',';
        addColumn(field.name, text);
        text.append(std::to_string(field.lowest)) += ',';
        text.append(std::to_string(field.width)) += ',';
        addColumn(prefixOf(field) + printable(item.raw), text);
        text.append(isNumber(item.value) ? item.value : "") += ',';
        addColumn(field.unit, text);
        addColumn(field.description, text);
        if (named)
            addColumn(item.name, text);
        text.replace(text.size() - 1, 1, "\r\n");
    }

    static void addColumn(const std::string& column, std::string& text) {
        if (column.find_first_of(",\"\r\n") == std::string::npos) {
            text.append(utf8(column)) += ',';
            return;
        }
        text += '"';
        for (const char c : utf8(column))
            text.append(c == '"' ? 2 : 1, c);
        text += "\",";
    }

    bool named;
    bool headerIsDone = false;
};

// Converts each byte to the character with that code, U+0000 to U+00FF, in UTF-8.
std::string charactersOf(const std::string& raw) {
    std::string text;
    for (const char c : raw) {
        const auto code = static_cast<unsigned char>(c);
        if (code >= 0x80)
            text += static_cast<char>(0xC0 | code >> 6);
        text += static_cast<char>(code < 0x80 ? code : 0x80 | (code & 0x3F));
    }
    return text;
}

void addString(const std::string& string, std::string& text) {
    constexpr const char* DIGITS = "0123456789abcdef";
    text += '"';
    for (const char c : string) {
        const auto code = static_cast<unsigned char>(c);
        if (code < 0x20) {
            text.append("\\u00") += {DIGITS[code >> 4], DIGITS[code & 15]};
            continue;
        }
        if (c == '"' || c == '\\')
            text += '\\';
        text += c;
    }
    text += '"';
}

// Appends the keys that identify the scan.
void addScanKeys(const ScanReport& report, std::string& text) {
    text += "{\"register\":";
    addString(utf8(*report.registerName), text);
    text.append(",\"scan\":").append(std::to_string(report.scan)) += ',';
}

// Appends the keys of a field and the end of the object.
void addFieldKeys(const Item& item, bool named, std::string& text) {
    const Field& field = *item.field;
    text += "\"field\":";
    addString(utf8(field.name), text);
    text.append(",\"lowest\":").append(std::to_string(field.lowest));
    text.append(",\"width\":").append(std::to_string(field.width)).append(",\"raw\":");
    addString(prefixOf(field) + charactersOf(item.raw), text);
    text.append(",\"value\":").append(isNumber(item.value) ? item.value : "null");
    text += ",\"unit\":";
    addString(utf8(field.unit), text);
    text += ",\"description\":";
    addString(utf8(field.description), text);
    if (named) {
        text += ",\"name\":";
        if (item.name.empty())
            text += "null";
        else
            addString(utf8(item.name), text);
    }
    text += '}';
}

class JsonFormat : public Format {
public:
    explicit JsonFormat(bool isNamed) : named(isNamed) {}

    void addScan(const ScanReport& report, std::string& text) override {
        for (const Item& item : report.items) {
            text += std::exchange(isEmpty, false) ? "[\n" : ",\n";
            addScanKeys(report, text);
            addFieldKeys(item, named, text);
        }
    }

    void end(std::string& text) override { text += isEmpty ? "[]\n" : "\n]\n"; }

private:
    bool named;
    bool isEmpty = true;
};

class JsonLinesFormat : public Format {
public:
    explicit JsonLinesFormat(bool isNamed) : named(isNamed) {}

    void addScan(const ScanReport& report, std::string& text) override {
        addScanKeys(report, text);
        text.append("\"width\":").append(std::to_string(report.whole->width));
        text += ",\"description\":";
        addString(utf8(report.whole->description), text);
        text += ",\"fields\":";
        for (const Item& item : report.items) {
            text += &item == report.items.data() ? "[{" : ",{";
            addFieldKeys(item, named, text);
        }
        text += "]}\n";
    }

    void end(std::string& /*text*/) override {}

private:
    bool named;
};

} // namespace

std::unique_ptr<Format> makeCsvFormat(bool named) {
    return std::make_unique<CsvFormat>(named);
}

std::unique_ptr<Format> makeJsonFormat(bool named) {
    return std::make_unique<JsonFormat>(named);
}

std::unique_ptr<Format> makeJsonLinesFormat(bool named) {
    return std::make_unique<JsonLinesFormat>(named);
}

} // namespace field_report
