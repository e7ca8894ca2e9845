// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Logger.h"

#include <string>

using namespace KelRT;

int main() {
    Logger::logger.startLogging(); // reads TOR_KEL_LOGFILE and TOR_KEL_LOGDETAIL
    Kel_ByteBuffer scan(4, 0, 0);
    scan.setBits(0, 32, 0x4BA00477);

    const std::string device = "CPU0";
    if (Logger::logger.shouldPrintLog(3)) { // builds the title only if it is logged
        const std::string title = device + ", IDCODE";
        Logger::logger.dumpBuffer(3, title.c_str(), scan.uPtr(), 32);
    }
    Logger::logger.endLogging();
}
//! [example]
