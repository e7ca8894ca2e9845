// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

using namespace KelRT;

static unsigned int read(unsigned int address) {
    MethodLogger trace;
    trace.setMethodName("read");
    const unsigned char bytes[] = {0x77, 0x04, 0xA0, 0x0B};
    if (address != 0)
        return trace.setReturnStatus(0x80000005);
    Logger::logger.dumpBuffer(4, "IDCODE", bytes, 32);
    return trace.setReturnStatus(0);
}

static bool probe() {
    MethodLogger trace;
    trace.setMethodName("probe");
    Logger::logger.printLog(1, "%d device\n", 1);
    const bool first = read(0) == 0;
    const bool second = read(1) == 0;
    return trace.setReturn(first && second);
}

int main() {
    Logger::logger.startLogging(); // reads TOR_KEL_LOGFILE, ..._LOGDETAIL and ..._LOGFLAGS
    probe();
    if (Logger::logger.shouldPrintLog(7))
        Logger::logger.printLog(7, "only at level 7 and above\n");
    Logger::logger.endLogging();
}
//! [example]
