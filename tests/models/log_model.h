// SPDX-License-Identifier: MIT
//
// Log is a slow and obvious model of a Logger. LogFile makes the library log to a temporary file.
#pragma once

#include "KelRT/Logger.h"

#include "support/host.h"

#include <algorithm>
#include <bitset>
#include <iomanip>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace model {

/// Has the operations of a Logger under the same names, but takes texts instead of formats.
struct Log {
    std::string text;
    int level = 1;
    int depth = 0;
    bool atLineStart = true;
    bool bits = false;
    bool whole = false;
    bool exhausted = false; ///< true if the next entry gets no memory for its name
    /// The names of the open entries. A name is missing if there was no memory for it.
    std::vector<std::optional<std::string>> names;

    void setDetailLevel(int given) { level = given < 0 || given > 10 ? level : given; }
    void popAllMethods() { names.clear(); }
    void printLog(int recordLevel, const std::string& record) {
        write(recordLevel, record.substr(0, 2047)); // the longest record
    }
    void logMethodEntry(const std::string& name, const std::string& arguments = "") {
        printLog(4, "ENTERING " + name.substr(0, 2037) + " "); // 2,047 in all
        if (!arguments.empty())
            printLog(4, arguments);
        printLog(4, "\n");
        if (level < 4)
            return;
        // An entry inside one without a name has no name, either.
        const bool lost = exhausted || (!names.empty() && !names.back());
        names.push_back(lost ? std::nullopt : std::optional(name));
        ++depth;
    }
    void logMethodExit() { exitLast("", ""); }
    void logMethodExit(int value) { exitLast(" -- returning " + std::to_string(value), ""); }
    void logMethodExit(const std::string& value) {
        exitLast(value.empty() ? "" : " -- returning ", value);
    }
    void logMethodExit(const std::string& name, int value) {
        exit(name, " -- returning " + std::to_string(value), "");
    }
    /// Writes \a title as a record, unless it is empty, and then the table. Each "%%" in the title
    /// becomes "%".
    void dumpBuffer(int recordLevel, std::string title, const std::vector<unsigned char>& buffer,
                    std::size_t bitCount) {
        for (std::size_t at = 0; (at = title.find("%%", at)) != std::string::npos; ++at)
            title.erase(at, 1);
        if (!title.empty())
            printLog(recordLevel, title);
        const std::size_t perRow = bits ? 8 : 16;
        std::ostringstream table;
        table << std::hex << std::setfill('0') << "\n(MSB<-LSB)";
        for (std::size_t column = std::min(perRow, buffer.size()); column-- > 0;)
            table << (bits ? "        " : "  ") << column;
        for (std::size_t row = 0; row < buffer.size(); row += perRow) {
            table << '\n' << std::setw(8) << row << "h: ";
            if (!whole && row + perRow - 1 > 10000) {
                table << "... (To display buffers larger than 10000, enable the print large\n"
                         "buffer flag in TOR_KEL_LOGFLAGS. Set bit 1 high, where bit 0 is LSB.)";
                break;
            }
            for (std::size_t i = row + perRow; i-- > row;)
                if (i >= buffer.size())
                    table << (row == 0 ? "" : bits ? "         " : "   ");
                else if (bits)
                    table << bitsOf(buffer[i], bitCount - 8 * i) << ' ';
                else
                    table << std::setw(2) << unsigned{buffer[i]} << ' ';
        }
        write(recordLevel, table.str() + "\n");
    }

private:
    void write(int recordLevel, const std::string& piece) {
        if (recordLevel > level)
            return;
        for (int unit = 0; atLineStart && unit < depth; ++unit)
            text += "  ";
        text += piece;
        if (!piece.empty())
            atLineStart = text.back() == '\n';
    }
    void exitLast(const std::string& result, const std::string& value) {
        if (level < 4 || names.empty())
            return;
        exit(names.back().value_or(""), result, value);
        names.pop_back();
    }
    /// Writes "EXITING name", \a result and \a value. If they are too long, \a value is cut first,
    /// then the name, never \a result.
    void exit(std::string name, const std::string& result, std::string value) {
        depth -= level >= 4 ? 1 : 0;
        const std::size_t rest = std::string("EXITING \n").size() + result.size();
        while (rest + name.size() + value.size() > 2047)
            (value.empty() ? name : value).pop_back();
        printLog(4, "EXITING " + name + result + value + "\n");
    }
    /// Returns the bits of a byte as text, with blanks for those above the lowest \a count.
    static std::string bitsOf(unsigned char byte, std::size_t count) {
        const std::string digits = std::bitset<8>(byte).to_string();
        return count >= 8 ? digits : std::string(8 - count, ' ') + digits.substr(8 - count);
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
    ~LogFile() { KelRT::Logger::logger.endLogging(); } // Windows removes only closed files

    /// Returns the content of the file after the opening lines.
    [[nodiscard]] std::string text() const {
        return test_host::readWholeFile(path).substr(openingSize);
    }

private:
    test_host::TemporaryDirectory directory;
    std::string path = directory / "trace.log";
    std::size_t openingSize = 0;
};

} // namespace model
