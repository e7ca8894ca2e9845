// SPDX-License-Identifier: MIT
//
// Tokenizer is slow and obvious: it handles one character and one rule at a time.
#pragma once

#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace model {

struct Flags {
    bool handleQuotes = false;
    bool toLowerCase = false;
    bool keepQuotes = false;
};

class Tokenizer {
public:
    Tokenizer(std::string input, const char* set, bool isCommaSeparated, Flags given)
        : text(std::move(input)), delimiters(set), commaSeparated(isCommaSeparated), flags(given) {
        for (char& c : text)
            if (flags.toLowerCase && c >= 'A' && c <= 'Z')
                c = static_cast<char>(c - 'A' + 'a');
    }

    std::vector<std::string> tokens() {
        std::vector<std::string> tokens;
        while (!atEnd()) {
            while (!commaSeparated && atDelimiter())
                ++at;
            const bool quoted = flags.handleQuotes && !atEnd() && text[at] == '"';
            tokens.push_back(quoted ? quotedToken() : plainToken());
        }
        if (commaSeparated && !text.empty() && text.back() == ',')
            tokens.emplace_back();
        return tokens;
    }

private:
    [[nodiscard]] bool atEnd() const { return at >= text.size(); }
    [[nodiscard]] bool atDelimiter() const {
        return !atEnd() && std::strchr(delimiters, text[at]) != nullptr;
    }

    std::string plainToken() {
        std::string token;
        while (!atEnd() && !atDelimiter())
            token += text[at++];
        ++at;
        return token;
    }

    std::string quotedToken() {
        std::string token(flags.keepQuotes ? 1 : 0, '"');
        for (++at; !atEnd() && text[at] != '"'; ++at)
            token += text[at];
        const bool closed = !atEnd();
        ++at;
        if (closed && flags.keepQuotes) {
            token += '"';
            ++at; // skips whatever follows the quote
        }
        return token;
    }

    std::string text;
    const char* delimiters;
    bool commaSeparated;
    Flags flags;
    std::size_t at = 0;
};

} // namespace model
