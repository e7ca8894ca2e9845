// SPDX-License-Identifier: MIT
//
// Measures how texts are split into tokens, including the construction of the tokenizer. The
// library copies the text, and so must a caller of strtok_r; Abseil and Boost read it in place. The
// limit is the time of the copy alone. strtok_r skips empty tokens, so it is not compared with CSV.
#include "peers.h"
#include "row.h"

#include "KelRT/Kel_StrTok.h"

#include <cstring>
#include <string_view>

using namespace bench;

namespace {

struct Text {
    const char* work;
    const char* size;
    std::string text;
    const char* delimiters; // this pointer selects the mode of the library
};

/// Returns a text of tokens of \a least to \a most characters, each followed by 1 to
/// \a mostDelimiters delimiters.
std::string randomText(std::size_t size, std::size_t least, std::size_t most,
                       std::string_view delimiters, std::size_t mostDelimiters) {
    std::mt19937_64 random(size);
    std::string text;
    while (text.size() < size) {
        for (std::size_t i = least + random() % (most - least + 1); i-- > 0;)
            text += static_cast<char>('a' + random() % 26);
        for (std::size_t i = 1 + random() % mostDelimiters; i-- > 0;)
            text += delimiters[random() % delimiters.size()];
    }
    return text + "end"; // tokenizers treat a delimiter at the end in different ways
}

// A contender that takes all tokens and looks at the start of each.
template <typename Tokens>
struct Taking {
    Tokens tokens;
    void run() {
        tokens.each([](std::string_view token) { benchmark::DoNotOptimize(token.data()); });
    }
    std::string result() {
        std::string all;
        tokens.each([&](std::string_view token) { all.append(token) += '\n'; });
        return all;
    }
};

struct KelUtil {
    std::string text;
    const char* delimiters;
    template <typename Visit>
    void each(Visit visit) const {
        KelRT::Kel_StrTok tokenizer(text.c_str(), delimiters, false, false, false);
        while (const char* const token = tokenizer.getNext())
            visit(token);
    }
};

struct StrTokR {
    std::string text;
    const char* delimiters;
    template <typename Visit>
    void each(Visit visit) const {
        std::string copy = text;
        char* rest = nullptr;
        for (const char* token = strtok_r(copy.data(), delimiters, &rest); token != nullptr;
             token = strtok_r(nullptr, delimiters, &rest))
            visit(token);
    }
};

template <typename Peer>
struct PeerTokens {
    std::string text;
    const char* delimiters;
    bool keepEmpty;
    template <typename Visit>
    void each(Visit visit) const {
        Peer::eachToken(text, delimiters, keepEmpty, visit);
    }
};

void rows(const Text& text, bool isCsv) {
    const KelUtil tokenizer{text.text, text.delimiters};
    std::uint64_t tokens = 0;
    tokenizer.each([&](std::string_view) { ++tokens; });
    Row row("tokens", text.work, text.size, tokens);
    row.add("KelUtil", Taking<KelUtil>{tokenizer});
    const auto contender = [&](auto peer) {
        using Tokens = PeerTokens<decltype(peer)>;
        return Taking<Tokens>{Tokens{text.text, text.delimiters, isCsv}};
    };
    row.addPeer<peers::Absl>("absl::StrSplit", contender);
    if (!isCsv)
        row.add("strtok_r", Taking<StrTokR>{{text.text, text.delimiters}});
    row.addPeer<peers::Boost>("boost::tokenizer", contender);
    row.limit(Contender{std::pair{text.text, std::string(text.text.size() + 1, ' ')},
                        [](auto& own) {
                            const char* const from = own.first.c_str();
                            std::memcpy(own.second.data(), from, std::strlen(from) + 1);
                            benchmark::DoNotOptimize(own.second.data());
                        },
                        [](auto& own) { return own.second; }});
}

} // namespace

int main(int argc, char** argv) {
    using KelRT::Kel_StrTok;
    constexpr std::size_t MIB = 1 << 20;
    rows({"CSV", "1 MiB", randomText(MIB, 0, 10, ",", 1), Kel_StrTok::CSV_DELIM}, true);
    rows({"words", "1 MiB", randomText(MIB, 1, 10, Kel_StrTok::WHITE_SPACE, 2),
          Kel_StrTok::WHITE_SPACE},
         false);
    rows({"search path", "2 KiB", randomText(2048, 12, 48, ";", 1), ";"}, false);
    return runAll(argc, argv);
}
