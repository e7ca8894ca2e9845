// SPDX-License-Identifier: MIT
//
// Log is a slow, obvious Logger, which writes one piece at a time. LogFile is the log of a test.
#pragma once

#include "KelRT/Logger.h"

#include "support/host.h"

#include <array>
#include <cstdio>
#include <string>
#include <vector>

namespace model {

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
        for (int unit = 0; atLineStart && unit < depth; ++unit)
            text += "  ";
        text += piece.substr(0, 2047); // the longest record
        if (!piece.empty())
            atLineStart = text.back() == '\n';
    }
    void entry(const std::string& name, const std::string& arguments) {
        record(4, "ENTERING " + name.substr(0, 2037) + " "); // 2,047 in all
        if (!arguments.empty())
            record(4, arguments);
        record(4, "\n");
        if (level >= 4)
            names.push_back(name);
        depth += level >= 4 ? 1 : 0;
    }
    /// Writes "EXITING name", \a result and \a value. If they are too long, \a value is cut first,
    /// then the name, never \a result.
    void exit(const std::string& result, const std::string& value = "") {
        if (level < 4 || names.empty())
            return;
        exitByName(names.back(), result, value);
        names.pop_back();
    }
    void exitByName(std::string name, const std::string& result, std::string value = "") {
        depth -= level >= 4 ? 1 : 0;
        const std::string::size_type rest = std::string("EXITING \n").size() + result.size();
        while (rest + name.size() + value.size() > 2047)
            (value.empty() ? name : value).pop_back();
        record(4, "EXITING " + name + result + value + "\n");
    }
    /// Writes \a title as a record, unless it is empty, and then the table.
    void dump(const std::string& title, const std::vector<unsigned char>& buffer,
              std::uint64_t bitCount) {
        const std::uint64_t bytes = bitCount / 8 + (bitCount % 8 != 0 ? 1 : 0);
        const std::uint64_t perRow = bits ? 8 : 16;
        if (!title.empty())
            record(1, title);
        record(1, "\n(MSB<-LSB)");
        for (unsigned column = 16; column-- > 0;)
            if (column < bytes && column < perRow)
                piece(bits ? "        %x" : "  %x", column);
        for (std::uint64_t row = 0; row < bytes; row += perRow) {
            piece("\n%08xh: ", static_cast<unsigned>(row));
            if (!whole && row + perRow - 1 > 10000) {
                record(1, "... (To display buffers larger than 10000, enable the print large\n"
                          "buffer flag in TOR_KEL_LOGFLAGS. Set bit 1 high, where bit 0 is LSB.)");
                break;
            }
            for (std::uint64_t i = row + perRow; i-- > row;)
                if (i < bytes)
                    byte(buffer.at(static_cast<std::size_t>(i)), i, bitCount);
                else if (i >= perRow)
                    record(1, bits ? "         " : "   ");
        }
        record(1, "\n");
    }

private:
    void piece(const char* format, unsigned value) {
        std::array<char, 64> formatted{};
        static_cast<void>(std::snprintf(formatted.data(), formatted.size(), format, value));
        record(1, formatted.data());
    }
    void byte(unsigned char value, std::uint64_t index, std::uint64_t bitCount) {
        if (!bits)
            return piece("%02x ", value);
        for (unsigned k = 8; k-- > 0;)
            record(1, 8 * index + k >= bitCount ? " " : (value >> k & 1) != 0 ? "1" : "0");
        record(1, " ");
    }
};

/// Logs to a new file. A process can start logging only once.
class LogFile {
public:
    LogFile() {
        test_host::setEnvironment("TOR_KEL_LOGFILE", path);
        test_host::setEnvironment("TOR_KEL_LOGDETAIL", "");
        test_host::setEnvironment("TOR_KEL_LOGFLAGS", "");
        KelRT::Logger::logger.startLogging();
        KelRT::Logger::logger.flush();
        openingSize = test_host::readWholeFile(path).size();
    }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    ~LogFile() { KelRT::Logger::logger.endLogging(); } // Windows does not remove open files

    /// Returns the content of the file after the opening lines.
    [[nodiscard]] std::string text() const {
        return test_host::readWholeFile(path).substr(openingSize);
    }
    /// Ends logging at level 1, which writes no closing line, and returns text().
    [[nodiscard]] std::string finish() const {
        KelRT::Logger::logger.setDetailLevel(1);
        KelRT::Logger::logger.endLogging();
        return text();
    }

private:
    test_host::TemporaryDirectory directory;
    std::string path = directory / "trace.log";
    std::size_t openingSize = 0;
};

} // namespace model
