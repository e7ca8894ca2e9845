// SPDX-License-Identifier: MIT
//
// Reads the input of one run of a fuzz target as values and texts. The checks abort the run, which
// makes its input a finding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace fuzz {

/// Returns the bytes of the input in order, and zeros after the last one.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : bytes(reinterpret_cast<const char*>(data), size) {}

    [[nodiscard]] bool empty() const { return at >= bytes.size(); }
    std::uint64_t value(unsigned byteCount = 8) {
        std::uint64_t value = 0;
        for (unsigned i = 0; i < byteCount; ++i)
            value = value << 8 | static_cast<unsigned char>(character());
        return value;
    }
    std::size_t below(std::uint64_t bound) {
        return static_cast<std::size_t>(value(bound <= 256 ? 1 : 4) % bound);
    }
    char character() { return empty() ? '\0' : bytes[at++]; }
    template <typename Choice, std::size_t Count>
    const Choice& oneOf(const Choice (&choices)[Count]) {
        return choices[below(Count)];
    }
    /// Returns up to \a most characters, which may have any code.
    std::string text(std::size_t most) {
        std::string text = bytes.substr(at < bytes.size() ? at : bytes.size(), most);
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

    /// Notes an operation. If a check fails, it prints all operations that were noted.
    void note(const char* operation, std::initializer_list<std::uint64_t> arguments) {
        operations.emplace_back(operation, arguments);
    }
    void printOperations() const {
        for (const auto& [operation, arguments] : operations) {
            static_cast<void>(std::fprintf(stderr, "%s", operation));
            for (const std::uint64_t argument : arguments)
                static_cast<void>(std::fprintf(stderr, " %s", std::to_string(argument).c_str()));
            static_cast<void>(std::fprintf(stderr, "\n"));
        }
    }

private:
    std::string bytes;
    std::size_t at = 0;
    std::vector<std::pair<const char*, std::vector<std::uint64_t>>> operations;
};

/// Aborts the run, which makes it a finding. Prints the operations that \a input has noted.
[[noreturn]] inline void fail(const std::string& message, const Input* input) {
    if (input != nullptr)
        input->printOperations();
    static_cast<void>(std::fprintf(stderr, "failed: %s\n", message.c_str()));
    std::abort();
}

/// Aborts the run with the message \a what unless \a holds is true.
inline void require(bool holds, const char* what, const Input* input = nullptr) {
    if (!holds)
        fail(what, input);
}

inline std::string shown(const std::string& text) {
    return text;
}
template <typename Value>
    requires std::is_arithmetic_v<Value>
std::string shown(Value value) {
    return std::to_string(value);
}

/// Aborts the run if the lists differ. Prints a part of both that begins shortly before the first
/// difference.
template <typename List>
void requireEqualLists(const List& found, const List& expected, const char* what,
                       const Input* input) {
    std::size_t place = 0;
    while (place < found.size() && place < expected.size() && found[place] == expected[place])
        ++place;
    if (place == found.size() && place == expected.size())
        return;
    const auto partOf = [first = place < 40 ? 0 : place - 40](const List& list) {
        std::string text;
        for (std::size_t i = first; i < list.size() && i < first + 200; ++i)
            if constexpr (std::is_same_v<List, std::string>)
                text += list[i];
            else
                text += shown(list[i]) + ' ';
        return text;
    };
    fail(std::string(what) + ", from " + std::to_string(place) +
             " on\n  found:    " + partOf(found) + "\n  expected: " + partOf(expected),
         input);
}

/// Aborts the run if the values differ, and prints both.
template <typename Found, typename Expected>
void requireEqual(const Found& found, const Expected& expected, const char* what,
                  const Input* input = nullptr) {
    if constexpr (!std::is_arithmetic_v<Found>)
        requireEqualLists<Found>(found, expected, what, input);
    else if (found != expected)
        fail(std::string(what) + "\n  found:    " + shown(found) +
                 "\n  expected: " + shown(expected),
             input);
}

} // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
