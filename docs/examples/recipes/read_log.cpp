// SPDX-License-Identifier: MIT
#include "KelRT/Kel_NumberUtil.h"
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/Logger.h"
#include "KelRT/MethodLogger.h"

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

using namespace KelRT;

static void traceScan() {
    MethodLogger tracer;
    tracer.setMethodName("scan");
    const unsigned char idcode[] = {0x77, 0x04, 0xA0, 0x4B};
    Logger::logger.dumpBuffer(4, "IDCODE", idcode, 32);
    unsigned char boundary[20] = {0x55, 0x1E};
    boundary[19] = 0x80;
    Logger::logger.dumpBuffer(4, "BOUNDARY", boundary, 160);
}

//! [example]
struct Dump {
    std::string title;
    std::vector<unsigned char> bytes; // byte 0 holds bit 0
};

// Returns true for a row of a dump, such as "00000000h: 4b a0 04 77". A row starts with the index
// of its lowest byte; its bytes follow, the highest first.
static bool isRow(const std::string& line) {
    return line.size() >= 10 && line.compare(8, 2, "h:") == 0 &&
           line.find_first_not_of("0123456789abcdef") == 8;
}

static void appendRow(std::vector<unsigned char>& bytes, const std::string& row) {
    std::vector<unsigned char> fallingBytes;
    Kel_StrTok cells(row.c_str() + 10, Kel_StrTok::WHITE_SPACE, false, false, false);
    while (const char* const cell = cells.getNext())
        fallingBytes.push_back(static_cast<unsigned char>(Kel_NumberUtil::hexStr2UInt(cell)));
    bytes.insert(bytes.end(), fallingBytes.rbegin(), fallingBytes.rend());
}

// Returns the dumps of a log. Skips all other lines, such as "ENTERING scan".
static std::vector<Dump> readDumps(const char* path) {
    std::vector<Dump> dumps;
    std::ifstream log(path);
    std::string line;
    for (std::string previous; std::getline(log, line); previous = line) {
        if (line.compare(0, 10, "(MSB<-LSB)") == 0)
            dumps.push_back({Kel_Util::trimWhitespace(previous), {}}); // the title may be indented
        else if (isRow(line) && !dumps.empty())
            appendRow(dumps.back().bytes, line);
    }
    return dumps;
}
//! [example]

int main() {
    Logger::logger.startLogging();
    traceScan();
    Logger::logger.endLogging();
    //! [use]
    for (const Dump& dump : readDumps("trace.log")) {
        std::printf("%s:", dump.title.c_str());
        for (const unsigned char byte : dump.bytes)
            std::printf(" %02X", byte);
        std::printf("\n");
    }
    //! [use]
}
