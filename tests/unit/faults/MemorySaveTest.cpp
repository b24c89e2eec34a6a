#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>

#include "config/IniFile.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ShortMemory.h"

namespace tolvane::test {
namespace {

// Saves with each allocation failing in turn. (The library for JSON, and with it the command, ends
// when memory is short; that leaves a ledger whole as a kill does.)
class MemorySave : public ::testing::TestWithParam<TShortMemory::THowLong> {
protected:
    void FailEachAllocation(const std::filesystem::path& file, const std::function<void()>& putOld,
                            const std::function<void()>& save) {
        putOld();
        const std::string before = GetFile(file);
        int all = 0;
        {
            const TShortMemory counted(0, TShortMemory::Once);
            save();
            all = TShortMemory::Count();
        }
        const std::string after = GetFile(file);
        ASSERT_NE(before, after);
        int failed = 0;
        for (int n = 1; n <= all && !HasFailure(); ++n) {
            SCOPED_TRACE(n);
            putOld();
            bool fails = false;
            {
                const TShortMemory memory(n, GetParam());
                try {
                    save();
                } catch (const std::exception&) {
                    fails = true;
                }
            }
            EXPECT_EQ(GetFile(file), fails ? before : after);
            EXPECT_EQ(folder_.FileCount(), 1U);
            failed += fails ? 1 : 0;
        }
        save();
        EXPECT_EQ(GetFile(file), after);
        EXPECT_EQ(folder_.FileCount(), 1U);
        RecordProperty("allocations", all);
        RecordProperty("failed", failed);
    }

    TScratchFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(HowLong, MemorySave,
                         ::testing::Values(TShortMemory::Once, TShortMemory::ForGood),
                         [](const auto& suite) {
                             return suite.param == TShortMemory::Once ? "Once" : "ForGood";
                         });

TEST_P(MemorySave, LeavesTheOldOrTheNewConfigurationFileWhole) {
    const std::filesystem::path file = folder_ / "a.ini";
    FailEachAllocation(
        file, [&] { PutFile(file, "[A]\r\nk=old\r\n[B]\r\nforeign\r\n"); },
        [&] {
            UpdateIniFile(file, [](TIniDocument& document) {
                document.WriteText("A", "k", "a new value that is long enough to need memory");
            });
        });
}

}  // namespace
}  // namespace tolvane::test
