// SPDX-License-Identifier: MIT
//
// Compares records, traces and dumps of hostile texts with the model of the log. In some steps,
// memory is exhausted. A process starts logging only once, so the flags come from the environment
// and are the same for all inputs.
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include "input.h"
#include "models/log_model.h"
#include "support/captured_output.h"
#include "support/failing_new.h"

#include <climits>
#include <optional>
#include <utility>

using KelRT::Logger;

namespace {

constexpr const char* FLAGS = "TOR_KEL_LOGFLAGS";
constexpr int LEVELS[] = {INT_MIN, -1, 0, 3, 4, 4, 4, 10, 11, INT_MAX}; // traces need 4 or more

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

    /// Applies an operation to both logs.
    void step(fuzz::Input& input) {
        // MSVC's debug library allocates for every string, even in functions that must not throw.
        // So memory is never exhausted on Windows.
        exhausted = !test_host::WINDOWS && input.below(4) == 0;
        const std::string text = textOf(input);
        const char* const c = text.c_str();
        const auto number = static_cast<int>(input.value(1)) - 128;
        switch (input.below(15)) {
        case 0:
            return both([level = input.oneOf(LEVELS)](auto& log) { log.setDetailLevel(level); });
        case 1:
            return both(
                [&](Logger& log) { log.logMethodEntry(c, "%s%d", c, number); },
                [&](model::Log& log) { log.logMethodEntry(text, text + std::to_string(number)); });
        case 2:
            if (input.below(8) == 0)
                return both([](auto& log) { log.popAllMethods(); });
            [[fallthrough]];
        case 3:
        case 4:
            return both([c](auto& log) { log.logMethodEntry(c); });
        case 5:
            return both([](auto& log) { log.logMethodExit(); });
        case 6:
            return both([number](auto& log) { log.logMethodExit(number); });
        case 7:
            return both([c](auto& log) { log.logMethodExit(c); });
        case 8:
            return both([c, number](auto& log) { log.logMethodExit(c, number); });
        case 9:
            return dump(input, text);
        case 10:
            return copy();
        case 11:
            return trace(input, text);
        default:
            record(static_cast<int>(input.below(6)), text);
        }
    }

    /// Compares the logs and resets both for the next input.
    void finish() {
        exhausted = false;
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
        fuzz::requireEqual(output.take(), expected.text, "the log");
        expected.text.clear();
    }

private:
    /// Applies an operation to the Logger. Returns true if an allocation has failed. If memory is
    /// exhausted, even the first allocation fails. Otherwise its memory could leak when a later one
    /// fails: libFuzzer brings std::vector code that was compiled without exceptions.
    bool hasFailed(const auto& operation) {
        const test::FailingNew noMemory(exhausted ? 0 : LONG_MAX);
        operation(logger);
        return test::FailingNew::failed();
    }
    void both(const auto& ofLogger, const auto& ofModel) {
        expected.exhausted = hasFailed(ofLogger);
        ofModel(expected);
    }
    void both(const auto& operation) { both(operation, operation); }

    void record(int level, const std::string& text) {
        fuzz::requireEqual(logger.shouldPrintLog(level), level <= expected.level, "shouldPrintLog");
        both([&](Logger& log) { log.printLog(level, "%s", text.c_str()); },
             [&](model::Log& log) { log.printLog(level, text); });
    }
    /// Closes an entry through a copy of the Logger, and assigns the copy back. If memory is
    /// exhausted, the names of the entries are lost.
    void copy() {
        const int level = expected.level;
        logger.setDetailLevel(1); // so that the end of the copy writes no line
        if (hasFailed([](Logger& log) {
                Logger copy;
                copy = log;
                copy.setDetailLevel(4);
                copy.logMethodExit(7);
                log = copy;
                log.setDetailLevel(1);
            }))
            expected.names.assign(expected.names.size(), std::nullopt);
        expected.level = 4;
        expected.logMethodExit(7);
        both([level](auto& log) { log.setDetailLevel(level); });
    }
    /// Applies a further operation while a tracer and a copy of it exist. \a text is the tracer's
    /// name and result; if it is empty, the tracer is not named. If memory is exhausted, the
    /// results of both may be lost.
    void trace(fuzz::Input& input, const std::string& text) {
        KelRT::MethodLogger tracer;
        KelRT::MethodLogger copied; // ends before the tracer
        std::string name = text;
        if (!text.empty())
            both([&](Logger&) { tracer.setMethodName(std::move(name)); },
                 [&](model::Log& log) { log.logMethodEntry(text); });
        tracer.setReturn("replaced");
        const char* returned = nullptr;
        const bool lost = hasFailed([&](Logger&) { returned = tracer.setReturn(text.c_str()); });
        fuzz::require(returned == text.c_str(), "setReturn returns its argument");
        const bool copyLost = hasFailed([&](Logger&) { copied = tracer; }) || lost;
        step(input);
        expected.logMethodExit(copyLost ? "" : text);
        expected.logMethodExit(lost ? "" : text);
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
        const unsigned claimed =
            vast ? UINT_MAX - static_cast<unsigned>(input.below(16)) : bitCount;
        std::vector<unsigned char> bytes((bitCount + 7) / 8); // no spare byte at the end
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<unsigned char>(i < 50 ? input.value(1) : i * 37);
        const int level = input.below(8) == 0 ? 5 : 1;
        if (input.below(8) == 0)
            both([&](Logger& log) { log.dumpBuffer(level, bytes.data(), claimed); },
                 [&](model::Log& log) { log.dumpBuffer(level, "[Buffer Dump]", bytes, bitCount); });
        else
            both([&](Logger& log) { log.dumpBuffer(level, title.c_str(), bytes.data(), claimed); },
                 [&](model::Log& log) { log.dumpBuffer(level, title, bytes, bitCount); });
    }

    Logger& logger = Logger::logger;
    fuzz::CapturedOutput output;
    model::Log expected;
    bool exhausted = false; // in the current step
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
