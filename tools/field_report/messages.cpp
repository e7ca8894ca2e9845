// SPDX-License-Identifier: MIT
#include "messages.h"

#include "KelRT/Logger.h"

#include <cerrno>
#include <iostream>
#include <system_error>

namespace field_report {

Fault hostFault(const std::string& what) {
    const int reason = errno;
    return Fault(what + ": " + std::generic_category().message(reason));
}

void Messages::reportFault(const std::string& where, const std::string& what) {
    faults = true;
    KelRT::Logger::logger.flush(); // the log may go to standard error too
    std::cerr << where << ": " << what << '\n';
    KelRT::Logger::logger.printLog(1, "%s: %s\n", where.c_str(), what.c_str());
}

} // namespace field_report
