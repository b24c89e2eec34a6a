#pragma once

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "database/Attachment.h"
#include "database/DatabaseError.h"
#include "database/Query.h"
#include "text/Cp1251.h"

namespace tolvane::test {

inline std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    if (value == nullptr || *value == '\0')
        throw std::runtime_error(std::string("the environment variable ") + name +
                                 " is not set; test.sh sets it for a private Firebird server");
    return value;
}

// The demo shop's database on the private server: TOLVANE_FB_SERVER (host/port),
// TOLVANE_FB_PASSWORD (of SYSDBA), TOLVANE_FB_SHOP (the database's path on the server).
inline TDatabaseLogin ShopLogin() {
    return {.database = Variable("TOLVANE_FB_SERVER") + ":" + Variable("TOLVANE_FB_SHOP"),
            .user = "SYSDBA",
            .password = Variable("TOLVANE_FB_PASSWORD")};
}

// The first column of the first row, UTF-8.
inline std::string Ask(TAttachment& attachment, const std::string& text) {
    TTransaction transaction(attachment.Library(), attachment.Handle(), TTransactionKind::ReadOnly);
    TQuery query(transaction);
    transaction.Start();
    query.SetText(FromUtf8(text));
    query.Open();
    return ToUtf8(query.AsText(0, 0, {}));
}

// What attaching says when it fails, UTF-8; empty when it does not fail.
inline std::string ErrorOf(const TDatabaseLogin& login) {
    try {
        const TAttachment attachment(login);
    } catch (const TDatabaseError& error) {
        return ToUtf8(error.what());
    }
    return {};
}

}  // namespace tolvane::test
