// SPDX-License-Identifier: MIT
//
// Runs two client libraries that share one log and write to it until they are unloaded.
#include "client.h"

using KelRT::Logger;

namespace {

struct LastWords {
    ~LastWords() { Logger::logger.printLog(1, "the program ends\n"); }
};
const LastWords lastWords;

} // namespace

int main() {
    Logger::logger.startLogging();
    firstClient()->work([] { secondClient()->work([] { Logger::logger.printLog(1, "both\n"); }); });
    return 0;
}
