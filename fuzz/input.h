// SPDX-License-Identifier: MIT
//
// The bytes of one fuzzed run, taken as values and texts, and what a target says when it finds
// something.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace fuzz {

/// Hands out the bytes from the first to the last, and zeros behind them.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : bytes(reinterpret_cast<const char*>(data), size) {}

    [[nodiscard]] bool empty() const { return at >= bytes.size(); }
    std::uint64_t value(unsigned byteCount = 8) {
        std::uint64_t value = 0;
        for (unsigned i = 0; i < byteCount; ++i)
            value = value << 8 | static_cast<unsigned char>(next());
        return value;
    }
    std::uint64_t below(std::uint64_t bound) { return value(bound <= 256 ? 1 : 4) % bound; }
    char character() { return next(); }
    /// At most \a most characters, of any code but 0 where \a noZeros.
    std::string text(std::size_t most, bool noZeros) {
        std::string text = bytes.substr(at < bytes.size() ? at : bytes.size(), most);
        at += text.size();
        return noZeros ? text.substr(0, text.find('\0')) : text;
    }

private:
    char next() { return at < bytes.size() ? bytes[at++] : '\0'; }

    std::string bytes;
    std::size_t at = 0;
};

/// Ends the run as a finding unless \a holds.
inline void require(bool holds, const char* what) {
    if (holds)
        return;
    static_cast<void>(std::fprintf(stderr, "not so: %s\n", what));
    std::abort();
}

} // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
