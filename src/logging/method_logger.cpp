// SPDX-License-Identifier: MIT
#include "KelRT/MethodLogger.h"

#include "KelRT/Logger.h"

#include <cstdio>
#include <utility>

namespace KelRT {
namespace {

// Assigns `source` to `target`. If memory is exhausted, `target` becomes empty.
template <typename Text>
void copyText(std::string& target, const Text& source) noexcept {
    try {
        target = source;
    } catch (...) {
        target.clear();
    }
}

} // namespace

MethodLogger::MethodLogger() noexcept = default;

MethodLogger::MethodLogger(const MethodLogger& other) noexcept {
    *this = other;
}

// NOLINTNEXTLINE(cert-oop54-cpp): assigning a string to itself changes nothing.
MethodLogger& MethodLogger::operator=(const MethodLogger& other) noexcept {
    copyText(methodName, other.methodName);
    copyText(returnText, other.returnText);
    return *this;
}

MethodLogger::~MethodLogger() {
    Logger::logger.logMethodExit(returnText.c_str());
}

void MethodLogger::setMethodName(std::string name) noexcept {
    methodName = std::move(name);
    Logger::logger.logMethodEntry(methodName.c_str());
}

// NOLINTBEGIN(performance-unnecessary-value-param): the interface takes strings by value.
void MethodLogger::addArgument(std::string /*name*/, std::string /*value*/) noexcept {}
void MethodLogger::addArgument(std::string /*name*/, unsigned int /*value*/) noexcept {}
// NOLINTEND(performance-unnecessary-value-param)

unsigned int MethodLogger::setReturnStatus(unsigned int status) noexcept {
    constexpr unsigned int FAILURE_BIT = 0x80000000U;
    if ((status & FAILURE_BIT) == 0) {
        copyText(returnText, "KEL_SUCCESS");
        return status;
    }
    char text[sizeof "KEL_FAILURE, ERROR CODE: FFFF"];
    static_cast<void>(
        std::snprintf(text, sizeof text, "KEL_FAILURE, ERROR CODE: %X", status & 0xFFFFU));
    copyText(returnText, text);
    return status;
}

bool MethodLogger::setReturn(bool value) noexcept {
    copyText(returnText, value ? "true" : "false");
    return value;
}

char* MethodLogger::setReturn(char* text) noexcept {
    setReturn(static_cast<const char*>(text));
    return text;
}

const char* MethodLogger::setReturn(const char* text) noexcept {
    copyText(returnText, text != nullptr ? text : "0 (NULL)");
    return text;
}

int MethodLogger::setReturn(unsigned int value) noexcept {
    const auto shown = static_cast<int>(value);
    copyText(returnText, std::to_string(shown)); // 11 characters or fewer need no allocation
    return shown;
}

} // namespace KelRT
