#include <gtest/gtest.h>
#include <ibase.h>

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "database/DatabaseError.h"
#include "database/Query.h"
#include "tests/support/client/FakeClient.h"
#include "tests/unit/faults/GivenBack.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

// What a client library reports that no client library should.
class OddClient : public ::testing::Test {
protected:
    // The rows of a query with this answer: its values in the order of the columns, "-" for null,
    // rows parted by "; ".
    std::string Rows(std::span<const TFakeColumn> columns, std::span<const TFakeValue> values) {
        const TFakeResult result{"select", columns, values};
        client_.results = {&result, 1};
        const TClientLibrary library(FakeClientName());
        std::string rows;
        {
            TTransaction transaction(library, &cell_);
            TQuery query(transaction);
            transaction.Start();
            query.SetText("select");
            query.Open();
            query.FetchAll();
            for (std::size_t row = 0; row < query.RowCount(); ++row) {
                if (row > 0) rows += "; ";
                for (std::size_t i = 0; i < query.ColumnCount(); ++i)
                    rows += (i > 0 ? " " : "") +
                            (query.IsNull(row, i) ? "-" : query.AsText(row, i, {}));
            }
        }
        ExpectAllIsGivenBack(client_);
        return ToUtf8(rows);
    }
    std::string ErrorOf(std::span<const TFakeColumn> columns, std::span<const TFakeValue> values) {
        try {
            return "no error: " + Rows(columns, values);
        } catch (const TDatabaseError& error) {
            ExpectAllIsGivenBack(client_);
            return ToUtf8(error.what());
        }
    }

    TFakeClient& client_ = NewFakeClient();
    unsigned cell_ = 1;
};

using TShorts = std::initializer_list<short>;

constexpr TFakeColumn kNumber[] = {{"N", SQL_LONG, 4}};
constexpr TFakeColumn kText[] = {{"T", SQL_VARYING, 4}};
constexpr TFakeColumn kBlob[] = {{"B", SQL_BLOB, 8}};
constexpr TFakeValue kSeven[] = {Whole(7)};
constexpr TFakeValue kWords[] = {Words("abcd")};

TEST_F(OddClient, AVaryingTextIsCutToItsColumn) {
    static const std::string kLong(60000, 'x');
    const TFakeColumn columns[] = {{"T", SQL_VARYING, 4}, {"N", SQL_LONG, 4}};
    const TFakeValue values[] = {Words("abcdefghijkl"), Whole(7), Words(kLong), Whole(8)};
    EXPECT_EQ(Rows(columns, values), "abcd 7; xxxx 8");
}

TEST_F(OddClient, ATextMayBeAsLongAsItsLengthCanSay) {
    const TFakeColumn columns[] = {{"V", SQL_VARYING, -1}, {"T", SQL_TEXT, -1}, {"N", SQL_LONG, 4}};
    const TFakeValue values[] = {Words("ab"), Words("cd"), Whole(7)};
    EXPECT_EQ(Rows(columns, values), "ab cd 7");
}

TEST_F(OddClient, ATextMayHaveNoLengthAtAll) {
    const TFakeColumn columns[] = {{"V", SQL_VARYING, 0}, {"T", SQL_TEXT, 0}, {"N", SQL_LONG, 4}};
    const TFakeValue values[] = {Words("ab"), Words("cd"), Whole(7)};
    EXPECT_EQ(Rows(columns, values), "  7");
}

TEST_F(OddClient, AWrongLengthOfANumberCostsNoOtherValue) {
    const TFakeValue values[] = {Whole(1234567890123), Whole(-2), {.number = 0.5}, Whole(8)};
    for (const short length : TShorts{0, 1, 3, 9, -1}) {
        const TFakeColumn columns[] = {{"L", SQL_INT64, length},
                                       {"S", SQL_SHORT, length},
                                       {"D", SQL_DOUBLE, length},
                                       {"N", SQL_LONG, length}};
        EXPECT_EQ(Rows(columns, values), "1234567890123 -2 0,5 8") << length;
    }
}

TEST_F(OddClient, AnUnknownTypeIsAskedForAsText) {
    for (const short type : TShorts{0, 2, 32766, -2}) {
        const TFakeColumn columns[] = {{"U", type, 3}, {"N", SQL_LONG, 4}};
        const TFakeValue values[] = {Words("a text of 24 characters."), Whole(7)};
        EXPECT_EQ(Rows(columns, values), "a text of 24 characters. 7") << type;
    }
}

TEST_F(OddClient, AnIndicatorBelowZeroIsNullAndAnyOtherIsNot) {
    const TFakeColumn columns[] = {{"A", SQL_LONG, 4}, {"B", SQL_LONG, 4}};
    const TFakeValue values[] = {kNull, Whole(7)};
    for (const short null : TShorts{-1, -2, -32768}) {
        for (const short value : TShorts{0, 1, 255, 32767}) {
            client_.indicatorOfNull = null;
            client_.indicatorOfValue = value;
            EXPECT_EQ(Rows(columns, values), "- 7") << null << " " << value;
        }
    }
}

TEST_F(OddClient, AValueWithoutAnAddressIsNull) {
    client_.takesPointersAway = true;
    EXPECT_EQ(Rows(kNumber, kSeven), "-");
    EXPECT_EQ(Rows(kText, kWords), "-");
    EXPECT_EQ(Rows(kBlob, kWords), "-");
}

TEST_F(OddClient, ANumberOfColumnsThatCannotBeIsAnError) {
    client_.columnsAtPrepare = -3;
    EXPECT_EQ(ErrorOf(kNumber, kSeven), "Неочакван брой колони: -3");
    client_.columnsAtPrepare = 40;
    client_.columnsAtDescribe = 41;
    EXPECT_EQ(ErrorOf(kNumber, kSeven), "Неочакван брой колони: 41");
    client_.columnsAtDescribe = 0;
    EXPECT_EQ(Rows(kNumber, kSeven), "7");
}

TEST_F(OddClient, ALengthOfANameThatCannotBeFindsNoColumn) {
    for (const short length : TShorts{-1, 33, 32767}) {
        client_.aliasLength = length;
        const TFakeResult result{"select", kNumber, kSeven};
        client_.results = {&result, 1};
        const TClientLibrary library(FakeClientName());
        TTransaction transaction(library, &cell_);
        TQuery query(transaction);
        transaction.Start();
        query.SetText("select");
        query.Open();
        EXPECT_THROW(query.Column("N"), TDatabaseError) << length;
        EXPECT_EQ(query.AsInteger(0, 0, {}), 7) << length;
    }
}

TEST_F(OddClient, ABlobOfEmptySegmentsEnds) {
    client_.hasEmptySegments = true;
    EXPECT_EQ(Rows(kBlob, kWords), "");
    EXPECT_LE(client_.calls, 2 * static_cast<int>(TQuery::kLongestBlob));
}

TEST_F(OddClient, ASegmentLongerThanItsBufferIsCut) {
    client_.segmentsAreTooLong = true;
    const std::string rows = Rows(kBlob, kWords);
    EXPECT_EQ(rows.substr(0, 4), "abcd");
    EXPECT_EQ(rows.size(), 0x4000U);
}

TEST_F(OddClient, AFetchThatFailsWithoutWordsFails) {
    client_.resultOfFetch = 101;
    EXPECT_EQ(ErrorOf(kNumber, kSeven), "");
}

TEST_F(OddClient, WordsWithoutAnEndAreCut) {
    client_.wordsHaveNoEnd = true;
    client_.failingCall = 1;
    std::string expected = "isc_start_multiple failed";
    for (int line = 1; line < 20; ++line)
        expected += "\nas the test wants it";
    EXPECT_EQ(ErrorOf(kNumber, kSeven), expected);
}

TEST_F(OddClient, NoWordsAtAllAreNoFault) {
    client_.nullsInStatus = true;
    client_.failingCall = 1;
    EXPECT_EQ(ErrorOf(kNumber, kSeven), "? failed\nas the test wants it");
}

}  // namespace
}  // namespace tolvane::test
