// SPDX-License-Identifier: MIT
//
// For the tests of logging: a log of their own, and the slow model of what stands in one.
#pragma once

#include "KelRT/Logger.h"
#include "KelRT/Version.h"

#include "test_host.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace model {

constexpr const char* FILE_LINE = "ENVIRONMENT::TOR_KEL_LOGFILE=<file>\n";
constexpr const char* BANNER = "Kel - Version <version>\n\n----- Logging Started - <time>\n";
constexpr const char* ENDED = "----- Logging Ended - <time>\n";

inline void setOrUnset(const char* name, const char* value) {
    if (value != nullptr)
        test_host::setEnvironment(name, value);
    else
        test_host::unsetEnvironment(name);
}

/// Sets the logger's variables; null leaves one unset.
inline void configure(const char* file, const char* detail, const char* flags) {
    setOrUnset("TOR_KEL_LOGFILE", file);
    setOrUnset("TOR_KEL_LOGDETAIL", detail);
    setOrUnset("TOR_KEL_LOGFLAGS", flags);
}

/// Logging to a file of its own, once a process.
class LogFile {
public:
    explicit LogFile(const char* detail = nullptr, const char* flags = nullptr,
                     KelRT::Logger& logger = KelRT::Logger::logger) {
        configure(path_.c_str(), detail, flags);
        logger.startLogging();
    }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    ~LogFile() { KelRT::Logger::logger.endLogging(); } // a host may not remove an open file

    [[nodiscard]] const std::string& path() const { return path_; }

    /// What the file holds, with the texts that differ from run to run replaced by their names.
    [[nodiscard]] std::string text() const {
        std::string text = test_host::readWholeFile(path_);
        replaceFirst(text, path_, "<file>");
        replaceFirst(text, KelRT::getVersionWithBuildNumber(), "<version>");
        for (const std::string mark : {"Logging Started - ", "Logging Ended - "})
            for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at + 1))
                maskTime(text, at + mark.size());
        return text;
    }

    /// Ends logging and gives the whole log.
    [[nodiscard]] std::string finish() const {
        KelRT::Logger::logger.endLogging();
        return text();
    }

private:
    /// Replaces the time at \a from, up to the end of the line, if it has the form of one.
    static void maskTime(std::string& text, std::size_t from) {
        std::string form = text.substr(from, text.find('\n', from) - from);
        const std::size_t length = form.size();
        for (char& c : form)
            c = std::isdigit(c) != 0   ? '9'
                : std::isupper(c) != 0 ? 'A'
                : std::islower(c) != 0 ? 'a'
                                       : c;
        if (form.rfind("Aaa Aaa 99 9999 99:99:99 AA ", 0) == 0 && length > 28)
            text.replace(from, length, "<time>");
    }
    static void replaceFirst(std::string& text, const std::string& from, const char* to) {
        if (const auto position = text.find(from); position != std::string::npos)
            text.replace(position, from.size(), to);
    }

    test_host::TemporaryDirectory directory_;
    std::string path_ = directory_ / "trace.log";
};

/// What a Logger with a stream writes, one piece at a time and character by character.
struct Log {
    std::string text;
    int level = 1;
    int depth = 0;
    bool atLineStart = true;
    bool bits = false;
    bool whole = false;
    std::vector<std::string> names;

    void record(int recordLevel, const std::string& piece) {
        if (recordLevel > level)
            return;
        if (atLineStart)
            for (int unit = 0; unit < depth; ++unit)
                text += "  ";
        text += piece.substr(0, 2047);
        if (!piece.empty())
            atLineStart = text.back() == '\n';
    }
    void entry(const std::string& name, const std::string& arguments) {
        if (level < 4)
            return;
        record(4, "ENTERING " + name + " ");
        if (!arguments.empty())
            record(4, arguments);
        record(4, "\n");
        ++depth;
        names.push_back(name);
    }
    void exit(const std::string& result) {
        if (level < 4 || names.empty())
            return;
        --depth;
        record(4, "EXITING " + names.back() + result + "\n");
        names.pop_back();
    }
    void exitByName(const std::string& name, const std::string& result) {
        if (level < 4)
            return;
        --depth;
        record(4, "EXITING " + name + result + "\n");
    }
    void dump(int recordLevel, const std::string& title, const std::vector<unsigned char>& buffer,
              std::uint64_t bitCount);

private:
    template <typename Value>
    void piece(int recordLevel, const char* format, Value value) {
        std::array<char, 64> formatted{};
        static_cast<void>(std::snprintf(formatted.data(), formatted.size(), format, value));
        record(recordLevel, formatted.data());
    }
    void byte(int recordLevel, unsigned char value, std::uint64_t index, std::uint64_t bitCount) {
        if (!bits)
            return piece(recordLevel, "%02x ", value);
        for (unsigned k = 8; k-- > 0;)
            record(recordLevel, 8 * index + k >= bitCount ? " "
                                : (value >> k & 1) != 0   ? "1"
                                                          : "0");
        record(recordLevel, " ");
    }
};

/// The title is the text that it is expected to show; an empty one writes no record.
inline void Log::dump(int recordLevel, const std::string& title,
                      const std::vector<unsigned char>& buffer, std::uint64_t bitCount) {
    const std::uint64_t bytes = bitCount / 8 + (bitCount % 8 != 0 ? 1 : 0);
    const std::uint64_t perRow = bits ? 8 : 16;
    if (!title.empty())
        record(recordLevel, title);
    record(recordLevel, "\n(MSB<-LSB)");
    for (unsigned column = 16; column-- > 0;)
        if (column < bytes && column < perRow)
            piece(recordLevel, bits ? "        %x" : "  %x", column);
    for (std::uint64_t row = 0; row < bytes; row += perRow) {
        piece(recordLevel, "\n%08xh: ", static_cast<unsigned>(row));
        if (!whole && row + perRow - 1 > 10000) {
            piece(recordLevel, "... (To display buffers larger than %u, ", 10000U);
            record(recordLevel,
                   "enable the print large\nbuffer flag in TOR_KEL_LOGFLAGS. Set bit 1 "
                   "high, where bit 0 is LSB.)");
            break;
        }
        for (std::uint64_t i = row + perRow; i-- > row;)
            if (i < bytes)
                byte(recordLevel, buffer[i], i, bitCount);
            else if (i >= perRow)
                record(recordLevel, bits ? "         " : "   ");
    }
    record(recordLevel, "\n");
}

} // namespace model
