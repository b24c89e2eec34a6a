#include "database/Query.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "database/DatabaseError.h"
#include "tests/support/database/TestDatabase.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

constexpr std::string_view kTables = R"(
create table EVERY_TYPE (
    A_SMALLINT smallint,
    AN_INTEGER integer,
    A_BIGINT bigint,
    A_NUMERIC_4 numeric(4,1),
    A_NUMERIC_9 numeric(9,2),
    A_NUMERIC_18 numeric(18,6),
    A_FLOAT float,
    A_DOUBLE double precision,
    A_CHAR char(8),
    A_VARCHAR varchar(8),
    A_DATE date,
    A_TIME time,
    A_TIMESTAMP timestamp,
    A_BLOB blob sub_type text,
    A_BOOLEAN boolean,
    A_UTF8 varchar(8) character set utf8,
    A_UTF8_BLOB blob sub_type text character set utf8
);
)";

class QueryTest : public testing::Test {
protected:
    QueryTest() : database_(kTables), transaction_(Library(), database_.Host().Handle()) {
        regional_.decimalSeparator = ',';
        regional_.shortDatePattern = "dd.MM.yyyy";
        regional_.longTimePattern = "HH:mm:ss";
        transaction_.Start();
        query_.emplace(transaction_);
    }

    // Opens the query in a transaction that sees everything committed so far.
    void Open(std::string_view text) {
        transaction_.Commit();
        transaction_.Start();
        query_->SetText(FromUtf8(text));
        query_->Open();
        query_->FetchAll();
    }
    std::string Text(std::string_view column, std::size_t row = 0) {
        return ToUtf8(query_->AsText(row, query_->Column(column), regional_));
    }
    std::string ErrorOf(std::string_view text) {
        try {
            Open(text);
        } catch (const TDatabaseError& error) {
            return ToUtf8(error.what());
        }
        return "no error";
    }

    TTestDatabase database_;
    TTransaction transaction_;
    std::optional<TQuery> query_;
    TRegionalSettings regional_;
};

TEST_F(QueryTest, EveryTypeReadsAsText) {
    database_.Host().Run(
        "insert into EVERY_TYPE values (-32768, 2147483647, -9223372036854775808, 12.5, -0.05, "
        "1234.500000, 4.3, 0.1, 'кг', ' бр ', '2024-02-29', '23:59:58', '2024-02-29 01:02:03', "
        "'текст', true, 'Щъ', 'Юя')");
    Open("select * from EVERY_TYPE");
    EXPECT_EQ(Text("A_SMALLINT"), "-32768");
    EXPECT_EQ(Text("AN_INTEGER"), "2147483647");
    EXPECT_EQ(Text("A_BIGINT"), "-9223372036854775808");
    EXPECT_EQ(Text("A_NUMERIC_4"), "12,5");
    EXPECT_EQ(Text("A_NUMERIC_9"), "-0,05");
    EXPECT_EQ(Text("A_NUMERIC_18"), "1234,5");
    EXPECT_EQ(Text("A_FLOAT"), "4,3");
    EXPECT_EQ(Text("A_DOUBLE"), "0,1");
    EXPECT_EQ(Text("A_CHAR"), "кг");
    EXPECT_EQ(Text("A_VARCHAR"), " бр ");
    EXPECT_EQ(Text("A_DATE"), "29.02.2024");
    EXPECT_EQ(Text("A_TIME"), "23:59:58");
    EXPECT_EQ(Text("A_TIMESTAMP"), "29.02.2024 01:02:03");
    EXPECT_EQ(Text("A_BLOB"), "текст");
    EXPECT_EQ(Text("A_BOOLEAN"), "1");
    EXPECT_EQ(Text("A_UTF8"), "Щъ");
    EXPECT_EQ(Text("A_UTF8_BLOB"), "Юя");
}

TEST_F(QueryTest, EveryTypeReadsAsNumberWhereItIsOne) {
    database_.Host().Run(
        "insert into EVERY_TYPE values (7, 7, 7, 7, 7, 7, 7, 7, '7', '7', null, null, null, '7', "
        "true, '7', null)");
    Open("select * from EVERY_TYPE");
    for (const char* name :
         {"A_SMALLINT", "AN_INTEGER", "A_BIGINT", "A_NUMERIC_4", "A_NUMERIC_9", "A_NUMERIC_18",
          "A_FLOAT", "A_DOUBLE", "A_CHAR", "A_VARCHAR", "A_BLOB", "A_UTF8"}) {
        EXPECT_EQ(query_->AsInteger(0, query_->Column(name), regional_), 7) << name;
        EXPECT_EQ(query_->AsFloat(0, query_->Column(name), regional_), 7.0) << name;
    }
    EXPECT_EQ(query_->AsInteger(0, query_->Column("A_BOOLEAN"), regional_), 1);
}

TEST_F(QueryTest, SinglePrecisionKeepsItsDecimalDigits) {
    database_.Host().Run("insert into EVERY_TYPE (A_FLOAT) values (12.34)");
    Open("select A_FLOAT from EVERY_TYPE");
    EXPECT_EQ(query_->AsFloat(0, 0, regional_), 12.34);
}

TEST_F(QueryTest, EveryTypeMayBeNull) {
    database_.Host().Run("insert into EVERY_TYPE (A_SMALLINT) values (null)");
    Open("select * from EVERY_TYPE");
    ASSERT_EQ(query_->ColumnCount(), 17U);
    for (std::size_t column = 0; column < query_->ColumnCount(); ++column) {
        EXPECT_TRUE(query_->IsNull(0, column));
        EXPECT_EQ(query_->AsText(0, column, regional_), "");
        EXPECT_EQ(query_->AsInteger(0, column, regional_), 0);
        EXPECT_EQ(query_->AsFloat(0, column, regional_), 0.0);
    }
}

TEST_F(QueryTest, AnEmptyTextIsNotNull) {
    database_.Host().Run("insert into EVERY_TYPE (A_CHAR, A_VARCHAR, A_BLOB) values ('', '', '')");
    Open("select A_CHAR, A_VARCHAR, A_BLOB from EVERY_TYPE");
    for (std::size_t column = 0; column < 3; ++column) {
        EXPECT_FALSE(query_->IsNull(0, column));
        EXPECT_EQ(query_->AsText(0, column, regional_), "");
    }
}

TEST_F(QueryTest, ALongTextBlobIsReadWhole) {
    // 60,000 characters come in more than one segment.
    database_.Host().Run("insert into EVERY_TYPE (A_BLOB) values (rpad('', 30000, 'абв'))");
    database_.Host().Run(
        "update EVERY_TYPE set A_BLOB = A_BLOB || cast(rpad('', 30000, 'где') as varchar(30000))");
    Open("select A_BLOB from EVERY_TYPE");
    const std::string text = query_->AsText(0, 0, regional_);
    ASSERT_EQ(text.size(), 60000U);
    EXPECT_EQ(ToUtf8(text.substr(29997, 6)), "абвгде");
    EXPECT_EQ(ToUtf8(text.substr(59997)), "где");
}

TEST_F(QueryTest, ABlobIsReadUpToItsLimit) {
    database_.Host().Run("insert into EVERY_TYPE (A_BLOB) values (rpad('', 32000, 'x'))");
    for (int i = 0; i < 6; ++i)
        database_.Host().Run("update EVERY_TYPE set A_BLOB = A_BLOB || A_BLOB");
    EXPECT_EQ(database_.Host().Ask("select octet_length(A_BLOB) from EVERY_TYPE"), "2048000");
    Open("select A_BLOB from EVERY_TYPE");
    EXPECT_EQ(query_->AsText(0, 0, regional_).size(), TQuery::kLongestBlob);
}

TEST_F(QueryTest, ColumnsAreFoundByTheirCyrillicAliasInCodePage1251) {
    Open("select 1 as \"Код за везна\", 2 as \"Прод.ЛВ.цена едро\", 3 X from RDB$DATABASE");
    EXPECT_EQ(query_->Column("Код за везна"_cp1251), 0U);
    EXPECT_EQ(query_->Column("Прод.ЛВ.цена едро"_cp1251), 1U);
    EXPECT_EQ(query_->Column("X"), 2U);
    EXPECT_THROW(query_->Column("x"), TDatabaseError);
}

TEST_F(QueryTest, AMissingColumnIsNamed) {
    Open("select 1 as A from RDB$DATABASE");
    try {
        query_->Column("Мярка"_cp1251);
        FAIL();
    } catch (const TDatabaseError& error) {
        EXPECT_EQ(ToUtf8(error.what()), "Заявката няма колона \"Мярка\"");
    }
}

TEST_F(QueryTest, AFailedConversionNamesColumnAndValue) {
    Open("select 'дванадесет' as \"Ном.код\" from RDB$DATABASE");
    try {
        query_->AsInteger(0, 0, regional_);
        FAIL();
    } catch (const TDatabaseError& error) {
        EXPECT_EQ(ToUtf8(error.what()), "Колона \"Ном.код\": \"дванадесет\" не е цяло число");
    }
}

TEST_F(QueryTest, MoreColumnsThanUsualAreRead) {
    std::string text = "select 0 as C0";
    for (int i = 1; i < 100; ++i)
        text += ", " + std::to_string(i) + " as C" + std::to_string(i);
    Open(text + " from RDB$DATABASE");
    ASSERT_EQ(query_->ColumnCount(), 100U);
    EXPECT_EQ(Text("C0"), "0");
    EXPECT_EQ(Text("C99"), "99");
}

TEST_F(QueryTest, OpenFetchesTheFirstRowAndFetchAllTheRest) {
    query_->SetText("select RDB$RELATION_ID from RDB$RELATIONS");
    query_->Open();
    EXPECT_EQ(query_->RowCount(), 1U);
    query_->FetchAll();
    const std::size_t all = query_->RowCount();
    EXPECT_GT(all, 10U);
    query_->FetchAll();
    EXPECT_EQ(query_->RowCount(), all);
}

TEST_F(QueryTest, FetchLatestShowsEachRowAndKeepsNone) {
    query_->SetText(
        "select 1 as N, 'one' as T from RDB$DATABASE union all "
        "select cast(2.50 as numeric(9,2)), 'two' from RDB$DATABASE union all "
        "select null, null from RDB$DATABASE");
    query_->Open();
    ASSERT_EQ(query_->LatestRow().size(), 2U);
    EXPECT_EQ(ValueAsText(query_->LatestRow()[0], regional_), "1");
    EXPECT_EQ(query_->LatestRow()[1].text, "one");
    ASSERT_TRUE(query_->FetchLatest());
    EXPECT_EQ(ValueAsText(query_->LatestRow()[0], regional_), "2,5");
    EXPECT_EQ(query_->LatestRow()[1].text, "two");
    ASSERT_TRUE(query_->FetchLatest());
    EXPECT_EQ(query_->LatestRow()[0].kind, TValueKind::Null);
    EXPECT_EQ(query_->RowCount(), 1U);
    EXPECT_FALSE(query_->FetchLatest());
    EXPECT_FALSE(query_->FetchLatest());
    EXPECT_TRUE(query_->LatestRow().empty());
}

TEST_F(QueryTest, FetchLatestNeedsAnOpenQuery) {
    EXPECT_THROW(query_->FetchLatest(), TDatabaseError);
    EXPECT_TRUE(query_->LatestRow().empty());
}

TEST_F(QueryTest, AnEmptyResultHasNoRows) {
    query_->SetText("select * from EVERY_TYPE");
    query_->Open();
    EXPECT_TRUE(query_->IsOpen());
    EXPECT_EQ(query_->RowCount(), 0U);
    query_->FetchAll();
    EXPECT_EQ(query_->RowCount(), 0U);
    EXPECT_THROW(query_->Value(0, 0), std::out_of_range);
}

TEST_F(QueryTest, CloseEndsReading) {
    Open("select 1 from RDB$DATABASE");
    query_->Close();
    EXPECT_FALSE(query_->IsOpen());
    EXPECT_EQ(query_->RowCount(), 0U);
    EXPECT_THROW(query_->Value(0, 0), std::out_of_range);
    EXPECT_THROW(query_->FetchAll(), TDatabaseError);
    query_->Close();
}

TEST_F(QueryTest, SetTextClosesTheQuery) {
    Open("select 1 from RDB$DATABASE");
    query_->SetText("select 2 from RDB$DATABASE");
    EXPECT_FALSE(query_->IsOpen());
    query_->Open();
    EXPECT_EQ(query_->AsInteger(0, 0, regional_), 2);
}

TEST_F(QueryTest, ItCanBeClosedAfterItsTransactionHasEnded) {
    Open("select 1 from RDB$DATABASE");
    transaction_.Commit();
    query_->Close();
    EXPECT_FALSE(query_->IsOpen());
}

TEST_F(QueryTest, AStatementWithoutRowsCannotBeOpenedAndIsNotRun) {
    EXPECT_EQ(ErrorOf("insert into EVERY_TYPE (A_CHAR) values ('x')"), "Заявката не връща данни");
}

TEST_F(QueryTest, ABadStatementIsReportedWithItsSqlCode) {
    query_->SetText("select from nowhere");
    try {
        query_->Open();
        FAIL();
    } catch (const TDatabaseError& error) {
        EXPECT_EQ(error.SqlCode(), -104);
        EXPECT_FALSE(query_->IsOpen());
    }
}

TEST_F(QueryTest, AnErrorInALaterRowIsReported) {
    EXPECT_NE(ErrorOf("select 1 / (N - 1) from (select 0 N from RDB$DATABASE union all select 1 N "
                      "from RDB$DATABASE) X")
                  .find("divide by zero"),
              std::string::npos);
}

TEST_F(QueryTest, MoveAssignmentFreesTheTargetsStatement) {
    Open("select 1 as A from RDB$DATABASE");
    TQuery other(transaction_);
    other.SetText("select 2 as B from RDB$DATABASE");
    other.Open();
    *query_ = std::move(other);
    EXPECT_EQ(query_->AsInteger(0, query_->Column("B"), regional_), 2);
}

}  // namespace
}  // namespace tolvane::test
