// SPDX-License-Identifier: MIT
//! [example]
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

using namespace KelRT;

static bool hasOpenQuote(const std::string& column) {
    return std::count(column.begin(), column.end(), '"') % 2 != 0;
}

// Removes the enclosing quotes, and turns each pair of quotes between them into one quote.
static void unQuote(std::string& column) {
    Kel_Util::unQuote(column);
    for (std::size_t at = 0; (at = column.find("\"\"", at)) != std::string::npos; ++at)
        column.erase(at, 1);
}

// Returns the columns of one record. The tokenizer does not understand doubled quotes, so this
// turns its quote handling off: it splits at every comma. Pieces are joined while a quote is open.
static std::vector<std::string> columnsOf(const std::string& record) {
    std::vector<std::string> columns;
    Kel_StrTok pieces(record.c_str(), Kel_StrTok::CSV_DELIM, false, false, false);
    while (const char* const piece = pieces.getNext()) {
        if (!columns.empty() && hasOpenQuote(columns.back()))
            columns.back().append(",").append(piece);
        else
            columns.emplace_back(piece);
    }
    std::for_each(columns.begin(), columns.end(), unQuote);
    return columns;
}

int main() {
    for (const std::string& column : columnsOf(R"(TDI,,"input, serial","the ""data"" pin",)"))
        std::printf("[%s]\n", column.c_str());
}
//! [example]
