// SPDX-License-Identifier: MIT
//
// Whole logs beside the slow model: dumps over sizes, forms, titles and states of the line, and
// random sequences of all operations.
#include "KelRT/Logger.h"

#include "models/log_model.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

using namespace KelRT;
using namespace model;

namespace {

Logger& logger = Logger::logger;
constexpr unsigned SEED = 20110314;

std::vector<unsigned char> randomBytes(std::size_t count) {
    std::mt19937 random(SEED);
    std::vector<unsigned char> bytes(count);
    for (auto& byte : bytes)
        byte = static_cast<unsigned char>(random());
    return bytes;
}

// Compares from the first difference on, since whole logs are too long to read.
void expectSame(const std::string& actual, const std::string& expected) {
    const auto [at, unused] =
        std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end());
    const auto from = static_cast<std::size_t>(at - actual.begin());
    const std::size_t context = from - std::min<std::size_t>(from, 200);
    EXPECT_TRUE(actual == expected) << "seed " << SEED << ", position " << from << "\nactual:\n"
                                    << actual.substr(context, 400) << "\nexpected:\n"
                                    << expected.substr(context, 400);
}

std::string returning(const std::string& result) {
    std::string text = " -- returning ";
    return text += result;
}

class LogAgainstModel : public testing::TestWithParam<unsigned> {
protected:
    LogAgainstModel() {
        model.bits = (GetParam() & 1) != 0;
        model.whole = (GetParam() & 2) != 0;
        model.text = log.text();
    }
    void setLevel(int level) {
        logger.setDetailLevel(level);
        model.level = level;
    }
    void record(int level, const std::string& text) {
        logger.printLog(level, "%s", text.c_str());
        model.record(level, text);
    }
    void entry(const std::string& name) {
        logger.logMethodEntry(name.c_str());
        model.entry(name, "");
    }
    void expectSameAtEnd() {
        model.record(2, ENDED);
        expectSame(log.finish(), model.text);
    }

    LogFile log{nullptr, std::to_string(GetParam()).c_str()};
    Log model;
};

INSTANTIATE_TEST_SUITE_P(Flags, LogAgainstModel, testing::Range(0U, 4U));

TEST_P(LogAgainstModel, DumpsOfAllSizes) {
    const auto bytes = randomBytes(10100);
    std::vector<unsigned> sizes;
    for (unsigned bits = 0; bits <= 300; ++bits)
        sizes.push_back(bits);
    for (const unsigned size : {9983U, 9984U, 9985U, 9992U, 9999U, 10000U, 10001U, 10016U, 10100U})
        for (unsigned cut = 0; cut < 8; ++cut)
            sizes.push_back(8 * size - cut);
    for (const unsigned size : sizes) {
        const std::string title = std::to_string(size) + " bits";
        logger.dumpBuffer(1, title.c_str(), bytes.data(), size);
        model.dump(1, title, bytes, size);
    }
    logger.dumpBuffer(2, "filtered", bytes.data(), 8);
    expectSameAtEnd();
}

TEST_P(LogAgainstModel, DumpsWithEveryTitleAndStateOfTheLine) {
    const auto bytes = randomBytes(40);
    const std::string longest(2047, 't');
    const struct {
        std::string title;
        std::string shown;
    } titles[] = {
        {"", ""},
        {"plain", "plain"},
        {"ends\n", "ends\n"},
        {"two\nlines", "two\nlines"},
        {"\n", "\n"},
        {"100%% of %s%n, %d %", "100% of %s%n, %d %"}, // from outside: never a format
        {"%%%%%", "%%%"},
        {longest + "\n", longest},
        {longest.substr(1) + "%%%", longest.substr(1) + "%"},
    };
    setLevel(4);
    for (int depth = 0; depth <= 40; depth += depth < 2 ? 1 : 38) {
        while (model.depth < depth)
            entry("f");
        for (const auto& [title, shown] : titles)
            for (const char* const before : {"", "open line"}) {
                record(1, before);
                logger.dumpBuffer(1, title.c_str(), bytes.data(), 173);
                model.dump(1, shown, bytes, 173);
            }
        logger.dumpBuffer(1, nullptr, bytes.data(), 320);
        model.dump(1, "", bytes, 320);
        logger.dumpBuffer(1, bytes.data(), 12);
        model.dump(1, "[Buffer Dump]", bytes, 12);
    }
    expectSameAtEnd();
}

TEST_P(LogAgainstModel, RandomOperations) {
    std::mt19937 random(SEED + GetParam());
    const auto below = [&random](unsigned limit) { return static_cast<int>(random() % limit); };
    const auto bytes = randomBytes(64);
    const std::string texts[] = {"", "a", "b\n", "\n", "c\nd", "\ne\n", std::string(2500, 'l')};
    setLevel(4);
    for (int step = 0; step < 5000; ++step) {
        const std::string& text = texts[random() % std::size(texts)];
        const std::string name = std::to_string(step) + "f";
        switch (below(12)) {
        case 0:
            setLevel(below(4) == 0 ? 3 : 4);
            break;
        case 1:
        case 2:
            logger.logMethodEntry(name.c_str(), "%s%d", text.c_str(), step);
            model.entry(name, text + std::to_string(step));
            break;
        case 3:
            entry(name);
            break;
        case 4:
            logger.logMethodExit();
            model.exit("");
            break;
        case 5:
            logger.logMethodExit(-step);
            model.exit(returning(std::to_string(-step)));
            break;
        case 6:
            logger.logMethodExit(text.c_str());
            model.exit(text.empty() ? "" : returning(text));
            break;
        case 7:
            logger.logMethodExit(name.c_str(), step);
            model.exitByName(name, returning(std::to_string(step)));
            break;
        case 8:
            if (below(10) == 0) {
                logger.popAllMethods();
                model.names.clear();
            }
            break;
        case 9:
            logger.dumpBuffer(4, name.c_str(), bytes.data(), 412);
            model.dump(4, name, bytes, 412);
            break;
        default:
            record(below(6), text);
        }
    }
    expectSameAtEnd();
}

TEST(LogDump, RowsReadAsShown) {
    const LogFile log;
    unsigned char bytes[20];
    for (unsigned char i = 0; i < 20; ++i)
        bytes[i] = i;
    logger.dumpBuffer(1, bytes, 160);
    logger.dumpBuffer(0, "title", bytes, 0);
    EXPECT_EQ(log.finish(), std::string(FILE_LINE) +
                                "[Buffer Dump]\n"
                                "(MSB<-LSB)  f  e  d  c  b  a  9  8  7  6  5  4  3  2  1  0\n"
                                "00000000h: 0f 0e 0d 0c 0b 0a 09 08 07 06 05 04 03 02 01 00 \n"
                                "00000010h:                                     13 12 11 10 \n"
                                "title\n(MSB<-LSB)\n");
}

TEST(LogDump, BitsReadAsShownAndTheLargestSizeIsCut) {
    const LogFile log(nullptr, "1");
    unsigned char bytes[10000] = {0x55, 0x0A};
    logger.dumpBuffer(1, nullptr, bytes, 12);
    const std::string shown = "\n(MSB<-LSB)        1        0\n00000000h:     1010 01010101 \n";
    std::string expected = log.text();
    EXPECT_EQ(expected.substr(expected.size() - shown.size()), shown);
    const auto dump = [&](unsigned bits) { // the cut part is not read
        const std::string before = log.text();
        logger.dumpBuffer(1, nullptr, bytes, bits);
        return log.text().substr(before.size());
    };
    const std::string cut = dump(80008);
    EXPECT_EQ(cut.substr(cut.find("00002710h")),
              "00002710h: ... (To display buffers larger than 10000, enable the print large\n"
              "buffer flag in TOR_KEL_LOGFLAGS. Set bit 1 high, where bit 0 is LSB.)\n");
    for (const unsigned bits : {0xFFFFFFF8U, 0xFFFFFFF9U, 0xFFFFFFFFU})
        EXPECT_EQ(dump(bits), cut) << bits;
}

} // namespace
