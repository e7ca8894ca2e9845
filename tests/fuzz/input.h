// SPDX-License-Identifier: MIT
//
// The input of one run of a fuzz target, read as values and texts, and the check that reports a
// finding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace fuzz {

/// Returns the bytes in order, and zeros after the last one.
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
    /// Up to \a most characters of any code.
    std::string text(std::size_t most) {
        std::string text = bytes.substr(at < bytes.size() ? at : bytes.size(), most);
        at += text.size();
        return text;
    }
    /// Up to \a most characters of \a alphabet. Every fourth text also has some of any code but 0.
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

/// Aborts the run, which makes it a finding, unless \a holds.
inline void require(bool holds, const char* what) {
    if (holds)
        return;
    static_cast<void>(std::fprintf(stderr, "failed: %s\n", what));
    std::abort();
}

} // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
