// SPDX-License-Identifier: MIT
//
// A log on the captured standard output, beside its model.
#pragma once

#include "KelRT/Logger.h"

#include "captured.h"
#include "input.h"
#include "models/log_model.h"

namespace fuzz {

class Log {
public:
    explicit Log(const char* flags) {
        test_host::setEnvironment("TOR_KEL_LOGFILE", "stdout");
        test_host::setEnvironment("TOR_KEL_LOGFLAGS", flags);
        KelRT::Logger::logger.startLogging();
        static_cast<void>(output.take());
    }

    /// Compares what both have written since the last call.
    void expectSame() {
        KelRT::Logger::logger.flush();
        require(output.take() == expected.text, "the log as the model tells it");
        expected.text.clear();
    }

    model::Log expected;

private:
    CapturedOutput output;
};

} // namespace fuzz
