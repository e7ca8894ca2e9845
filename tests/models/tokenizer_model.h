// SPDX-License-Identifier: MIT
//
// This tokenizer is slow and obvious: it looks for the end of one token at a time.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace model {

struct Flags {
    bool handleQuotes = false;
    bool toLowerCase = false;
    bool keepQuotes = false;
};

inline std::vector<std::string> tokens(std::string text, const std::string& delimiters,
                                       bool commaSeparated, Flags flags) {
    for (char& c : text)
        if (flags.toLowerCase && c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    const auto orEnd = [&text](std::size_t place) { return std::min(place, text.size()); };
    std::vector<std::string> tokens;
    for (std::size_t at = 0; at < text.size();) {
        if (!commaSeparated)
            at = orEnd(text.find_first_not_of(delimiters, at));
        if (flags.handleQuotes && at < text.size() && text[at] == '"') {
            const std::size_t end = orEnd(text.find('"', at + 1));
            tokens.push_back(flags.keepQuotes ? text.substr(at, end + 1 - at)
                                              : text.substr(at + 1, end - at - 1));
            at = end + (flags.keepQuotes ? 2 : 1); // keepQuotes also skips the next character
        } else {
            const std::size_t end = orEnd(text.find_first_of(delimiters, at));
            tokens.push_back(text.substr(at, end - at));
            at = end + 1;
        }
    }
    if (commaSeparated && !text.empty() && text.back() == ',')
        tokens.emplace_back();
    return tokens;
}

} // namespace model
