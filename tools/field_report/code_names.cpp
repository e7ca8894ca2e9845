// SPDX-License-Identifier: MIT
#include "code_names.h"

#include "decimal.h"
#include "messages.h"

#include "KelRT/Kel_Util.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <utility>

namespace field_report {

using KelRT::Kel_Number;
using KelRT::Kel_Util;

namespace {

// "-007" => "-7"    "000f" => "f"    "-00" => "0"
std::string withoutLeadingZeros(const std::string& digits) {
    const std::size_t sign = digits[0] == '-' ? 1 : 0;
    const std::size_t first = std::min(digits.find_first_not_of('0', sign), digits.size() - 1);
    const std::string rest = digits.substr(first);
    return sign != 0 && rest != "0" ? "-" + rest : rest;
}

std::string keyOf(const Kel_Number& number, bool isSigned) {
    return withoutLeadingZeros(number.toString(isSigned ? 'd' : 'x'));
}

// Holds the digits of a code, in lower case and without "0x", and their radix letter.
struct Code {
    std::string digits;
    char radix;
};

Code codeOf(const std::string& text, bool isSigned) {
    const bool isHex = hasHexPrefix(text);
    Code code = {text.substr(isHex ? 2 : 0), isHex ? 'x' : isSigned ? 'd' : 'u'};
    for (char& digit : code.digits)
        digit = static_cast<char>(std::tolower(static_cast<unsigned char>(digit)));
    const std::size_t sign = code.radix == 'd' && code.digits[0] == '-' ? 1 : 0;
    const char* const allowed = isHex ? "0123456789abcdef" : "0123456789";
    if (code.digits.size() == sign ||
        code.digits.find_first_not_of(allowed, sign) != std::string::npos)
        throw Fault("the code '" + text + "' is not a valid number");
    return code;
}

// Converts a code to its key. The number is only as wide as the digits need, so that short codes of
// wide fields cost little.
std::string keyOf(const std::string& text, std::uint64_t width, bool isSigned) {
    const Code code = codeOf(text, isSigned);
    Kel_Number number(std::min<std::uint64_t>(width, (code.digits.size() * 4) + 1));
    number.set(code.radix, code.digits);
    if (withoutLeadingZeros(number.toString(code.radix)) != withoutLeadingZeros(code.digits))
        throw Fault("the code '" + text + "' does not fit into the field");
    return keyOf(number, isSigned);
}

// Splits an entry "CODE=NAME" into its code and its name.
std::pair<std::string, std::string> entryOf(const std::string& entry) {
    const std::size_t sign = std::min(entry.find('='), entry.size());
    const std::string code = Kel_Util::trimWhitespace(entry.substr(0, sign));
    const std::string name =
        Kel_Util::trimWhitespace(entry.substr(std::min(sign + 1, entry.size())));
    if (code.empty() || name.empty())
        throw Fault("'" + entry + "' is not of the form CODE=NAME");
    return {code, name};
}

} // namespace

CodeNames codeNamesOf(const std::string& column, std::uint64_t width, bool isSigned) {
    CodeNames names;
    for (std::size_t at = 0; !column.empty() && at <= column.size();) {
        const std::size_t end = std::min(column.find(';', at), column.size());
        const auto [code, name] = entryOf(column.substr(at, end - at));
        if (!names.emplace(keyOf(code, width, isSigned), name).second)
            throw Fault("the code '" + code + "' is named twice");
        at = end + 1;
    }
    return names;
}

std::string nameOf(const Kel_Number& number, bool isSigned, const CodeNames& names) {
    const auto found = names.find(keyOf(number, isSigned));
    return found == names.end() ? "" : found->second;
}

} // namespace field_report
