// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

using namespace KelRT;

static void show(const char* what, Kel_StrTok& tokens) {
    std::printf("%-13s", what);
    while (const char* const token = tokens.getNext())
        std::printf(" [%s]", token);
    std::printf("\n");
}

int main(int argc, char** argv) {
    // With CSV_DELIM, every comma separates two columns, which may be empty.
    Kel_StrTok columns("TDI,,\"input, serial\",", Kel_StrTok::CSV_DELIM, true, false, true);
    show("columns", columns);

    // With other delimiters, a run of them is one separator.
    Kel_StrTok words("  Shift  IR \t 4 ", Kel_StrTok::WHITE_SPACE, false, true, false);
    show("words", words);

    // A line from a file that was written on Windows ends in '\r'.
    std::string line = "  \"a value\" \r";
    line = Kel_Util::trimWhitespace(Kel_Util::stripEndingCR(line));
    std::printf("line          %s\n", Kel_Util::unQuote(line).c_str());

    // Finds the value of a setting. Names are case-insensitive, and the first match counts.
    std::vector<std::string> settings = {"mode=fast", "PORT=2", "port=3"};
    std::printf("port          %s\n", Kel_Util::findKey(settings, "Port").c_str());
    const std::string none = Kel_Util::findKey(static_cast<std::uint32_t>(argc), argv, "port");
    std::printf("on the command line it is %s\n", none.empty() ? "absent or empty" : none.c_str());
}
//! [example]
