// SPDX-License-Identifier: MIT
#include "decimal.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

namespace field_report {

namespace {

constexpr std::int64_t MAX_DECIMALS = 400; // the smallest double has 324 zeros before its digits

} // namespace

bool readNumber(const std::string& text, double& number) {
#ifdef __cpp_lib_to_chars
    return readNumber<double>(text, number);
#else // std::from_chars() takes integers alone
    // std::strtod() also accepts leading blanks and a plus sign, and hexadecimal numbers.
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

std::uint32_t decimalsOf(const std::string& number) {
    const std::size_t end = std::min(number.find_first_of("eE"), number.size());
    const std::size_t point = std::min(number.find('.'), end);
    std::int64_t decimals = point == end ? 0 : static_cast<std::int64_t>(end - point - 1);
    if (end != number.size()) {
        const std::size_t exponent = end + (number[end + 1] == '+' ? 2 : 1);
        decimals -= numberOf<std::int32_t>(number.substr(exponent), "the exponent");
    }
    if (decimals > MAX_DECIMALS)
        throw Fault("'" + number + "' has more than " + std::to_string(MAX_DECIMALS) + " decimals");
    return static_cast<std::uint32_t>(std::max<std::int64_t>(decimals, 0));
}

} // namespace field_report
