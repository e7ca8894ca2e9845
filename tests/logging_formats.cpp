// SPDX-License-Identifier: MIT
//
// Never linked: logging_formats.cmake compiles this and expects a format warning on exactly the
// lines that say so.
#include "KelRT/Logger.h"

void call(const char* text, std::va_list list) {
    KelRT::Logger& logger = KelRT::Logger::logger;
    logger.printLog(1, "plain %% and %s %d %u %zu %c %p\n", text, 1, 2U, sizeof text, 'c', "p");
    logger.printLog(1, "%llx %ld %.3f %#o\n", 1ULL, 1L, 0.5, 8U);
    logger.printLog(1, nullptr);
    logger.printLog(1, "%s", 1);         // warns
    logger.printLog(1, "%d");            // warns
    logger.printLog(1, "%d", text);      // warns
    logger.printLog(1, "%d\n", 1, 2);    // warns
    logger.printLog(1, "%zu\n", "size"); // warns
    logger.vprintLog(1, "%d %s\n", list);
    logger.vprintLog(1, "%d %", list); // warns
    logger.logMethodEntry("m");
    logger.logMethodEntry("m", nullptr);
    logger.logMethodEntry("m", "text");
    logger.logMethodEntry("m", "count=%d", 0);
    logger.logMethodEntry("m", "%p", nullptr);
    logger.logMethodEntry("m", "%s=%d", text, 0);
    logger.logMethodEntry("m", "%s", text);
    logger.logMethodEntry("%s", "%d", 1);      // a name is no format
    logger.logMethodEntry("m", "count=%s", 0); // warns
    logger.logMethodEntry("m", "count=%d");    // warns
    logger.logMethodEntry("m", "%d", text);    // warns
    logger.logMethodEntry("m", "none", 0);     // warns
    logger.logMethodEntry("m", "%s %d", list);
    logger.logMethodEntry("m", "%s %", list); // warns
    logger.logMethodExit("%s");
    logger.logMethodExit("%s", 0);
    logger.dumpBuffer(1, "%s", nullptr, 0);
}
