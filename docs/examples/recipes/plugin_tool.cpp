// SPDX-License-Identifier: MIT
#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include <cstdio>
#include <fstream>
#include <string>

using namespace KelRT;

using CountDevices = int (*)();

// Loads the plug-in and returns its function countDevices, or null if that fails.
static CountDevices load(const std::string& file) {
#if defined(_WIN32)
    const HMODULE plugin = LoadLibraryA(file.c_str());
    if (plugin == nullptr)
        return nullptr;
    return reinterpret_cast<CountDevices>(
        reinterpret_cast<void*>(GetProcAddress(plugin, "countDevices")));
#else
    void* const plugin = dlopen(file.c_str(), RTLD_NOW);
    return plugin == nullptr ? nullptr
                             : reinterpret_cast<CountDevices>(dlsym(plugin, "countDevices"));
#endif
}

//! [find]
#if defined(_WIN32)
constexpr char PLUGIN[] = "recipe_plugin.dll";
#else
constexpr char PLUGIN[] = "recipe_plugin.so";
#endif

static int run() {
    MethodLogger trace;
    trace.setMethodName("run");

    // Sets the default data directory; TOR_KEL_DATADIR overrides it. The path ends in a separator.
    Kel_Util::setUserDataDirPath("data");
    std::ifstream table(Kel_Util::getDataDirPath() + "fields.csv");

    // The current directory is searched first, then those in PATH.
    const std::string directory = Kel_Util::findLibInPath(PLUGIN);
    const CountDevices countDevices = load(directory + "/" + PLUGIN);

    return trace.setReturn(table && countDevices != nullptr && countDevices() == 3 ? 0U : 1U);
}

int main() {
    Logger::logger.startLogging();
    try {
        return run();
    } catch (const Kel_Exception& failure) { // for example, if there is no such library
        std::printf("%s", failure.what().c_str());
        return 1;
    }
}
//! [find]
