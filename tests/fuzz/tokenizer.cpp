// SPDX-License-Identifier: MIT
//
// Compares the tokens of any text, with any set of delimiters and in every mode, with those of a
// model that reads one character at a time.
#include "KelRT/Kel_StrTok.h"

#include "input.h"
#include "models/tokenizer_model.h"

using KelRT::Kel_StrTok;

namespace {

const std::string ALPHABETS[] = {"ab,;",
                                 "aZ\",",
                                 "\" ;x",
                                 "\n\t \v\r\b\fQ\"",
                                 ",,,,,,,,,,a",
                                 "abcdefghijklmnopqrstuvwxyz,",
                                 "\x80\xE4\xFF\x01,\"A"};
const char* const SETS[] = {
    Kel_StrTok::CSV_DELIM, Kel_StrTok::WHITE_SPACE, ",", ";", "\xE4,\xFF", "\"", "",
    "zyxwvutsrqponm"};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::uint64_t mode = input.value(1);
    const model::Flags flags{(mode & 1) != 0, (mode & 2) != 0, (mode & 4) != 0};
    const std::string own =
        input.text(static_cast<std::size_t>(mode >> 5), "abcdefghijklmnopqrstuvwxyz,;");
    const char* const delimiters = (mode & 24) == 0 ? own.c_str() : input.oneOf(SETS);
    const std::string text = input.text(2000, input.oneOf(ALPHABETS));
    // This copy is exactly as long as the text, so the sanitizer sees a read past its NUL.
    const std::vector<char> exact(text.c_str(), text.c_str() + text.size() + 1);

    Kel_StrTok tokenizer(exact.data(), delimiters, flags.handleQuotes, flags.toLowerCase,
                         flags.keepQuotes);
    std::vector<const char*> tokens;
    while (const char* const token = tokenizer.getNext())
        tokens.push_back(token);
    fuzz::require(tokenizer.getNext() == nullptr, "getNext stays null at the end");
    fuzz::requireEqual(std::vector<std::string>(tokens.begin(), tokens.end()),
                       model::tokens(text, delimiters, delimiters == Kel_StrTok::CSV_DELIM, flags),
                       "the tokens");
    return 0;
}
