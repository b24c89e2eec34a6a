#include "articles/ArticleLoader.h"

#include <exception>
#include <utility>

#include "articles/ArticleQueries.h"
#include "articles/PromotionPass.h"
#include "articles/RowCopy.h"
#include "text/Cp1251.h"
#include "text/Failure.h"

namespace tolvane {
namespace {

int StepsFor(std::size_t rows) {
    return static_cast<int>(rows) - 1;
}

// What `body` throws; null when it throws nothing.
template <class Body>
std::exception_ptr FailureOf(Body body) noexcept {
    try {
        body();
        return nullptr;
    } catch (...) {
        return std::current_exception();
    }
}

void ShowFailure(TLoadView& view, std::string_view lead,
                 const std::exception_ptr& failure) noexcept {
    try {
        std::rethrow_exception(failure);
    } catch (...) {
        ShowCurrentException(lead, [&](std::string_view text) { view.ShowError(text); });
    }
}

}  // namespace

TArticleLoader::TArticleLoader(TParts parts) : parts_(std::move(parts)) {}

void TArticleLoader::CommitIfActive() {
    if (parts_.inCallersTransaction) return;
    if (parts_.transaction.IsActive()) parts_.transaction.Commit();
}

void TArticleLoader::Restart() {
    CommitIfActive();
    if (!parts_.inCallersTransaction) parts_.transaction.Start();
    parts_.query.Close();
}

void TArticleLoader::ReadBaseCurrency() {
    baseCurrency_.clear();
    Restart();
    parts_.query.SetText(BaseCurrencyQuery());
    parts_.query.Open();
    if (parts_.query.RowCount() > 0) baseCurrency_ = parts_.query.AsText(0, 0, parts_.regional());
    parts_.query.Close();
    CommitIfActive();
}

void TArticleLoader::CreateMissingIndex() {
    CommitIfActive();
    parts_.query.Close();
    parts_.transaction.Start();
    parts_.query.SetText(LotIndexQuery());
    parts_.query.Open();
    const std::size_t column = parts_.query.Column("QTTY");
    if (parts_.query.AsInteger(0, column, parts_.regional()) >= 1) return;
    parts_.query.Close();
    parts_.query.SetText(LotIndexStatement());
    parts_.query.Execute();
}

void TArticleLoader::CheckDatabase() noexcept {
    std::exception_ptr failure = FailureOf([&] { CreateMissingIndex(); });
    // The server builds the index when the transaction is committed, which may fail as well.
    const std::exception_ptr commitFailure = FailureOf([&] { CommitIfActive(); });
    Abandon();
    if (!failure) failure = commitFailure;
    if (failure) ShowFailure(parts_.view, "[FCheckDB failed]: ", failure);
}

// Closes the query and rolls back an active transaction.
void TArticleLoader::Abandon() noexcept {
    // The error that led here is the one to show.
    FailureOf([&] {
        if (parts_.transaction.IsActive()) parts_.transaction.Rollback();
    });
    parts_.query.Close();
}

void TArticleLoader::LoadArticles() noexcept {
    const std::exception_ptr failure = FailureOf([&] { FillTable(); });
    if (!failure) return;
    FailureOf([&] { parts_.wait.Hide(); });
    Abandon();
    FailureOf([&] { parts_.view.ResumeDisplay(); });
    ShowFailure(parts_.view, "[REFRESH DATA]: ", failure);
}

void TArticleLoader::FillTable() {
    const TRegionalSettings regional = parts_.regional();
    if (LoadRows(regional)) MarkPromotions(regional);
}

bool TArticleLoader::LoadRows(const TRegionalSettings& regional) {
    parts_.articles.Clear();
    promotions_.clear();
    parts_.view.SuspendDisplay();
    Restart();
    parts_.query.SetText(ArticleQuery());
    parts_.query.Open();
    if (parts_.query.RowCount() == 0) return false;
    const TCopied copied = CopyRows(regional);
    parts_.wait.Show(StepsFor(copied.rows));
    for (std::size_t row = 0; row < parts_.articles.RowCount(); ++row)
        parts_.wait.Step();
    if (copied.failure) std::rethrow_exception(copied.failure);
    Restart();
    return true;
}

// Converts each row when it comes, so that the rows never lie in memory beside the table, and the
// server already looks for the next ones.
TArticleLoader::TCopied TArticleLoader::CopyRows(const TRegionalSettings& regional) {
    TCopied copied;
    TRowCopy copy(parts_.query, parts_.articles, regional);
    try {
        do {
            ++copied.rows;
            if (copied.failure) continue;
            try {
                copy.Append(parts_.query.LatestRow());
            } catch (...) {
                copied.failure = std::current_exception();
            }
        } while (parts_.query.FetchLatest());
    } catch (...) {
        parts_.articles.Clear();
        throw;
    }
    copy.Finish();
    return copied;
}

void TArticleLoader::MarkPromotions(const TRegionalSettings& regional) {
    parts_.query.SetText(std::string(PromotionQuery()));
    parts_.query.Open();
    parts_.query.FetchAll();
    parts_.wait.Show(StepsFor(parts_.query.RowCount()));
    promotions_ = MarkPromotedArticles(parts_.query, parts_.articles, parts_.clock.Now(), regional);
    parts_.sort.SetLoaded();
    parts_.view.ResumeDisplay();
    CommitIfActive();
    parts_.query.Close();
    parts_.wait.Hide();
}

}  // namespace tolvane
