// SPDX-License-Identifier: MIT
//
// Records and traces with hostile texts, beside the model of the log.
#include "log.h"

using KelRT::Logger;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::Log log("0");
    fuzz::Input input(data, size);
    Logger& logger = Logger::logger;
    while (!input.empty()) {
        const std::uint64_t operation = input.below(6);
        const std::string text = input.text(static_cast<std::size_t>(input.value(2) % 2500), true);
        if (operation == 0) {
            logger.setDetailLevel(4);
            log.expected.level = 4;
        } else if (operation == 1) {
            logger.logMethodEntry(text.c_str(), "%s", text.c_str());
            log.expected.entry(text, text);
        } else if (operation == 2) {
            logger.logMethodExit(text.c_str());
            log.expected.exit(text.empty() ? "" : " -- returning " + text);
        } else {
            const int level = static_cast<int>(operation);
            logger.printLog(level, "%s", text.c_str());
            log.expected.record(level, text);
        }
    }
    logger.popAllMethods();
    log.expected.names.clear();
    while (log.expected.depth != 0) { // as the next input finds it
        logger.setDetailLevel(4);
        log.expected.level = 4;
        logger.logMethodExit("end", 0);
        log.expected.exitByName("end", " -- returning 0");
    }
    logger.printLog(1, "\n");
    log.expected.record(1, "\n");
    log.expectSame();
    return 0;
}
