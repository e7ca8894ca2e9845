// SPDX-License-Identifier: MIT
//
// Dumps of every size under every title, beside the model of the log. The flags are those of the
// environment, as a process starts once.
#include "log.h"

#include <cstdlib>

using KelRT::Logger;

namespace {

/// What a title shows: "%%" as one '%', at most 2,047 characters.
std::string shown(const std::string& title) {
    std::string text;
    for (std::size_t i = 0; i < title.size(); ++i) {
        text += title[i];
        if (title.compare(i, 2, "%%") == 0)
            ++i;
    }
    return text.substr(0, 2047);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const char* const flags = std::getenv("KEL_FUZZ_FLAGS");
    static const int bits = flags == nullptr ? 0 : std::atoi(flags);
    static fuzz::Log log(flags == nullptr ? "0" : flags);
    log.expected.bits = (bits & 1) != 0;
    log.expected.whole = (bits & 2) != 0;
    fuzz::Input input(data, size);
    const std::string title = input.text(static_cast<std::size_t>(input.value(2) % 2500), true);
    const auto bitCount =
        static_cast<unsigned>(input.below(8) != 0 ? input.below(2000) : 79000 + input.below(3000));
    std::vector<unsigned char> bytes((bitCount + 7) / 8); // not one behind the bits
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(input.empty() ? i * 37 : input.value(1));
    if (input.below(2) == 0) {
        Logger::logger.printLog(1, "open line");
        log.expected.record(1, "open line");
    }
    Logger::logger.dumpBuffer(1, title.c_str(), bytes.data(), bitCount);
    log.expected.dump(shown(title), bytes, bitCount);
    log.expectSame();
    return 0;
}
