#include "tests/support/program/PlainShop.h"

#include "database/Attachment.h"
#include "database/Query.h"
#include "tests/support/Environment.h"
#include "text/Cp1251.h"

// The client library's converters of texts keep memory.
extern "C" const char* __lsan_default_suppressions();   // NOLINT: the sanitizer's name
extern "C" const char* __lsan_default_suppressions() {  // NOLINT
    return "leak:libtommath\nleak:iconv_open\n";
}

namespace tolvane::test {

void MakePlainShop(const std::filesystem::path& file, const std::vector<std::string>& statements) {
    std::filesystem::copy_file(Environment("TOLVANE_FB_SHOP"), file);
    TAttachment attachment({.database = file.string()});
    TTransaction transaction(attachment.Library(), attachment.Handle());
    TQuery query(transaction);
    transaction.Start();
    for (const std::string& statement : statements) {
        query.SetText(FromUtf8(statement));
        query.Execute();
    }
    transaction.Commit();
}

}  // namespace tolvane::test
