#include "articles/ArticleReading.h"

#include "articles/ArticleLoader.h"
#include "articles/ArticleQueries.h"
#include "database/DatabaseError.h"
#include "database/Query.h"
#include "database/Transaction.h"
#include "text/Failure.h"

namespace tolvane {
namespace {

// Where the loader shows nothing.
class TNoView : public TWaitView, public TLoadView {
public:
    void Show(int /*count*/) override {}
    void Step() override {}
    void Hide() override {}
    void SuspendDisplay() override {}
    void ResumeDisplay() override {}
    // Failures are thrown.
    void ShowError(std::string_view /*text*/) override {}
};

// Whatever `body` throws becomes a TDatabaseError.
template <class Body>
auto AsDatabaseError(Body body) {
    try {
        return body();
    } catch (const TDatabaseError&) {
        throw;
    } catch (...) {
        throw TDatabaseError(MessageOfCurrentException());
    }
}

// Cut as the article table cuts the names of currencies.
std::string BaseCurrencyName(TQuery& query, const TRegionalSettings& regional) {
    query.SetText(std::string(BaseCurrencyNameQuery()));
    query.Open();
    std::string name = query.RowCount() > 0 ? query.AsText(0, 0, regional) : std::string();
    query.Close();
    return name.substr(0, FieldInfo(TField::CURR_SELL_NAME).maxChars);
}

bool HasIndex(TQuery& query) {
    query.SetText(LotIndexQuery());
    query.Open();
    const bool has = query.AsInteger(0, query.Column("QTTY"), {}) >= 1;
    query.Close();
    return has;
}

}  // namespace

TArticleReading ReadArticles(const TClientLibrary& library, void* database,
                             const TLocalClock& clock, const TRegionalSettings& regional) {
    return AsDatabaseError([&] {
        TArticleReading reading;
        TTransaction transaction(library, database, TTransactionKind::ReadOnly);
        TQuery query(transaction);
        TSortState sort;
        TNoView view;
        TArticleLoader loader({.transaction = transaction,
                               .query = query,
                               .articles = reading.articles,
                               .sort = sort,
                               .clock = clock,
                               .regional = [&] { return regional; },
                               .wait = view,
                               .view = view,
                               .inCallersTransaction = true});
        transaction.Start();
        loader.ReadBaseCurrency();
        loader.FillTable();
        query.Close();
        reading.baseCurrencyName = BaseCurrencyName(query, regional);
        transaction.Commit();
        reading.promotions = loader.Promotions();
        reading.baseCurrency = loader.BaseCurrency();
        return reading;
    });
}

bool HasArticleIndex(const TClientLibrary& library, void* database) {
    return AsDatabaseError([&] {
        TTransaction transaction(library, database, TTransactionKind::ReadOnly);
        TQuery query(transaction);
        transaction.Start();
        return HasIndex(query);
    });
}

bool CreateArticleIndex(const TClientLibrary& library, void* database) {
    return AsDatabaseError([&] {
        TTransaction transaction(library, database);
        TQuery query(transaction);
        transaction.Start();
        if (HasIndex(query)) return false;
        query.SetText(LotIndexStatement());
        query.Execute();
        // The server builds it now, which may fail as well.
        transaction.Commit();
        return true;
    });
}

}  // namespace tolvane
