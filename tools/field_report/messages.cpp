// SPDX-License-Identifier: MIT
#include "messages.h"

#include "host.h"

#include "KelRT/Logger.h"

#include <cerrno>
#include <iostream>
#include <system_error>

namespace field_report {

Fault hostFault(const std::string& what) {
    const int reason = errno;
    return Fault(what + ": " + std::generic_category().message(reason));
}

Messages::Messages()
    : onTerminal(host::isTerminal(stderr)), due(Clock::now() + std::chrono::seconds(1)) {}

void Messages::reportFault(const std::string& where, const std::string& what) {
    faults = true;
    hideProgress();
    KelRT::Logger::logger.flush(); // the log may go to standard error too
    std::cerr << where << ": " << what << '\n';
    KelRT::Logger::logger.printLog(1, "%s: %s\n", where.c_str(), what.c_str());
}

void Messages::showProgress(std::uint64_t done, std::uint64_t total) {
    if (!onTerminal || Clock::now() < due)
        return;
    due = Clock::now() + std::chrono::milliseconds(200);
    hideProgress();
    const std::string text = total == 0 ? std::to_string(done / 1000000) + " MB read"
                                        : std::to_string(done * 100 / total) + " % read";
    std::cerr << text << std::flush;
    shown = text.size();
}

void Messages::hideProgress() {
    if (shown != 0)
        std::cerr << '\r' << std::string(shown, ' ') << '\r' << std::flush;
    shown = 0;
}

} // namespace field_report
