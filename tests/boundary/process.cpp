// SPDX-License-Identifier: MIT
//
// Runs two client libraries that share one log with the program and write to it until they are
// unloaded.
#include "client.h"

#include "KelRT/Kel_Exception.h"
#include "KelRT/Logger.h"

#include <initializer_list>

using KelRT::Logger;

namespace {

// Logs at the end of the program.
struct LastWords {
    ~LastWords() { Logger::logger.printLog(1, "the program ends\n"); }
};
const LastWords lastWords;

} // namespace

int main() {
    Logger::logger.startLogging();
    Logger::logger.logMethodEntry("main");
    for (const auto client : {firstClient, secondClient})
        try {
            client();
        } catch (const KelRT::Kel_Exception&) {
            Logger::logger.printLog(1, "the program catches a Kel_Exception of the client\n");
        }
    Logger::logger.logMethodExit();
}
