// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"

#include <cstdint>
#include <cstdlib>
#include <string>

using namespace KelRT;

static void setVariable(const char* name, const std::string& value) {
#if defined(_WIN32)
    _putenv_s(name, value.c_str());
#else
    setenv(name, value.c_str(), 1);
#endif
}

// Starts the log. An option overrides the variable in the user's environment.
static void startLogging(int argc, char** argv) {
    const char* const settings[][2] = {{"log", "TOR_KEL_LOGFILE"}, {"detail", "TOR_KEL_LOGDETAIL"}};
    for (const auto& [option, variable] : settings) {
        const std::string value = Kel_Util::findKey(static_cast<std::uint32_t>(argc), argv, option);
        if (!value.empty())
            setVariable(variable, value);
    }
    Logger::logger.startLogging();
}

int main(int argc, char** argv) {
    startLogging(argc, argv);
    Logger::logger.printLog(2, "scanning\n");
}
//! [example]
