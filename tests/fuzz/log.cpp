// SPDX-License-Identifier: MIT
//
// Compares records, traces and dumps of hostile texts with the model of the log. A process starts
// logging only once, so the flags come from the environment and are the same for all inputs.
#include "KelRT/Logger.h"

#include "input.h"
#include "models/log_model.h"
#include "support/captured_output.h"

#include <climits>
#include <regex>

using KelRT::Logger;

namespace {

constexpr const char* FLAGS = "TOR_KEL_LOGFLAGS";

/// Logs to the captured standard output and to the model.
class Log {
public:
    Log() {
        const char* const given = std::getenv(FLAGS);
        const int flags = given == nullptr ? 0 : std::atoi(given);
        expected.bits = (flags & 1) != 0;
        expected.whole = (flags & 2) != 0;
        test_host::setEnvironment(FLAGS, std::to_string(flags));
        test_host::setEnvironment("TOR_KEL_LOGFILE", "stdout");
        logger.startLogging();
        static_cast<void>(output.take());
    }

    void step(fuzz::Input& input) {
        const std::string text = textOf(input);
        const char* const c = text.c_str();
        const auto number = static_cast<int>(input.value(1)) - 128;
        switch (input.below(12)) {
        case 0:
            return both(
                [level = input.below(4) == 0 ? 3 : 4](auto& log) { log.setDetailLevel(level); });
        case 1:
            logger.logMethodEntry(c, "%s%d", c, number);
            return expected.logMethodEntry(text, text + std::to_string(number));
        case 7:
            if (input.below(8) == 0)
                return both([](auto& log) { log.popAllMethods(); });
            [[fallthrough]];
        case 2:
            return both([c](auto& log) { log.logMethodEntry(c); });
        case 3:
            return both([](auto& log) { log.logMethodExit(); });
        case 4:
            return both([number](auto& log) { log.logMethodExit(number); });
        case 5:
            return both([c](auto& log) { log.logMethodExit(c); });
        case 6:
            return both([c, number](auto& log) { log.logMethodExit(c, number); });
        case 8:
            return dump(input, text);
        default:
            const auto level = static_cast<int>(input.below(6));
            logger.printLog(level, "%s", c);
            expected.printLog(level, text);
        }
    }

    /// Compares the logs and resets both for the next input.
    void finish() {
        both([](auto& log) { log.setDetailLevel(4); });
        while (expected.depth > 0)
            both([](auto& log) { log.logMethodExit("end", 0); });
        while (expected.depth < 0)
            both([](auto& log) { log.logMethodEntry("end"); });
        both([](auto& log) {
            log.popAllMethods();
            log.printLog(1, "\n");
            log.setDetailLevel(3);
        });
        logger.flush();
        fuzz::requireEqual(output.take(), expected.text, "the log equals the model's");
        expected.text.clear();
    }

private:
    void both(const auto& operation) {
        operation(logger);
        operation(expected);
    }
    static std::string textOf(fuzz::Input& input) {
        const std::string alphabets[] = {"a", "ab%\n", "%%ns ", "\n"};
        const std::string text = input.text(input.below(20), input.oneOf(alphabets));
        return std::string(input.below(16) == 0 ? 2030 + input.below(20) : 0, 'l') + text;
    }
    void dump(fuzz::Input& input, const std::string& title) {
        // A vast dump claims almost UINT_MAX bits. Only 10,000 bytes are shown and read.
        const bool vast = !expected.whole && input.below(32) == 0;
        const auto bitCount =
            static_cast<unsigned>(vast                  ? 80008
                                  : input.below(8) != 0 ? input.below(700)
                                                        : 79860 + input.below(300));
        std::vector<unsigned char> bytes((bitCount + 7) / 8); // no spare byte at the end
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<unsigned char>(i < 50 ? input.value(1) : i * 37);
        const int level = input.below(8) == 0 ? 5 : 1;
        logger.dumpBuffer(level, title.c_str(), bytes.data(),
                          vast ? UINT_MAX - static_cast<unsigned>(input.below(16)) : bitCount);
        static const std::regex percents("%%"); // each shows one '%'
        if (level == 1)
            expected.dumpBuffer(std::regex_replace(title, percents, "%"), bytes, bitCount);
    }

    Logger& logger = Logger::logger;
    fuzz::CapturedOutput output;
    model::Log expected;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Log log;
    fuzz::Input input(data, size);
    while (!input.empty())
        log.step(input);
    log.finish();
    return 0;
}
