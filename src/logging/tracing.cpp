// SPDX-License-Identifier: MIT
//
// Logs method entries and exits, and keeps the stack of method names.
#include "KelRT/Logger.h"
#include "logging/records.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <cstring>

namespace KelRT {

using logging::maxPrecision;
using logging::TRACE_LEVEL;

// In an exit line, the name and the result together have room for this many characters. If they
// need more, a text result is truncated first, then the name. A number is never truncated.
constexpr int ROOM_FOR_NAME_AND_RESULT = maxPrecision("EXITING  -- returning \n");

// NOLINTNEXTLINE(cert-dcl50-cpp): the interface is printf's, and the compiler checks its calls.
void Logger::logMethodEntry(const char* name, const char* format, ...) noexcept {
    assert(name != nullptr && "name is not null");
    if (!shouldPrintLog(TRACE_LEVEL))
        return;
    std::va_list arguments;
    va_start(arguments, format);
    traceEntry(name, format, arguments);
    va_end(arguments);
}

void Logger::logMethodEntry(const char* name) noexcept {
    logMethodEntry(name, nullptr);
}

void Logger::traceEntry(const char* name, const char* format, std::va_list arguments) noexcept {
    assert(name != nullptr && "name is not null");
    if (!shouldPrintLog(TRACE_LEVEL))
        return;
    printLog(TRACE_LEVEL, "ENTERING %.*s ", maxPrecision("ENTERING  "), name);
    if (format != nullptr)
        vprintLog(TRACE_LEVEL, format, arguments);
    printLog(TRACE_LEVEL, "\n");
    ++nestingDepth;
    methodStack.push(name);
}

void Logger::logMethodExit() noexcept {
    if (!beginExit())
        return;
    printLog(TRACE_LEVEL, "EXITING %.*s\n", maxPrecision("EXITING \n"), methodStack.top());
    methodStack.pop();
}

void Logger::logMethodExit(int value) noexcept {
    if (!beginExit())
        return;
    writeExitLine(methodStack.top(), value);
    methodStack.pop();
}

void Logger::logMethodExit(const char* text) noexcept {
    if (text == nullptr || *text == '\0')
        return logMethodExit();
    if (!beginExit())
        return;
    const char* const name = methodStack.top();
    const auto nameLength =
        static_cast<int>(std::min<std::size_t>(std::strlen(name), ROOM_FOR_NAME_AND_RESULT));
    printLog(TRACE_LEVEL, "EXITING %.*s -- returning %.*s\n", nameLength, name,
             ROOM_FOR_NAME_AND_RESULT - nameLength, text);
    methodStack.pop();
}

void Logger::logMethodExit(const char* name, int value) noexcept {
    assert(name != nullptr && "name is not null");
    if (!shouldPrintLog(TRACE_LEVEL))
        return;
    --nestingDepth;
    writeExitLine(name, value);
}

// If tracing is active and an entry is open, decrements the depth and returns true.
bool Logger::beginExit() noexcept {
    if (!shouldPrintLog(TRACE_LEVEL) || methodStack.empty())
        return false;
    --nestingDepth;
    return true;
}

void Logger::writeExitLine(const char* name, int value) noexcept {
    const int length = std::snprintf(nullptr, 0, "%d", value);
    printLog(TRACE_LEVEL, "EXITING %.*s -- returning %d\n", ROOM_FOR_NAME_AND_RESULT - length, name,
             value);
}

void Logger::popAllMethods() noexcept {
    methodStack.clear();
}

Logger::MethodStack::MethodStack(const MethodStack& other) noexcept {
    *this = other;
}

// NOLINTNEXTLINE(cert-oop54-cpp): assigning a vector to itself changes nothing.
Logger::MethodStack& Logger::MethodStack::operator=(const MethodStack& other) noexcept {
    try {
        names = other.names;
        nameless = other.nameless;
    } catch (...) { // out of memory: the entries lose their names
        names.clear();
        nameless = other.names.size() + other.nameless;
    }
    return *this;
}

bool Logger::MethodStack::empty() const noexcept {
    return names.empty() && nameless == 0;
}

const char* Logger::MethodStack::top() const noexcept {
    assert(!empty() && "the stack is not empty");
    return nameless != 0 ? "" : names.back().c_str();
}

void Logger::MethodStack::push(const char* name) noexcept {
    // Entries above a nameless one get no names either, so it is enough to count them.
    if (nameless != 0) {
        ++nameless;
        return;
    }
    try {
        names.emplace_back(name);
    } catch (...) { // out of memory
        ++nameless;
    }
}

void Logger::MethodStack::pop() noexcept {
    assert(!empty() && "the stack is not empty");
    if (nameless != 0)
        --nameless;
    else
        names.pop_back();
}

void Logger::MethodStack::clear() noexcept {
    names.clear();
    nameless = 0;
}

} // namespace KelRT
