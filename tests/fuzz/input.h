// SPDX-License-Identifier: MIT
//
// Reads the input of one run of a fuzz target as values and texts. The checks abort the run, which
// makes its input a finding.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <type_traits>

namespace fuzz {

/// Returns the bytes of the input in order, and zeros after the last one.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : bytes(reinterpret_cast<const char*>(data), size) {}

    [[nodiscard]] bool empty() const { return at >= bytes.size(); }
    char character() { return empty() ? '\0' : bytes[at++]; }
    std::uint64_t value(unsigned byteCount = 8) {
        std::uint64_t value = 0;
        for (unsigned i = 0; i < byteCount; ++i)
            value = value << 8 | static_cast<unsigned char>(character());
        return value;
    }
    std::size_t below(std::uint64_t bound) {
        return static_cast<std::size_t>(value(bound <= 256 ? 1 : 4) % bound);
    }
    const auto& oneOf(const auto& choices) { return choices[below(std::size(choices))]; }
    /// Returns up to \a most characters, which may have any code.
    std::string text(std::size_t most) {
        const std::string text = bytes.substr(at, most);
        at += text.size();
        return text;
    }
    /// Returns up to \a most characters of \a alphabet. In about a quarter of the texts, some
    /// characters have any code but 0.
    std::string text(std::size_t most, const std::string& alphabet) {
        const bool mixed = below(4) == 0;
        std::string text;
        while (!empty() && text.size() < most) {
            const auto code = static_cast<unsigned char>(character());
            const bool other = mixed && code % 16 == 7;
            text += other ? static_cast<char>(1 + below(255)) : alphabet[code % alphabet.size()];
        }
        return text;
    }

private:
    std::string bytes;
    std::size_t at = 0;
};

/// Aborts the run, which makes its input a finding, unless \a holds is true.
inline void require(bool holds, const char* what) {
    if (holds)
        return;
    static_cast<void>(std::fprintf(stderr, "failed: %s\n", what));
    std::abort();
}

inline std::string shown(const auto& value) {
    using Value = std::remove_cvref_t<decltype(value)>;
    if constexpr (std::is_convertible_v<Value, std::string>) {
        return value;
    } else if constexpr (std::is_arithmetic_v<Value>) {
        return std::to_string(value);
    } else {
        std::string text;
        for (const auto& element : value)
            text += shown(element) + ' ';
        return text;
    }
}

/// Aborts the run if the values differ, and prints both from shortly before the first difference.
template <typename Value>
void requireEqual(const Value& found, const std::type_identity_t<Value>& expected,
                  const char* what) {
    if (found == expected)
        return;
    const std::string a = shown(found);
    const std::string b = shown(expected);
    const auto place = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin();
    const auto from = static_cast<std::size_t>(std::max<std::ptrdiff_t>(place - 100, 0));
    const std::string message = what + (", from character " + std::to_string(from)) + " on" +
                                "\n  found:    " + a.substr(from, 600) +
                                "\n  expected: " + b.substr(from, 600);
    require(false, message.c_str());
}

} // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
