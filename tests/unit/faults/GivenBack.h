#pragma once

#include <gtest/gtest.h>

#include "tests/support/client/FakeClient.h"

namespace tolvane::test {

// Whoever used the client has ended all that it began, and used nothing that had ended.
inline void ExpectAllIsGivenBack(const TFakeClient& client) {
    EXPECT_EQ(client.transactions, 0);
    EXPECT_EQ(client.statements, 0);
    EXPECT_EQ(client.blobs, 0);
    EXPECT_EQ(client.misuses, 0);
}

}  // namespace tolvane::test
