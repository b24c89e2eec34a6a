#include "tests/integration/articles/LoadFixture.h"

#include "text/Cp1251.h"

namespace tolvane::test {

void TRecordingView::ShowError(std::string_view text) {
    Note("error " + ToUtf8(text));
}

void TRecordingView::Note(std::string event) {
    if (onEvent) onEvent(event);
    events.push_back(std::move(event));
}

LoadTest::LoadTest() {
    regional_.decimalSeparator = ',';
    regional_.shortDatePattern = "dd.MM.yyyy";
    regional_.longTimePattern = "HH:mm:ss";
    Use(Schema());
}

void LoadTest::Use(std::string_view schema) {
    loader_.reset();
    query_.reset();
    transaction_.reset();
    database_ = std::make_unique<TTestDatabase>(schema);
    Run("insert into N_CURRENCY values (1, 'Български лев', 'лв', 1, 1, 1)");
    Run("insert into N_CURRENCY values (2, 'Евро', 'EUR', 1.95583, 1, 0)");
    Run("insert into N_CURRENCY values (4, 'Турска лира', 'TRY', 5.62, 100, 0)");
    Run("insert into N_PRIMARY_MEASUREUNITS values (1, 'кг', 0)");
    Run("insert into N_PRIMARY_MEASUREUNITS values (2, 'бр', 1)");
    Run("insert into N_WAT values (2, 'Б', 20)");
    Run("insert into N_PLUGROUPS values (7, 'Плодове')");
    Connect();
}

void LoadTest::Connect() {
    loader_.reset();
    query_.reset();
    transaction_ = std::make_unique<TTransaction>(Library(), database_->Host().Handle());
    query_ = std::make_unique<TQuery>(*transaction_);
    loader_ = std::make_unique<TArticleLoader>(
        TArticleLoader::TParts{*transaction_, *query_, articles_, sort_, clock_,
                               [this] { return regional_; }, view_, view_});
}

void LoadTest::Insert(const std::string& table, const TColumns& columns) {
    std::string names;
    std::string values;
    for (const auto& [name, value] : columns) {
        names += (names.empty() ? "" : ", ") + name;
        values += (values.empty() ? "" : ", ") + value;
    }
    Run("insert into " + table + " (" + names + ") values (" + values + ")");
}

void LoadTest::AddArticle(int number, const TColumns& columns) {
    TColumns all = columns;
    const std::string digits = std::to_string(number);
    all.merge(TColumns{{"PLU_NUMB", digits},
                       {"PLU_N_NUMB", "'ПЛ-" + digits + "'"},
                       {"PLU_SCALE_NUMB", digits},
                       {"PLU_NAME", "'Ябълки'"},
                       {"PLU_ECR_NAME", "'ЯБЪЛКИ'"},
                       {"PLU_FOREGHN_NAME", "'Ябълки'"},
                       {"PLU_BUY_PRICE", "1.5"},
                       {"PLU_SELL_PRICE", "5"},
                       {"PLU_TRADE_PRICE", "4"},
                       {"PLU_BUYCURR_ID", "1"},
                       {"PLU_SELLCURR_ID", "1"},
                       {"PLU_MEASUREUNIT_ID", "1"},
                       {"PLU_TAXGROUP_ID", "2"},
                       {"PLU_GROUP_ID", "7"},
                       {"PLU_SELL_DISABLED_", "0"},
                       {"PLU_FORTERMINALS", "'1'"},
                       {"PLU_FORSCALES", "'0'"},
                       {"PLU_IS_DELETED_", "0"}});
    Insert("PLUES", all);
}

void LoadTest::AddManyArticles() {
    Run("insert into PLUES select X.N, 'K', X.N, 'Артикул с някакво име', 'E', 'L', 1, 2, 3, 1, 1, "
        "1, 2, 7, 0, '1', '0', 0 from (with recursive R as (select 2 N from RDB$DATABASE union all "
        "select N + 1 from R where N < 1000) select N + 0 N from R) X");
}

void LoadTest::AddPromotion(int id, int article, const TColumns& columns) {
    TColumns all = columns;
    all.merge(TColumns{{"PR_ID", std::to_string(id)},
                       {"PR_PLUNUMB", std::to_string(article)},
                       {"PR_PRIORITY", "1"},
                       {"PR_DAYOFWEEK", "'1111111'"},
                       {"PR_HAVE_CARD_", "0"},
                       {"PR_PACKET_TYPE", "1"},
                       {"PR_PRICE", "3.99"},
                       {"PR_CURRENCY", "1"},
                       {"PR_ISACTIVE_", "1"}});
    Insert("PROMOTIONS", all);
}

std::vector<std::string> LoadTest::LoadEvents() {
    view_.events.clear();
    loader_->LoadArticles();
    return view_.events;
}

std::string LoadTest::Text(std::size_t index, TField field) const {
    return ToUtf8(articles_.Text(articles_.RowAt(index), field));
}

std::string LoadTest::Shown(std::size_t index, TField field) const {
    return ToUtf8(
        articles_.DisplayText(articles_.RowAt(index), field, regional_, loader_->BaseCurrency()));
}

double LoadTest::Float(std::size_t index, TField field) const {
    return articles_.Float(articles_.RowAt(index), field);
}

std::vector<int> LoadTest::Integers(TField field) const {
    std::vector<int> integers;
    for (const TRowId row : articles_.Order())
        integers.push_back(articles_.Integer(row, field));
    return integers;
}

}  // namespace tolvane::test
