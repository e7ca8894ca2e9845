// SPDX-License-Identifier: MIT
//
// Makes the calls of lines "CALL => RESULT": the examples in the comments of the public headers,
// and further cases in the folder cases. From each line of NAME.h or NAME.txt, examples.cmake
// writes a class with a member function that makes the call. The base class, NAMEExample below,
// supplies the arguments that CALL leaves out.
//
// The examples of versions do not run here, nor do those of files, whose paths need a fake host.
#include "KelRT/Kel_ByteBuffer.h"
#include "KelRT/Kel_Number.h"
#include "KelRT/Kel_NumberUtil.h"
#include "KelRT/Kel_StrTok.h"
#include "KelRT/Kel_Util.h"
#include "KelRT/MethodLogger.h"
#include "KelRT/NumberValue.h"

#include "models/log_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

using namespace KelRT;
using namespace std::string_literals;
using Text = std::string;
using Texts = std::vector<Text>;

namespace {

Text out; // the output parameter of all conversions to text

/// Holds a result that is already in the form of the examples, so shown() leaves it unchanged.
struct AsItIs {
    Text text;
};

Text formatted(const char* format, unsigned long long number) {
    char text[32];
    static_cast<void>(std::snprintf(text, sizeof text, format, number));
    return text;
}

Text contentOf(Kel_ByteBuffer& buffer) {
    return {buffer.ptr(), static_cast<std::size_t>(buffer.getSize())};
}

// These overloads write a result in the form of `like`, the expected text: 18 or 0x12, for example.
Text shown(const AsItIs& result, const Text&) {
    return result.text;
}
Text shown(char digit, const Text&) {
    return {'\'', digit, '\''};
}
Text shown(std::unsigned_integral auto number, const Text& like) {
    return formatted(like.compare(0, 2, "0x") == 0 ? "0x%llX" : "%llu", number);
}
/// Writes bytes as a string literal, in hexadecimal ("B0 00") or as names ("b0 x"), as \a like has
/// them. The name "x" stands for a new byte. It is 0, since insertBytes() below clears it.
Text shown(const Text& bytes, const Text& like) {
    if (like[0] == '"')
        return testing::PrintToString(bytes);
    const bool byName = like[0] == 'b';
    Text text;
    for (const char byte : bytes)
        text += formatted(byName && byte == 0 ? "x "
                          : byName            ? "%02llx "
                                              : "%02llX ",
                          static_cast<unsigned char>(byte));
    return text.substr(0, text.size() - 1);
}
Text shown(Kel_ByteBuffer* made, const Text& like) {
    return shown(contentOf(*std::unique_ptr<Kel_ByteBuffer>(made)), like);
}

struct Kel_ByteBufferExample : Kel_ByteBuffer {
    Kel_ByteBuffer target;

    explicit Kel_ByteBufferExample(const Text& bytes = "")
        : Kel_ByteBuffer(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), 0, 0) {
    }
    /// Also clears the new bytes, which the library does not do.
    void insertBytes(std::uint64_t atByte, std::uint64_t byteCount) {
        const std::uint64_t gap = std::min(atByte, getSize());
        Kel_ByteBuffer::insertBytes(atByte, byteCount);
        std::fill_n(uPtr() + gap, byteCount, std::uint8_t{0});
    }
    Text result() { return contentOf(target.getSize() == 0 ? *this : target); }
};

struct Kel_NumberExample : Kel_Number {
    explicit Kel_NumberExample(std::uint64_t width = 16, const Text& value = "")
        : Kel_Number(width) {
        Kel_Number::set(value.compare(0, 2, "0x") == 0 ? 'x' : 'd', value.empty() ? "-1" : value);
    }
    AsItIs set(char radix, const Text& text) {
        const char* const accepted = Kel_Number::set(radix, text) ? ", true" : ", false";
        return {(radix == 'S' ? "0x" + toString('x') : toString('d')) + accepted};
    }
    AsItIs result() const { return {toString('d')}; }
};

struct NumberValueExample {
    Kel_NumberExample number;
    Kel_ByteBufferExample buffer{"\x21\x43"};
    static constexpr int value = 7; // the integer stays 7 if the number does not fit

    explicit NumberValueExample(std::uint64_t bitCount, const Text& start)
        : number(bitCount, start) {}
    static std::uint64_t bits2Number(Kel_ByteBuffer& from, std::uint64_t at, Kel_Number& to) {
        KelRT::bits2Number(from, at, to);
        return std::stoull(to.toString('u'));
    }
    static Text number2Bits(const Kel_Number& from, Kel_ByteBuffer& to, std::uint64_t at) {
        to.setBitsLL(0, 16, 0);
        KelRT::number2Bits(from, to, at);
        return contentOf(to);
    }
    static AsItIs uLL2Number(std::uint64_t from, Kel_Number& to) {
        KelRT::uLL2Number(from, to);
        return {to.toString('u')};
    }
    static AsItIs number2ULL(const Kel_Number& from, std::uint64_t to) {
        const bool fits = KelRT::number2ULL(from, to);
        return {(fits ? "true, " : "false, ") + std::to_string(to)};
    }
    static AsItIs number2LL(const Kel_Number& from, std::int64_t to) {
        const bool fits = KelRT::number2LL(from, to);
        return {(fits ? "true, " : "false, ") + std::to_string(to)};
    }
    AsItIs result() const { return number.result(); }
};

struct Kel_NumberUtilExample : Kel_NumberUtil {
    static constexpr unsigned char data[] = {0x34, 0x12};
    unsigned char byte = 0xFF;

    static AsItIs getLongLongBitsDebug(const unsigned char* bytes, int firstBit, int lastBit) {
        testing::internal::CaptureStdout();
        EXPECT_EQ(Kel_NumberUtil::getLongLongBitsDebug(bytes, firstBit, lastBit),
                  getLongLongBits(bytes, firstBit, lastBit));
        return {"prints " + testing::PrintToString(testing::internal::GetCapturedStdout())};
    }
    using Kel_NumberUtil::bin2ReverseBinStr;
    static Text bin2ReverseBinStr(std::initializer_list<unsigned char> array, unsigned bitCount,
                                  Text& text) {
        return bin2ReverseBinStr(array.begin(), bitCount, text);
    }
    using Kel_NumberUtil::reverseBinStr2Bin;
    void reverseBinStr2Bin(const char* text) { reverseBinStr2Bin(text, &byte); }
    static Text reverseStr(const char* text, unsigned length) {
        char mirror[8];
        Kel_NumberUtil::reverseStr(text, length, mirror);
        return mirror;
    }
    static std::uint64_t hexStr2ULL(Text text) { return Kel_NumberUtil::hexStr2ULL(text); }
    AsItIs result() const { return {formatted("{0x%02llX}", byte)}; }
};

struct Kel_StrTokExample {
    enum Flags : std::uint8_t { none, quotes_handled, lower_case, handled_and_kept };
    const char* const CSV_DELIM = Kel_StrTok::CSV_DELIM;
    const char* const WHITE_SPACE = Kel_StrTok::WHITE_SPACE;
    const char* const any = CSV_DELIM;

    static AsItIs tokens(const char* text, const char* delimiters, Flags flags = none) {
        const bool isEmpty = text != nullptr && text == "(empty)"s;
        Kel_StrTok tokenizer(isEmpty ? "" : text, delimiters,
                             flags == quotes_handled || flags == handled_and_kept,
                             flags == lower_case, flags == handled_and_kept);
        Text tokens;
        while (const char* const token = tokenizer.getNext())
            tokens.append(tokens.empty() ? "" : " | ").append(*token == '\0' ? "(empty)" : token);
        return {tokens.empty() ? "none" : tokens};
    }
};

// If Kel_Util has two overloads of a function, both are called and must agree.
struct Kel_UtilExample : Kel_Util {
    static AsItIs sign(int ofTexts, int ofStrings) {
        EXPECT_EQ(ofTexts < 0, ofStrings < 0);
        EXPECT_EQ(ofTexts > 0, ofStrings > 0);
        return {ofStrings < 0 ? "negative" : ofStrings > 0 ? "positive" : "0"};
    }
    static AsItIs stricmp(const Text& a, const Text& b) {
        return sign(Kel_Util::stricmp(a.c_str(), b.c_str()), Kel_Util::stricmp(a, b));
    }
    static AsItIs strnicmp(const Text& a, const Text& b, std::uint64_t count) {
        return sign(Kel_Util::strnicmp(a.c_str(), b.c_str(), count),
                    Kel_Util::strnicmp(a, b, count));
    }
    static Text stripEndingCR(Text text) { return Kel_Util::stripEndingCR(text); }
    static Text unQuote(Text text) {
        Texts texts{"", text};
        Kel_Util::unQuote(texts);
        EXPECT_EQ(texts, (Texts{"", Kel_Util::unQuote(text)}));
        return text;
    }
    static Text findKey(Texts entries, const Text& key) {
        std::vector<char*> argv;
        for (Text& entry : entries)
            argv.push_back(entry.data());
        Text value = Kel_Util::findKey(entries, key);
        EXPECT_EQ(Kel_Util::findKey(static_cast<unsigned>(argv.size()), argv.data(), key),
                  value.c_str()); // an element of argv ends at its NUL
        return value;
    }
};

/// Returns what was logged since the last call, without white space at its ends.
Text newlyLogged() {
    static const model::LogFile log;
    static std::size_t seen = 0;
    Logger::logger.setDetailLevel(4);
    Logger::logger.flush();
    const Text lines = log.text().substr(seen);
    seen += lines.size();
    return Kel_Util::trimWhitespace(lines);
}

struct LoggerExample {
    LoggerExample() { newlyLogged(); }
    static void logMethodEntry(auto... parts) { Logger::logger.logMethodEntry(parts...); }
    static void logMethodExit(auto result) { Logger::logger.logMethodExit(result); }
    static AsItIs result() { return {newlyLogged()}; }
};

struct MethodLoggerExample : MethodLogger {
    MethodLoggerExample() {
        newlyLogged();
        setMethodName("f");
    }
    void setReturnStatus(unsigned status) { MethodLogger::setReturnStatus(status); }
    void setReturn(auto value) { MethodLogger::setReturn(value); }
    AsItIs result() const {
        static_cast<void>(MethodLogger(*this)); // its destructor writes the exit line
        const Text line = newlyLogged();
        const std::size_t at = line.find("-- returning ");
        return {at == Text::npos ? "no result on the exit line" : line.substr(at + 13)};
    }
};

template <typename Example>
Text resultOf(const Text& like) {
    Example example;
    if constexpr (std::is_void_v<decltype(example.call())>) {
        example.call();
        return shown(example.result(), like);
    } else {
        return shown(example.call(), like);
    }
}

/// Expects the result \a expected. If the call throws, the result is `throws "MESSAGE"`, or
/// `throws "MESSAGE", no output` if the output parameter is empty then.
void expectExample(const char* line, const char* expected, Text (*run)(const Text& like)) {
    out = "left";
    Text result;
    try {
        result = run(expected);
    } catch (const std::logic_error& error) {
        result = "throws \""s.append(error.what()).append(out.empty() ? "\", no output" : "\"");
    }
    EXPECT_EQ(result, expected) << line;
}

TEST(Examples, CallsGiveTheResultsBesideThem) {
#include "examples.inc"
}

} // namespace
