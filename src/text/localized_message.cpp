// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Util.h"

#include "port/runtime.h"

namespace KelRT {

std::string Kel_Util::getLocalizedPortMsg(const wchar_t* message) {
    constexpr std::size_t MAX_BYTES = 2047;
    std::string text;
    while (message != nullptr && *message != L'\0') {
        const std::string character = Port::takeCharacter(message);
        if (text.size() + character.size() > MAX_BYTES)
            break;
        text += character;
    }
    return text;
}

} // namespace KelRT
