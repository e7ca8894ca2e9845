// SPDX-License-Identifier: MIT
//
// A slow, obvious tokenizer: one character at a time, each rule as it is told.
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
    Tokenizer(std::string text, const char* set, bool commaSeparated, Flags flags)
        : text_(std::move(text)), set_(set), commaSeparated_(commaSeparated), flags_(flags) {
        for (char& c : text_)
            if (flags.toLowerCase && c >= 'A' && c <= 'Z')
                c = static_cast<char>(c - 'A' + 'a');
    }

    std::vector<std::string> tokens() {
        std::vector<std::string> tokens;
        while (!atEnd()) {
            while (!commaSeparated_ && atDelimiter())
                ++at_;
            const bool quoted = flags_.handleQuotes && !atEnd() && text_[at_] == '"';
            tokens.push_back(quoted ? quotedToken() : plainToken());
        }
        if (commaSeparated_ && !text_.empty() && text_.back() == ',')
            tokens.emplace_back();
        return tokens;
    }

private:
    [[nodiscard]] bool atEnd() const { return at_ >= text_.size(); }
    [[nodiscard]] bool atDelimiter() const {
        return !atEnd() && std::strchr(set_, text_[at_]) != nullptr;
    }

    std::string plainToken() {
        std::string token;
        while (!atEnd() && !atDelimiter())
            token += text_[at_++];
        ++at_;
        return token;
    }

    std::string quotedToken() {
        std::string token(flags_.keepQuotes ? 1 : 0, '"');
        for (++at_; !atEnd() && text_[at_] != '"'; ++at_)
            token += text_[at_];
        const bool closed = !atEnd();
        ++at_;
        if (closed && flags_.keepQuotes) {
            token += '"';
            ++at_; // whatever stands behind the quote
        }
        return token;
    }

    std::string text_;
    const char* set_;
    bool commaSeparated_;
    Flags flags_;
    std::size_t at_ = 0;
};

} // namespace model
