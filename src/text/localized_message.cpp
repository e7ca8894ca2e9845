// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Util.h"

#include <climits>
#include <cwchar>

namespace KelRT {
namespace {

constexpr std::size_t MAX_MESSAGE_BYTES = 2047;

// The length in code units of the character at `message`: 2 for a surrogate pair, otherwise 1.
int unitsAt(const wchar_t* message) {
    constexpr bool HAS_PAIRS = sizeof(wchar_t) == 2;
    const auto isSurrogate = [](wchar_t unit, unsigned first) {
        return (static_cast<unsigned>(unit) & 0xFC00U) == first;
    };
    return HAS_PAIRS && isSurrogate(message[0], 0xD800) && isSurrogate(message[1], 0xDC00) ? 2 : 1;
}

// The multibyte form of the character of `count` code units at `message`; "?" if it has none.
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
    return text.empty() ? "?" : text; // no bytes: an unpaired high surrogate
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
