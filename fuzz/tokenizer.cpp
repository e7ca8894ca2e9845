// SPDX-License-Identifier: MIT
//
// Any text and any set of delimiters in every mode, beside the model of one character at a time.
#include "KelRT/Kel_StrTok.h"

#include "input.h"
#include "models/tokenizer_model.h"

using KelRT::Kel_StrTok;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::uint64_t mode = input.value(1);
    const model::Flags flags{(mode & 1) != 0, (mode & 2) != 0, (mode & 4) != 0};
    const std::string own = input.text(static_cast<std::size_t>(mode >> 5), true);
    const char* const delimiters = (mode & 8) == 0    ? own.c_str()
                                   : (mode & 16) == 0 ? Kel_StrTok::CSV_DELIM
                                                      : Kel_StrTok::WHITE_SPACE;
    const std::string text = input.text(2000, true);
    // As long as the text and no longer, so that reading behind it is noticed.
    const std::vector<char> exact(text.c_str(), text.c_str() + text.size() + 1);

    Kel_StrTok tokenizer(exact.data(), delimiters, flags.handleQuotes, flags.toLowerCase,
                         flags.keepQuotes);
    std::vector<const char*> tokens;
    while (const char* const token = tokenizer.getNext())
        tokens.push_back(token);
    fuzz::require(tokenizer.getNext() == nullptr, "the end stays the end");
    fuzz::require(
        std::vector<std::string>(tokens.begin(), tokens.end()) ==
            model::Tokenizer(text, delimiters, delimiters == Kel_StrTok::CSV_DELIM, flags).tokens(),
        "tokens as the model cuts them");
    return 0;
}
