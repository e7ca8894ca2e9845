// SPDX-License-Identifier: MIT
//
// Holds what dumps.cpp and dump_bits.cpp share. They are two programs, since a process cannot
// change the form of its dumps after logging has started.
#pragma once

#include "log_file.h"
#include "row.h"

#include <algorithm>
#include <sstream>
#include <string>

namespace bench {

/// Returns the bytes that \a table shows. A line has an address, a colon and the bytes; two blanks
/// and a column of characters may follow.
/// \param digits    the number of digits of a byte: 2 hexadecimal or 8 binary
/// \param lastFirst true if the rightmost byte of a line is the first in memory
inline std::string bytesOf(const std::string& table, unsigned digits, bool lastFirst) {
    std::string bytes;
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos)
            continue;
        std::erase(line.erase(std::min(line.find("  ", colon + 2), line.size())), ' ');
        std::string row;
        for (std::size_t i = line.find(':') + 1; i < line.size(); i += digits)
            row +=
                static_cast<char>(std::stoi(line.substr(i, digits), nullptr, digits == 2 ? 16 : 2));
        if (lastFirst)
            std::reverse(row.begin(), row.end());
        bytes += row;
    }
    return bytes;
}

/// Returns the contender that dumps \a bytes with the library.
inline auto ownDump(const LogFile& file, const Bytes& bytes, unsigned digits) {
    return Writer{file,
                  [&bytes](const LogFile&) {
                      KelRT::Logger::logger.dumpBuffer(1, nullptr, bytes.data(),
                                                       static_cast<unsigned>(8 * bytes.size()));
                  },
                  [digits](const std::string& table) { return bytesOf(table, digits, true); }};
}

/// Returns the contender for the limit: it writes the finished text of the library's dump, in large
/// pieces.
template <typename Own>
void addLimit(Row& row, const LogDirectory& directory, Own ready, const Bytes& bytes) {
    static constexpr std::size_t PIECE = 64 << 10;
    ready.prepare();
    ready.run();
    if (ready.result() != textOf(bytes))
        LogDirectory::fail("a dump of other bytes");
    row.limit(Writer{LogFile(directory.file("limit.log")),
                     [text = ready.file.text()](const LogFile& file) {
                         for (std::size_t i = 0; i < text.size(); i += PIECE)
                             file.write(&text[i], std::min(PIECE, text.size() - i));
                     },
                     [](const std::string& table) { return table; }});
}

} // namespace bench
