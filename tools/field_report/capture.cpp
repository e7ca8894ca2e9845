// SPDX-License-Identifier: MIT
#include "capture.h"

#include "decimal.h"
#include "messages.h"

#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace field_report {

using KelRT::Kel_ByteBuffer;
using KelRT::Kel_StrTok;
using KelRT::Kel_Util;
using KelRT::Logger;

namespace {

bool isHexDigit(char character) {
    return std::isxdigit(static_cast<unsigned char>(character)) != 0;
}

Fault misfit(std::uint64_t width) {
    return Fault("the value does not fit into " + std::to_string(width) + " bits");
}

// "0xDEAD_BEEF" => "DEADBEEF"
void reduceToDigits(std::string& text) {
    if (text.size() > 1 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        text.erase(0, 2);
    for (std::size_t at = text.find('_'); at != std::string::npos; at = text.find('_', at + 1))
        if (at == 0 || at + 1 == text.size() || !isHexDigit(text[at - 1]) ||
            !isHexDigit(text[at + 1]))
            throw Fault("'_' may only stand between two digits");
    text.erase(std::remove(text.begin(), text.end(), '_'), text.end());
    const auto bad = std::find_if_not(text.begin(), text.end(), isHexDigit);
    if (bad != text.end())
        throw Fault("'" + std::string(1, *bad) + "' is not a hexadecimal digit");
    if (text.empty())
        throw Fault("the value has no digits");
}

// Removes zeros from the most significant end, or adds zeros there up to `count` digits. Other
// digits are never removed, so more than `count` may remain.
void fitDigits(std::string& digits, std::size_t count, ByteOrder order) {
    if (order == ByteOrder::BIG) {
        digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
        digits.insert(0, count - std::min(count, digits.size()), '0');
    } else {
        if (digits.size() % 2 != 0)
            throw Fault("with byteorder=little a value has two digits for each byte");
        digits.erase(digits.find_last_not_of('0') + 1);
        digits.append(count - std::min(count, digits.size()), '0');
    }
}

Kel_ByteBuffer parseValue(std::string digits, std::uint64_t width, ByteOrder order) {
    if (width == 0 || width > MAX_REGISTER_BITS)
        throw Fault("a register has 1 to " + std::to_string(MAX_REGISTER_BITS) + " bits");
    reduceToDigits(digits);
    const std::uint64_t count = (width + 7) / 8 * 2; // two digits for each byte
    fitDigits(digits, static_cast<std::size_t>(count), order);
    if (digits.size() > count)
        throw misfit(width);
    Kel_ByteBuffer text(reinterpret_cast<const unsigned char*>(digits.data()), count, 0, 0);
    Kel_ByteBuffer bits;
    text.hex2Bin(0, count - 1, bits);
    if (order == ByteOrder::LITTLE)
        bits.swapByteOrder(0, bits.getSize());
    if (bits.getBits(width, (count * 4) - width) != 0)
        throw misfit(width);
    return bits;
}

// Finds the ':' or '=' after the name, although the name may contain such characters, too. If the
// second word begins with one, that is the separator ("A:B :5A"). Otherwise it is the last one in
// the first word ("A:B:5A").
std::size_t separatorOf(const std::string& line) {
    const auto isSeparator = [](char c) { return c == ':' || c == '='; };
    const std::size_t end = std::min(line.find_first_of(Kel_StrTok::WHITE_SPACE), line.size());
    const std::size_t second = line.find_first_not_of(Kel_StrTok::WHITE_SPACE, end);
    if (second != std::string::npos && isSeparator(line[second]))
        return second;
    return line.find_last_of(":=", end);
}

std::string joined(Kel_StrTok& words) {
    std::string text;
    while (const char* const word = words.getNext())
        text += word;
    return text;
}

// Reads "NAME WIDTH VALUE" and returns the digits of the value with their prefix.
std::string readLongForm(const std::string& line, Scan& scan) {
    Kel_StrTok words(line.c_str(), Kel_StrTok::WHITE_SPACE, false, false, false);
    scan.name = words.getNext();
    const char* const width = words.getNext();
    std::string digits = joined(words);
    if (digits.empty())
        throw Fault("expected a name, a width in bits and a value");
    scan.width = integerOf(width, "the width");
    return digits;
}

// Returns true if the digits are a value of `width` bits.
bool isValue(const std::string& digits, std::uint64_t width, ByteOrder order) {
    try {
        parseValue(digits, width, order);
        return true;
    } catch (const Fault&) {
        return false;
    }
}

// Returns true if the line is a valid "NAME WIDTH VALUE" whose name has characters after the
// separator. Sets `name` to this name.
bool isLongForm(const std::string& line, std::size_t separator, ByteOrder order,
                std::string& name) {
    const std::size_t end = line.find_first_of(Kel_StrTok::WHITE_SPACE);
    if (end == std::string::npos || end <= separator + 1)
        return false;
    try {
        Scan scan;
        const std::string digits = readLongForm(line, scan);
        name = scan.name;
        return isValue(digits, scan.width, order);
    } catch (const Fault&) {
        return false;
    }
}

// Reads a line with a separator. It is "NAME: VALUE" if the table has the width of that register.
// Otherwise the separator may be part of the name in "NAME WIDTH VALUE": "CORE:ID 8 5A". If the
// table has the width of CORE, this line still reads so, unless it also is a value of CORE.
std::string readShortForm(const std::string& line, std::size_t separator, ByteOrder order,
                          const FieldTable& table, Scan& scan) {
    const std::string name = Kel_Util::trimWhitespace(line.substr(0, separator));
    std::string longName;
    scan.name = name;
    scan.width = widthOf(name, table);
    if (scan.width != 0) {
        Kel_StrTok words(line.c_str() + separator + 1, Kel_StrTok::WHITE_SPACE, false, false,
                         false);
        std::string digits = joined(words);
        if (!isLongForm(line, separator, order, longName))
            return digits;
        if (table.count(longName) == 0 && isValue(digits, scan.width, order))
            throw Fault("this may be a scan of '" + name + "' or of '" + longName +
                        "'; a blank after '" + line.substr(0, separator + 1) + "' selects '" +
                        name + "'");
        return readLongForm(line, scan);
    }
    try {
        return readLongForm(line, scan);
    } catch (const Fault&) {
        scan.name = name;
        throw Fault("the line has no width, and the table has none for register '" + name + "'");
    }
}

} // namespace

void readScan(const std::string& line, ByteOrder order, const FieldTable& table, Scan& scan) {
    const std::string text = Kel_Util::trimWhitespace(line.substr(0, line.find('#')));
    const std::size_t separator = separatorOf(text);
    std::string digits = separator == std::string::npos
                             ? readLongForm(text, scan)
                             : readShortForm(text, separator, order, table, scan);
    scan.bits = parseValue(std::move(digits), scan.width, order);
    const auto bitCount = static_cast<unsigned>(scan.width);
    Logger::logger.printLog(3, "%s, %u bits", scan.name.c_str(), bitCount);
    Logger::logger.dumpBuffer(3, nullptr, scan.bits.uPtr(), bitCount);
}

} // namespace field_report
