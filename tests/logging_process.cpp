// SPDX-License-Identifier: MIT
//
// A program that logs, for what can only be seen from outside the process. logging_process.cmake
// runs it and reads what it leaves behind.
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include "test_host.h"

#include <cstring>

using KelRT::Logger;

namespace {

// A client's static object lives longer than main and logs from its destructor.
struct Client {
    ~Client() {
        Logger::logger.printLog(1, "client ends\n");
        tracer.setReturnStatus(0);
    }
    KelRT::MethodLogger tracer;
};
Client client;

void writeAll() {
    const unsigned char byte = 0x5A;
    Logger::logger.printLog(1, "record\n");
    Logger::logger.dumpBuffer(1, &byte, 8);
}

// Ends logging to a standard stream, which must close the descriptor.
int endOn(int descriptor) {
    Logger::logger.endLogging();
    return test_host::closeDescriptor(descriptor) ? 1 : 0;
}

} // namespace

int main(int argc, char** argv) {
    const auto modeIs = [&](const char* mode) {
        return argc > 1 && std::strcmp(argv[1], mode) == 0;
    };
    if (modeIs("closed"))
        test_host::closeDescriptor(1);
    Logger::logger.startLogging();
    writeAll();
    if (modeIs("unload"))
        client.tracer.setMethodName("Client");
    else if (modeIs("stdout"))
        return endOn(1);
    else if (modeIs("stderr"))
        return endOn(2);
    else if (modeIs("closed"))
        Logger::logger.endLogging();
    return 0;
}
