// SPDX-License-Identifier: MIT
#include "decimal.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <system_error>

namespace field_report {

namespace {

constexpr std::uint32_t MAX_DECIMALS = 400; // 4.9e-324, the smallest double, needs 324

Fault invalid(const std::string& text, const char* what) {
    return Fault(what + (text.empty() ? " is missing" : " '" + text + "' is not a valid number"));
}

template <typename Integer>
bool readInteger(const std::string& text, std::size_t from, int base, Integer& number) {
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data() + from, end, number, base);
    return error == std::errc() && rest == end;
}

bool readDouble(const std::string& text, double& number) {
#ifdef __cpp_lib_to_chars
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end;
#else // std::from_chars() reads only integers
    // std::strtod() would accept leading blanks, a plus sign and hexadecimal numbers.
    const bool isDecimal = !text.empty() && text.front() != '+' &&
                           text.find_first_not_of("0123456789.eE+-") == std::string::npos;
    if (!isDecimal)
        return false;
    char* rest = nullptr;
    errno = 0;
    number = std::strtod(text.c_str(), &rest);
    const bool hasVanished = errno == ERANGE && number == 0; // too small for a double
    return *rest == '\0' && !hasVanished;
#endif
}

double doubleOf(const std::string& text, const char* what) {
    double number = 0;
    if (!readDouble(text, number) || !std::isfinite(number))
        throw invalid(text, what);
    return number;
}

std::uint32_t decimalsOf(const std::string& number) {
    const std::size_t end = std::min(number.find_first_of("eE"), number.size());
    const std::size_t point = std::min(number.find('.'), end);
    std::int64_t decimals = point == end ? 0 : static_cast<std::int64_t>(end - point - 1);
    if (end != number.size()) {
        const std::size_t exponent = end + (number[end + 1] == '+' ? 2 : 1);
        std::int32_t tens = 0;
        if (!readInteger(number, exponent, 10, tens))
            throw invalid(number, "the exponent of");
        decimals -= tens;
    }
    if (decimals > MAX_DECIMALS)
        throw Fault("'" + number + "' has more than " + std::to_string(MAX_DECIMALS) + " decimals");
    return static_cast<std::uint32_t>(std::max<std::int64_t>(decimals, 0));
}

std::uint32_t decimalsOfFraction(double numerator, double denominator) {
    // Products are rounded, so the comparison allows for it: 0.47 * 10 * 10 is less than 47, yet
    // 0.47/47 has two decimals.
    denominator *= 1 - 1e-13;
    std::uint32_t decimals = 0;
    while (numerator < denominator) {
        numerator *= 10;
        if (++decimals > MAX_DECIMALS)
            throw Fault("the scale has more than " + std::to_string(MAX_DECIMALS) + " decimals");
    }
    return decimals;
}

} // namespace

bool hasHexPrefix(const std::string& text) {
    return text.size() > 1 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

std::uint64_t integerOf(const std::string& text, const char* what) {
    const bool isHex = hasHexPrefix(text);
    std::uint64_t number = 0;
    if (!readInteger(text, isHex ? 2 : 0, isHex ? 16 : 10, number))
        throw invalid(text, what);
    return number;
}

Decimal decimalOf(const std::string& text, const char* what) {
    const auto value = doubleOf(text, what);
    return {value, decimalsOf(text)};
}

Decimal scaleOf(const std::string& text) {
    const std::size_t slash = text.find('/');
    if (slash == std::string::npos)
        return decimalOf(text, "the scale");
    const auto numerator = doubleOf(text.substr(0, slash), "the numerator");
    const auto denominator = doubleOf(text.substr(slash + 1), "the denominator");
    Decimal scale = {numerator / denominator, 0};
    if (!std::isfinite(scale.value) || (scale.value == 0 && numerator != 0))
        throw invalid(text, "the scale");
    if (numerator != 0)
        scale.decimals = decimalsOfFraction(std::abs(numerator), std::abs(denominator));
    return scale;
}

} // namespace field_report
