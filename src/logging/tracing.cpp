// SPDX-License-Identifier: MIT
//
// Method entries and exits, and the stack of the methods' names.
#include "KelRT/Logger.h"
#include "logging/levels.h"

#include <cassert>

namespace KelRT {

using logging::TRACE_LEVEL;

// NOLINTNEXTLINE(cert-dcl50-cpp): the interface is printf's, and the compiler checks its calls.
void Logger::logMethodEntry(const char* name, const char* format, ...) noexcept {
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
    printLog(TRACE_LEVEL, "ENTERING %s ", name);
    if (format != nullptr)
        vprintLog(TRACE_LEVEL, format, arguments);
    printLog(TRACE_LEVEL, "\n");
    ++nestingDepth_;
    methodStack_.push(name);
}

void Logger::logMethodExit() noexcept {
    if (!beginExit())
        return;
    printLog(TRACE_LEVEL, "EXITING %s\n", methodStack_.top());
    methodStack_.pop();
}

void Logger::logMethodExit(int value) noexcept {
    if (!beginExit())
        return;
    printLog(TRACE_LEVEL, "EXITING %s -- returning %d\n", methodStack_.top(), value);
    methodStack_.pop();
}

void Logger::logMethodExit(const char* text) noexcept {
    if (text == nullptr || *text == '\0')
        return logMethodExit();
    if (!beginExit())
        return;
    printLog(TRACE_LEVEL, "EXITING %s -- returning %s\n", methodStack_.top(), text);
    methodStack_.pop();
}

void Logger::logMethodExit(const char* name, int value) noexcept {
    assert(name != nullptr && "name is not null");
    if (!shouldPrintLog(TRACE_LEVEL))
        return;
    --nestingDepth_;
    printLog(TRACE_LEVEL, "EXITING %s -- returning %d\n", name, value);
}

// True, with the indentation of the exit line set, when there is an entry to close.
bool Logger::beginExit() noexcept {
    if (!shouldPrintLog(TRACE_LEVEL) || methodStack_.empty())
        return false;
    --nestingDepth_;
    return true;
}

void Logger::popAllMethods() noexcept {
    methodStack_.clear();
}

Logger::MethodStack::MethodStack(const MethodStack& other) noexcept {
    *this = other;
}

// NOLINTNEXTLINE(cert-oop54-cpp): assigning a vector to itself changes nothing.
Logger::MethodStack& Logger::MethodStack::operator=(const MethodStack& other) noexcept {
    try {
        names_ = other.names_;
        nameless_ = other.nameless_;
    } catch (...) { // out of memory: the entries count, their names are lost
        names_.clear();
        nameless_ = other.names_.size() + other.nameless_;
    }
    return *this;
}

bool Logger::MethodStack::empty() const noexcept {
    return names_.empty() && nameless_ == 0;
}

const char* Logger::MethodStack::top() const noexcept {
    return nameless_ != 0 ? "" : names_.back().c_str();
}

void Logger::MethodStack::push(const char* name) noexcept {
    // Above a nameless entry every entry is nameless: two numbers then keep the order.
    if (nameless_ != 0) {
        ++nameless_;
        return;
    }
    try {
        names_.emplace_back(name);
    } catch (...) { // out of memory
        ++nameless_;
    }
}

void Logger::MethodStack::pop() noexcept {
    if (nameless_ != 0)
        --nameless_;
    else
        names_.pop_back();
}

void Logger::MethodStack::clear() noexcept {
    names_.clear();
    nameless_ = 0;
}

} // namespace KelRT
