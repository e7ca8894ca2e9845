// SPDX-License-Identifier: MIT
#include "client.h"

#include "KelRT/Kel_Exception.h"
#include "KelRT/Kel_StrTok.h"

#include <gtest/gtest.h>

using namespace KelRT;

namespace {

const Client* const clients[] = {firstClient(), secondClient()};

TEST(Boundary, LoggerAndCommaSeparatedModeAreOneForAll) {
    for (const Client* client : clients) {
        EXPECT_EQ(client->logger(), &Logger::logger);
        EXPECT_EQ(client->csvDelimiters(), Kel_StrTok::CSV_DELIM); // this pointer selects the mode
    }
}

TEST(Boundary, ExceptionIsCaughtByItsTypeOnEverySide) {
    for (const Client* client : clients) {
        EXPECT_TRUE(client->catchesByType());
        EXPECT_THROW(client->throwsException(), Kel_Exception);
    }
}

TEST(Boundary, ReturnedBufferNeverMeetsTheClientsOperatorDelete) {
    for (const Client* client : clients) {
        const int before = client->globalDeletes();
        client->deleteBuffer(Kel_ByteBuffer::hex2BinReverse("5A3C"));
        client->deleteBuffer(new Kel_ByteBuffer(1000, 10, 10));
        EXPECT_EQ(client->globalDeletes(), before + 1); // this call itself
    }
}

} // namespace
