// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Util.h"

#include "KelRT/Kel_StrTok.h"

#include <cassert>
#include <cctype>
#include <limits>
#include <string_view>

namespace KelRT {
namespace {

int folded(char character) {
    return std::tolower(static_cast<unsigned char>(character));
}

} // namespace

int Kel_Util::stricmp(const char* a, const char* b) {
    return strnicmp(a, b, std::numeric_limits<std::uint64_t>::max());
}

int Kel_Util::strnicmp(const char* a, const char* b, std::uint64_t count) {
    assert(a != nullptr && b != nullptr && "a and b are not null");
    for (; count > 0; --count, ++a, ++b) {
        const int difference = folded(*a) - folded(*b);
        if (difference != 0 || *a == '\0')
            return difference;
    }
    return 0;
}

int Kel_Util::stricmp(const std::string& a, const std::string& b) {
    return stricmp(a.c_str(), b.c_str());
}

int Kel_Util::strnicmp(const std::string& a, const std::string& b, std::uint64_t count) {
    return strnicmp(a.c_str(), b.c_str(), count);
}

std::string& Kel_Util::stripEndingCR(std::string& text) {
    if (!text.empty() && text.back() == '\r')
        text.pop_back();
    return text;
}

std::string& Kel_Util::unQuote(std::string& text) {
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        text.pop_back();
        text.erase(0, 1);
    }
    return text;
}

void Kel_Util::unQuote(std::vector<std::string>& texts) {
    for (std::string& text : texts)
        unQuote(text);
}

std::string Kel_Util::trimWhitespace(const std::string& text) {
    const auto content = std::string_view(text).substr(0, text.find('\0'));
    const auto first = content.find_first_not_of(Kel_StrTok::WHITE_SPACE);
    if (first == std::string_view::npos)
        return {};
    const auto last = content.find_last_not_of(Kel_StrTok::WHITE_SPACE);
    return std::string(content.substr(first, last - first + 1));
}

} // namespace KelRT
