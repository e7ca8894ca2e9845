// SPDX-License-Identifier: MIT
//
// Starts and ends logging; constructs and copies Loggers.
#include "KelRT/Logger.h"

#include "KelRT/Kel_Util.h"
#include "KelRT/Version.h"
#include "logging/records.h"
#include "port/runtime.h"

#include <array>
#include <cstdlib>
#include <ctime>

namespace KelRT {

using logging::BANNER_LEVEL;
using logging::ENVIRONMENT_LEVEL;

namespace {

// Becomes true when the first Logger of the process starts.
bool loggingStarted = false;

// Owns the stream that Loggers share. The last Logger that releases the stream closes it, even a
// standard stream.
struct StreamOwner {
    StreamOwner() = default;
    StreamOwner(const StreamOwner&) = delete;
    StreamOwner& operator=(const StreamOwner&) = delete;
    ~StreamOwner() {
        const Port::CancellationDisabled cancellationGuard;
        if (handle != nullptr)
            static_cast<void>(std::fclose(handle));
    }
    std::FILE* handle = nullptr;
};

int numberIn(const char* text) {
    return std::atoi(text); // NOLINT(cert-err34-c): text without digits counts as 0
}

std::FILE* selectStream(const std::string& name) {
    if (name == "stdout")
        return stdout;
    if (name == "stderr")
        return stderr;
    return std::fopen(name.c_str(), "wt"); // 't' is text mode on Windows
}

// Opens the stream called `name`; returns null if it cannot be opened. Allocates the owner first,
// so that nothing is open if the allocation throws. The result keeps the owner alive.
std::shared_ptr<std::FILE> openStream(const std::string& name) {
    const auto owner = std::make_shared<StreamOwner>();
    owner->handle = selectStream(name);
    if (owner->handle == nullptr)
        return nullptr;
    static_cast<void>(std::setvbuf(owner->handle, nullptr, _IOLBF, 1024));
    return {owner, owner->handle};
}

// Writes "----- Logging EVENT - TIME". TIME is empty if the C library cannot convert it.
void writeTimeLine(const char* event) {
    if (!Logger::logger.shouldPrintLog(BANNER_LEVEL))
        return;
    std::array<char, 512> text{};
    std::tm local{};
    if (!Port::localTime(std::time(nullptr), local) ||
        std::strftime(text.data(), text.size(), "%a %b %d %Y %I:%M:%S %p %Z", &local) == 0)
        text.front() = '\0'; // a failed strftime leaves it unspecified
    Logger::logger.printLog(BANNER_LEVEL, "----- Logging %s - %s\n", event, text.data());
}

void writeBanner() {
    if (!Logger::logger.shouldPrintLog(BANNER_LEVEL))
        return;
    try {
        Logger::logger.printLog(BANNER_LEVEL, "Kel - Version %s\n\n", getVersionWithBuildNumber());
    } catch (...) { // out of memory: the banner is lost
        return;
    }
}

} // namespace

Logger::Logger() noexcept = default;
Logger::Logger(const Logger&) noexcept = default;
Logger& Logger::operator=(const Logger&) noexcept = default;

Logger::~Logger() {
    endLogging();
}

void Logger::startLogging() noexcept {
    const Port::CancellationDisabled cancellationGuard;
    if (loggingStarted)
        return;
    loggingStarted = true;
    nestingDepth = 0;
    stream.reset();
    detailLevel = 1;
    updateLevelBound();
    printBits = false;
    printLargeBufs = false;
    openOutput();
    readDetailLevel();
    readFlags();
    writeBanner();
    writeTimeLine("Started");
    atLineStart = true;
}

// Recomputes levelBound. Must be called after each change of the stream or the detail level.
void Logger::updateLevelBound() noexcept {
    levelBound = stream != nullptr ? rankOf(detailLevel) + 1 : 0;
}

void Logger::openOutput() noexcept {
    try {
        const std::string name = Kel_Util::trimWhitespace(Port::environment("TOR_KEL_LOGFILE"));
        if (name.empty())
            return;
        stream = openStream(name);
        updateLevelBound();
        logger.printLog(ENVIRONMENT_LEVEL, "ENVIRONMENT::TOR_KEL_LOGFILE=%.*s\n",
                        logging::maxPrecision("ENVIRONMENT::TOR_KEL_LOGFILE=\n"), name.c_str());
    } catch (...) { // out of memory: logging stays off
        return;
    }
}

void Logger::readDetailLevel() noexcept {
    const char* const text = Port::environment("TOR_KEL_LOGDETAIL");
    if (*text == '\0')
        return;
    detailLevel = numberIn(text);
    updateLevelBound();
    logger.printLog(ENVIRONMENT_LEVEL, "ENVIRONMENT::TOR_KEL_LOGDETAIL=%d\n", detailLevel);
}

void Logger::readFlags() noexcept {
    const char* const text = Port::environment("TOR_KEL_LOGFLAGS");
    if (*text == '\0')
        return;
    const auto flags = static_cast<unsigned int>(numberIn(text));
    logger.printLog(ENVIRONMENT_LEVEL, "ENVIRONMENT::TOR_KEL_LOGFLAGS=0x%08X\n", flags);
    printBits = (flags & 1U) != 0;
    if (printBits)
        logger.printLog(ENVIRONMENT_LEVEL, "      -PRINTBITS ON\n");
    printLargeBufs = (flags & 2U) != 0;
    if (printLargeBufs)
        logger.printLog(ENVIRONMENT_LEVEL, "      -PRINTLARGEBUFS ON\n");
}

void Logger::endLogging() noexcept {
    const Port::CancellationDisabled cancellationGuard;
    popAllMethods();
    writeTimeLine("Ended");
    flush();
    stream.reset(); // closes it, unless a copy shares it
    updateLevelBound();
}

void Logger::setDetailLevel(int level) noexcept {
    if (level < 0 || level > 10)
        return;
    detailLevel = level;
    updateLevelBound();
}

} // namespace KelRT
