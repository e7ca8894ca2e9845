// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

using namespace KelRT;

#if defined(_WIN32)
#define PLUGIN_API __declspec(dllexport)
#else
#define PLUGIN_API __attribute__((visibility("default")))
#endif

// The plug-in and the tool both link KelUtil::KelUtil, so both write to the same log. Only the tool
// starts it.
extern "C" PLUGIN_API int countDevices() {
    MethodLogger trace;
    trace.setMethodName("countDevices");
    Logger::logger.printLog(2, "scanning the chain\n");
    return trace.setReturn(3U);
}
//! [example]
