// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Util.h"

#include <climits>
#include <cwchar>

namespace KelRT {
namespace {

constexpr std::size_t MAX_MESSAGE_BYTES = 2047;

/// How many units the character at \a message is made of: 2 for a surrogate pair, where wide
/// characters are so narrow that they need pairs.
int unitsAt(const wchar_t* message) {
    constexpr bool hasPairs = sizeof(wchar_t) == 2;
    const auto isPart = [](wchar_t unit, unsigned first) {
        return (static_cast<unsigned>(unit) & 0xFC00U) == first;
    };
    return hasPairs && isPart(message[0], 0xD800) && isPart(message[1], 0xDC00) ? 2 : 1;
}

/// The narrow form of the character made of the \a count units at \a message; "?" when it has none.
std::string narrow(const wchar_t* message, int count) {
    std::string text;
    std::mbstate_t state{};
    for (int unit = 0; unit < count; ++unit) {
        char bytes[MB_LEN_MAX];
        const std::size_t length = std::wcrtomb(bytes, message[unit], &state);
        if (length == static_cast<std::size_t>(-1))
            return "?";
        text.append(bytes, length);
    }
    return text.empty() ? "?" : text; // half a pair, kept waiting for its other half
}

} // namespace

std::string Kel_Util::getLocalizedPortMsg(const wchar_t* message) {
    std::string text;
    while (message != nullptr && *message != L'\0') {
        const int units = unitsAt(message);
        const std::string character = narrow(message, units);
        if (text.size() + character.size() > MAX_MESSAGE_BYTES)
            break;
        text += character;
        message += units;
    }
    return text;
}

} // namespace KelRT
