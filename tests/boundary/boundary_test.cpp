// SPDX-License-Identifier: MIT
#include "client.h"

#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_StrTok.h"

#include <gtest/gtest.h>

using namespace KelRT;

namespace {

const Client& first = *firstClient();
const Client& second = *secondClient();

TEST(Boundary, LoggerAndCommaSeparatedModeAreOneForAll) {
    EXPECT_EQ(first.logger(), &Logger::logger);
    EXPECT_EQ(second.logger(), &Logger::logger);
    EXPECT_EQ(first.csvDelimiters(), Kel_StrTok::CSV_DELIM);
    EXPECT_EQ(second.csvDelimiters(), Kel_StrTok::CSV_DELIM);
    EXPECT_EQ(first.countTokens(",a,,b,", second.csvDelimiters()), 5);
    EXPECT_EQ(second.countTokens(",a,,b,", first.csvDelimiters()), 5);
    EXPECT_EQ(second.countTokens(",a,,b,", ","), 2);
}

TEST(Boundary, ExceptionIsCaughtByItsTypeOnEverySide) {
    EXPECT_TRUE(first.catchesByType());
    EXPECT_TRUE(second.catchesByType());
    EXPECT_THROW(first.throwsException(), Kel_Exception);
    EXPECT_THROW(second.throwsException(), Kel_Exception);
}

TEST(Boundary, ReturnedBufferNeverMeetsTheClientsOperatorDelete) {
    const int before = second.globalDeletes();
    second.callGlobalDelete();
    ASSERT_EQ(second.globalDeletes(), before + 1) << "the client's operator delete is not counted";
    second.deleteBuffer(Kel_ByteBuffer::hex2BinReverse("5A3C"));
    second.deleteBuffer(new Kel_ByteBuffer(1000, 10, 10));
    EXPECT_EQ(second.globalDeletes(), before + 1);
}

} // namespace
