// SPDX-License-Identifier: MIT
//
// Runs lines of the form "CALL => RESULT": the examples in the comments of the public headers, and
// further cases in the folder cases. CALL may begin with the object that it is made on, as in
// "21 43, getBitsLL(4, 8)". The examples of versions do not run here, nor do those of files, whose
// paths need a fake host.
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
#include <functional>
#include <map>
#include <memory>
#include <regex>
#include <string>
#include <vector>

using namespace KelRT;
using Util = Kel_NumberUtil;
using Text = std::string;
using Texts = std::vector<Text>;

namespace {

/// Returns the first group of every match.
Texts allOf(const Text& text, const char* pattern) {
    const std::regex expression(pattern);
    Texts found;
    std::sregex_iterator match(text.begin(), text.end(), expression);
    for (; match != std::sregex_iterator(); ++match)
        found.push_back(match->str(1));
    return found;
}

/// A backslash followed by LETTERS[i] stands for ESCAPED[i], whose last element is NUL.
constexpr char ESCAPED[] = "\n\r\t\b\f\"\\";
constexpr char LETTERS[] = "nrtbf\"\\0";

/// Returns the text that a literal stands for.
Text unquoted(const Text& literal) {
    Text text;
    for (std::size_t i = 1; i + 1 < literal.size(); ++i)
        if (literal[i] != '\\') {
            text += literal[i];
        } else if (literal[++i] == 'x') { // two digits follow
            text += static_cast<char>(std::stoul(literal.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            text += ESCAPED[Text(LETTERS).find(literal[i])];
        }
    return text;
}

/// Holds the parts of an example as they are written.
struct Example {
    Text object;
    Text function;
    Texts arguments;

    Text text(std::size_t i) const { return unquoted(arguments.at(i)); }
    /// Returns argument \a i as text, or null for "null".
    const char* chars(std::size_t i) const {
        static Text kept;
        kept = arguments.at(i) == "null" ? "" : text(i);
        return arguments.at(i) == "null" ? nullptr : kept.c_str();
    }
    std::uint64_t number(std::size_t i) const { return std::stoull(arguments.at(i), nullptr, 0); }
    std::uint32_t u32(std::size_t i) const { return static_cast<std::uint32_t>(number(i)); }
    int index(std::size_t i) const { return static_cast<int>(number(i)); }
    double real(std::size_t i) const { return std::stod(arguments.at(i)); }
    char character(std::size_t i) const { return arguments.at(i)[1]; }
    bool hasText(std::size_t i) const { return arguments.at(i)[0] == '"'; }
};

struct AsItIs {
    Text text;
};

// These overloads write a result as the examples do.
Text shown(const AsItIs& result) {
    return result.text;
}
template <typename Unsigned>
Text shown(Unsigned number) {
    return std::to_string(number);
}
Text shown(char digit) {
    return Text("'") + digit + "'";
}
Text shown(const Text& text) {
    Text literal = "\"";
    for (const char c : text) {
        const std::size_t at = Text(ESCAPED, sizeof ESCAPED).find(c);
        const auto code = static_cast<unsigned char>(c);
        if (code >= 0x80)
            literal += {'\\', 'x', Util::bin2Hex(code / 16U), Util::bin2Hex(code % 16U)};
        else
            literal.append(at == Text::npos ? "" : "\\") += at == Text::npos ? c : LETTERS[at];
    }
    return literal += '"';
}
/// Joins the parts, with \a separator between them.
Text joined(const Texts& parts, const char* separator = " ") {
    Text text;
    for (const Text& part : parts)
        text.append(text.empty() ? "" : separator).append(part);
    return text;
}
AsItIs inHexadecimal(const Text& bytes) {
    Texts digits;
    for (const char byte : bytes) {
        const unsigned value = static_cast<unsigned char>(byte);
        digits.push_back({Util::bin2Hex(value / 16), Util::bin2Hex(value % 16)});
    }
    return {joined(digits)};
}

/// Makes the call of an example, and shows its result.
struct Run {
    template <typename Call>
    Run(Call call) : run([call](const Example& e) { return shown(call(e)); }) {}
    std::function<Text(const Example&)> run;
};
using Runs = std::map<Text, Run>;

Text content(const std::unique_ptr<Kel_ByteBuffer>& buffer) {
    return {buffer->ptr(), static_cast<std::size_t>(buffer->getSize())};
}
Text content(Kel_ByteBuffer* made) {
    return content(std::unique_ptr<Kel_ByteBuffer>(made));
}
/// Makes a buffer of the object, which is a text or bytes in hexadecimal: "b0" is 0xB0.
std::unique_ptr<Kel_ByteBuffer> bufferOf(const Text& object) {
    Text bytes = object[0] == '"' ? unquoted(object) : "";
    for (const Text& byte : allOf(bytes.empty() ? object : "", "(\\w\\w)"))
        bytes += static_cast<char>(std::stoul(byte, nullptr, 16));
    const auto* const data = reinterpret_cast<const unsigned char*>(bytes.data());
    return std::make_unique<Kel_ByteBuffer>(data, bytes.size(), 0, 0);
}
/// Writes bytes as examples with named bytes do: 0xB0 is "b0", and 0 (in a gap) is "x".
AsItIs byName(const Text& bytes) {
    Texts names;
    for (const char byte : bytes)
        names.push_back(byte == 0 ? "x"
                                  : Text{'b', Util::bin2Hex(static_cast<unsigned>(byte) % 16)});
    return {joined(names)};
}
/// Makes a run that changes the object and shows all of it.
Run change(void (*action)(const Example&, Kel_ByteBuffer&)) {
    return [action](const Example& e) -> AsItIs {
        const auto buffer = bufferOf(e.object);
        action(e, *buffer);
        const Text after = content(buffer);
        return e.object[0] == '"'   ? AsItIs{shown(after)}
               : e.object[0] == 'b' ? byName(after)
                                    : inHexadecimal(after);
    };
}
void openGap(const Example& e, Kel_ByteBuffer& buffer) {
    const std::uint64_t at = std::min(e.number(0), buffer.getSize());
    buffer.insertBytes(e.number(0), e.number(1));
    std::fill_n(buffer.uPtr() + at, e.number(1), std::uint8_t{0}); // the library sets none
}

// NOLINTBEGIN(cert-err58-cpp): an exception here ends the test, as it should.

const Runs BUFFER{
    {"insertBytes", change(openGap)},
    {"shiftBitsDown", change([](auto& e, auto& b) { b.shiftBitsDown(e.index(0)); })},
    {"setBitsLL",
     change([](auto& e, auto& b) { b.setBitsLL(e.number(0), e.number(1), e.number(2)); })},
    {"setHexStringBitCount", change([](auto& e, auto& b) { b.setHexStringBitCount(e.number(0)); })},
    {"swapBitOrderWithinEachByte", change([](auto&, auto& b) { b.swapBitOrderWithinEachByte(); })},
    {"swapByteOrder", change([](auto& e, auto& b) { b.swapByteOrder(e.number(0), e.number(1)); })},
    {"getBitsLL", [](auto& e) { return bufferOf(e.object)->getBitsLL(e.number(0), e.number(1)); }},
    {"bin2HexString",
     [](auto& e) {
         Kel_ByteBuffer target;
         if (e.arguments[1] != "target")
             return content(bufferOf(e.object)->bin2HexString(e.number(0), e.number(1)));
         bufferOf(e.object)->bin2HexString(e.number(0), target);
         return content(new Kel_ByteBuffer(target));
     }},
    {"hex2Bin",
     [](auto& e) {
         return inHexadecimal(content(bufferOf(e.object)->hex2Bin(e.number(0), e.number(1))));
     }},
    {"hex2BinReverse", [](auto& e) {
         return inHexadecimal(content(Kel_ByteBuffer::hex2BinReverse(e.text(0).c_str())));
     }}};

/// Makes a run on a number with the object's width (16 bits if it has none) and value.
template <typename Action>
Run onNumber(Action action) {
    return [action](const Example& e) {
        const Texts parts = allOf(e.object, "([-\\w]+)(?: bits)?");
        Kel_Number number(parts.empty() ? 16 : std::stoull(parts[0]));
        number.set('d', "-1");
        if (parts.size() > 1)
            number.set(parts[1].compare(0, 2, "0x") == 0 ? 'x' : 'd', parts[1]);
        return action(e, number);
    };
}

const Runs NUMBER{
    {"set", onNumber([](auto& e, auto& number) {
         const char radix = e.character(0);
         const Text accepted = number.set(radix, e.text(1)) ? ", true" : ", false";
         return AsItIs{
             (radix == 'S' ? Text("0x").append(number.toString('x')) : number.toString('d')) +
             accepted};
     })},
    {"setFloat", onNumber([](auto& e, auto& number) {
         number.setFloat(e.text(0), e.real(1), e.real(2));
         return AsItIs{number.toString('d')};
     })},
    {"toString", onNumber([](auto& e, auto& number) { return number.toString(e.character(0)); })},
    {"toFloatString", onNumber([](auto& e, auto& number) {
         return number.toFloatString(e.real(0), e.real(1), e.u32(2));
     })}};

const Runs VALUE{{"bits2Number", onNumber([](auto& e, auto& number) {
                      bits2Number(*bufferOf("21 43"), e.number(1), number);
                      return std::stoull(number.toString('u'));
                  })},
                 {"number2Bits", onNumber([](auto& e, auto& number) {
                      const auto buffer = bufferOf("00 00");
                      number2Bits(number, *buffer, e.number(2));
                      return inHexadecimal(content(buffer));
                  })},
                 {"uLL2Number", onNumber([](auto& e, auto& number) {
                      uLL2Number(e.number(0), number);
                      return AsItIs{number.toString('u')};
                  })},
                 {"lL2Number", onNumber([](auto& e, auto& number) {
                      lL2Number(std::stoll(e.arguments[0]), number);
                      return AsItIs{number.toString('d')};
                  })},
                 {"number2ULL", onNumber([](auto&, auto& number) {
                      std::uint64_t value = 7; // stays if the number does not fit
                      const Text fits = number2ULL(number, value) ? "true, " : "false, ";
                      return AsItIs{fits + std::to_string(value)};
                  })},
                 {"number2LL", onNumber([](auto&, auto& number) {
                      std::int64_t value = 7;
                      const Text fits = number2LL(number, value) ? "true, " : "false, ";
                      return AsItIs{fits + std::to_string(value)};
                  })}};

Text out;
const unsigned char DATA[] = {0x34, 0x12};

const Runs UTIL{
    {"getBits", [](auto& e) { return Util::getBits(DATA, e.index(1), e.index(2)); }},
    {"getReverseBits", [](auto& e) { return Util::getReverseBits(DATA, e.index(1), e.index(2)); }},
    {"getLongLongBitsDebug",
     [](auto& e) {
         testing::internal::CaptureStdout();
         Util::getLongLongBitsDebug(DATA, e.index(1), e.index(2));
         return AsItIs{Text("prints ").append(shown(testing::internal::GetCapturedStdout()))};
     }},
    {"bin2Hex", [](auto& e) { return Util::bin2Hex(e.u32(0)); }},
    {"hex2Bin", [](auto& e) { return Util::hex2Bin(e.character(0)); }},
    {"bin2ReverseBinStr",
     [](auto& e) {
         const unsigned char byte = 0x06;
         return Util::bin2ReverseBinStr(e.arguments[0] == "null" ? nullptr : &byte, e.u32(1), out);
     }},
    {"reverseBinStr2Bin",
     [](auto& e) {
         unsigned char byte = 0xFF;
         Util::reverseBinStr2Bin(e.chars(0), e.arguments.back() == "to null" ? nullptr : &byte);
         return AsItIs{Text("{0x").append(inHexadecimal({static_cast<char>(byte)}).text) + "}"};
     }},
    {"binStr2HexStr", [](auto& e) { return Util::binStr2HexStr(e.chars(0), out); }},
    {"hexStr2BinStr", [](auto& e) { return Util::hexStr2BinStr(e.chars(0), e.u32(1), out); }},
    {"reverseStr",
     [](auto& e) {
         char mirror[8];
         Util::reverseStr(e.text(0).c_str(), e.u32(1), mirror);
         return Text(mirror);
     }},
    {"binStr2UInt", [](auto& e) { return Util::binStr2UInt(e.chars(0)); }},
    {"hexStr2UInt", [](auto& e) { return Util::hexStr2UInt(e.chars(0)); }},
    {"hexStr2ULL", [](auto& e) { return Util::hexStr2ULL(out = e.text(0)); }},
    {"decStr2ULL", [](auto& e) { return Util::decStr2ULL(e.text(0)); }},
    {"uInt2BinStr", [](auto& e) { return Util::uInt2BinStr(e.u32(0), e.u32(1), out); }},
    {"uInt2HexStr", [](auto& e) { return Util::uInt2HexStr(e.u32(0), e.u32(1), out); }},
    {"uLL2DecStr", [](auto& e) { return Util::uLL2DecStr(e.number(0), out); }},
    {"double2Str", [](auto& e) { return Util::double2Str(e.real(0), out); }}};

/// Returns the sign of a comparison, and expects the same sign from both overloads.
AsItIs signOf(int ofTexts, int ofStrings) {
    const auto sign = [](int value) {
        return value < 0 ? "negative" : value > 0 ? "positive" : "0";
    };
    EXPECT_STREQ(sign(ofTexts), sign(ofStrings));
    return {sign(ofStrings)};
}

const Runs TEXTS{
    {"stricmp",
     [](auto& e) {
         const Text a = e.text(0);
         const Text b = e.text(1);
         return signOf(Kel_Util::stricmp(a.c_str(), b.c_str()), Kel_Util::stricmp(a, b));
     }},
    {"strnicmp",
     [](auto& e) {
         const Text a = e.text(0);
         const Text b = e.text(1);
         const std::uint64_t count = e.number(2);
         return signOf(Kel_Util::strnicmp(a.c_str(), b.c_str(), count),
                       Kel_Util::strnicmp(a, b, count));
     }},
    {"stripEndingCR", [](auto& e) { return Kel_Util::stripEndingCR(out = e.text(0)); }},
    {"unQuote",
     [](auto& e) {
         Texts texts{"", e.text(0)};
         Kel_Util::unQuote(texts);
         EXPECT_EQ(texts[1], Kel_Util::unQuote(out = e.text(0)));
         return out;
     }},
    {"trimWhitespace", [](auto& e) { return Kel_Util::trimWhitespace(e.text(0)); }},
    {"findKey",
     [](auto& e) {
         Texts entries = allOf(e.arguments[0], "\"([^\"]*)\"");
         std::vector<char*> argv;
         for (Text& entry : entries)
             argv.push_back(entry.data());
         const auto argc = static_cast<std::uint32_t>(argv.size());
         Text value = Kel_Util::findKey(entries, e.text(1));
         EXPECT_EQ(Kel_Util::findKey(argc, argv.data(), e.text(1)), value);
         return value;
     }},
    {"tokens", [](auto& e) {
         const Text mode = joined({e.arguments.begin() + 1, e.arguments.end()});
         const auto has = [&](const char* word) { return mode.find(word) != Text::npos; };
         const Text ownSet = mode.substr(1, mode.rfind('"') - 1);
         const char* const set = has("CSV_DELIM")     ? Kel_StrTok::CSV_DELIM
                                 : has("WHITE_SPACE") ? Kel_StrTok::WHITE_SPACE
                                                      : ownSet.c_str();
         Kel_StrTok tokenizer(e.chars(0), set, has("handled"), has("lower case"), has("kept"));
         Texts tokens;
         while (const char* const token = tokenizer.getNext())
             tokens.emplace_back(*token == '\0' ? "(empty)" : token);
         return AsItIs{tokens.empty() ? "none" : joined(tokens, " | ")};
     }}};

// NOLINTEND(cert-err58-cpp)

/// Returns what an action logs, without white space at its ends.
AsItIs logged(const std::function<void(Logger&)>& action) {
    static const model::LogFile log;
    Logger& logger = Logger::logger;
    logger.setDetailLevel(4);
    const std::size_t before = log.text().size();
    action(logger);
    logger.flush();
    const Text text = log.text().substr(before);
    return {Kel_Util::trimWhitespace(text)};
}
Run returned(void (*setResult)(const Example&, MethodLogger&)) {
    return [setResult](const Example& e) -> AsItIs {
        const AsItIs line = logged([&](Logger&) {
            MethodLogger tracer;
            tracer.setMethodName("f");
            setResult(e, tracer);
        });
        const Texts result = allOf(line.text, "-- returning (.*)");
        return {result.empty() ? "no result on the exit line" : result[0]};
    };
}

// NOLINTNEXTLINE(cert-err58-cpp): as above.
const Runs LOG{
    {"logMethodEntry",
     [](auto& e) {
         return logged([&](Logger& logger) {
             if (e.arguments.size() == 1)
                 return logger.logMethodEntry(e.text(0).c_str());
             logger.logMethodEntry(e.text(0).c_str(), e.text(1).c_str(), e.index(2));
         });
     }},
    {"logMethodExit",
     [](auto& e) {
         return logged([&](Logger& logger) {
             if (e.hasText(0))
                 return logger.logMethodExit(e.text(0).c_str());
             logger.logMethodExit(e.index(0));
         });
     }},
    {"setReturnStatus", returned([](auto& e, auto& tracer) { tracer.setReturnStatus(e.u32(0)); })},
    {"setReturn", returned([](auto& e, auto& tracer) {
         if (e.arguments[0] == "true")
             tracer.setReturn(true);
         else if (e.hasText(0) || e.arguments[0].back() == 'r')
             tracer.setReturn(e.hasText(0) ? e.text(0).c_str() : nullptr);
         else
             tracer.setReturn(e.u32(0));
     })}};

Example parsed(const Text& call) {
    std::smatch parts;
    if (std::regex_match(call, parts, std::regex("(?:(.*), )?(\\w+)\\((.*)\\)")))
        return {parts[1], parts[2],
                allOf(parts[3], R"(((?:\{[^}]*\}|"(?:\\.|[^"\\])*"|[^,{"])+)(?:, |$))")};
    if (std::regex_match(call, parts, std::regex("(.*?) {2,}(.*)"))) // a row of a table of tokens
        return {"", "tokens", {parts[1] == "(empty)" ? "\"\"" : shown(Text(parts[1])), parts[2]}};
    return {};
}

/// Returns the result of an example, or the exception and whether it leaves the output.
Text outcome(const Run& run, const Example& example) {
    out = "left";
    try {
        return run.run(example);
    } catch (const std::logic_error& error) {
        return Text("throws ")
            .append(shown(Text(error.what())))
            .append(out.empty() ? "" : ", output left");
    }
}

void expectExamples(const Text& name, const Runs& runs, const Text& end = "\xFF") {
    Text text = test_host::readWholeFile(KELRT_HEADERS + name + ".h");
    text.resize(std::min(text.size(), text.find(end)));
    text += '\n' + test_host::readWholeFile(KELRT_CASES + name + ".txt");
    const std::regex line(R"(\n *(?:/// )?([^#\n].*?) *=> +("(?:\\.|[^"\\])*"|.*?)(?=  |\n))");
    std::sregex_iterator match(text.begin(), text.end(), line);
    EXPECT_NE(match, std::sregex_iterator()) << name;
    for (; match != std::sregex_iterator(); ++match) {
        const Example example = parsed(match->str(1));
        const auto known = runs.find(example.function);
        ASSERT_NE(known, runs.end()) << name << ": " << match->str();
        Text expected = match->str(2);
        if (std::regex_match(expected, std::regex("0x[0-9A-F]+")))
            expected = std::to_string(std::stoull(expected, nullptr, 0));
        EXPECT_EQ(outcome(known->second, example), expected) << match->str();
    }
}

TEST(Examples, AndCasesGiveTheirResults) {
    expectExamples("Kel_ByteBuffer", BUFFER);
    expectExamples("Kel_Number", NUMBER);
    expectExamples("Kel_NumberUtil", UTIL);
    expectExamples("NumberValue", VALUE);
    expectExamples("Kel_StrTok", TEXTS);
    expectExamples("Kel_Util", TEXTS, "Files and environment");
    expectExamples("Logger", LOG);
    expectExamples("MethodLogger", LOG);
}

} // namespace
