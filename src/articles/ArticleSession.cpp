#include "articles/ArticleSession.h"

#include <cstdint>
#include <utility>

#include "articles/ArticleSearch.h"
#include "database/ClientLibrary.h"
#include "database/Query.h"
#include "database/Transaction.h"
#include "text/Cp1251.h"
#include "text/Failure.h"

namespace tolvane {

// The host's connection, as this session uses it.
struct TArticleSession::TConnection {
    TConnection(const char* clientLibrary, void* handle)
        : cell(handle),
          connection(ConnectionIn(handle)),
          library(clientLibrary),
          transaction(library, handle),
          query(transaction) {}
    bool IsOf(void* handle) const { return handle == cell && ConnectionIn(handle) == connection; }

    void* cell;
    std::uintptr_t connection;  // what the cell held
    TClientLibrary library;
    TTransaction transaction;
    TQuery query;
    std::unique_ptr<TArticleLoader> loader;
};

TArticleSession::TArticleSession(TLoadView& view, const TLocalClock& clock,
                                 std::function<TRegionalSettings()> regional)
    : view_(view), clock_(clock), askRegional_(std::move(regional)), regional_(askRegional_()) {}

TArticleSession::~TArticleSession() {
    const auto patience = Patience();
    connection_.reset();
}

std::unique_ptr<TPatience> TArticleSession::Patience() noexcept {
    if (!connection_) return nullptr;
    try {
        return view_.Watch({connection_->library, connection_->cell});
    } catch (...) {
        return nullptr;
    }
}

void TArticleSession::Connect(const char* clientLibrary, void* handle, TWaitView& wait) {
    if (connection_ && connection_->IsOf(handle)) return;
    {
        const auto patience = Patience();
        connection_.reset();
    }
    auto made = std::make_unique<TConnection>(clientLibrary, handle);
    made->loader = std::make_unique<TArticleLoader>(
        TArticleLoader::TParts{made->transaction, made->query, *articles_, sort_, clock_,
                               [this] { return regional_ = askRegional_(); }, wait, *this});
    connection_ = std::move(made);
}

void TArticleSession::ReadBaseCurrency() {
    const auto patience = Patience();
    connection_->loader->ReadBaseCurrency();
}

void TArticleSession::CheckDatabase() noexcept {
    const auto patience = Patience();
    connection_->loader->CheckDatabase();
}

void TArticleSession::LoadArticles() noexcept {
    if (!connection_ || IsBusy()) return;
    loading_ = true;
    {
        const auto patience = Patience();
        connection_->loader->LoadArticles();
    }
    loading_ = false;
}

void TArticleSession::Refresh() noexcept {
    if (IsBusy()) return;
    sort_.Clear();
    LoadArticles();
}

void TArticleSession::SuspendDisplay() {
    suspended_ = true;
    view_.SuspendDisplay();
}

void TArticleSession::ResumeDisplay() {
    suspended_ = false;
    view_.ResumeDisplay();
}

void TArticleSession::ShowError(std::string_view text) {
    view_.ShowError(text);
}

std::string TArticleSession::DisplayText(TRowId row, TField field) const {
    return articles_->DisplayText(
        row, field, regional_,
        connection_ ? connection_->loader->BaseCurrency() : std::string_view());
}

bool TArticleSession::ClickTitle(TField field) {
    sort_.ClickTitle(field);
    if (articles_->RowCount() == 0) return false;
    SortArticles(*articles_, field, sort_.ascending);
    return true;
}

void TArticleSession::SetSearchText(std::string_view text) {
    searchText_ = Trim(text).empty() ? std::string() : UpperCase(text);
}

std::optional<TRowId> TArticleSession::FindNext(std::optional<TRowId> current) const {
    const std::size_t from = current ? articles_->IndexOf(*current) + 1 : 0;
    const std::optional<TRowId> next = FindFrom(from);
    return next ? next : FindFirst();
}

std::optional<TRowId> TArticleSession::FindFrom(std::size_t index) const {
    const std::optional<std::size_t> found =
        FindInColumn(*articles_, searchField_, index, searchText_, regional_);
    if (!found) return std::nullopt;
    return articles_->RowAt(*found);
}

void TArticleSession::End() noexcept {
    if (!connection_ || loading_) return;
    const auto patience = Patience();
    try {
        connection_->query.Close();
        TTransaction& transaction = connection_->transaction;
        if (!transaction.IsActive()) return;
        if (abandoned_)
            transaction.Rollback();
        else
            transaction.Commit();
    } catch (...) {
        // The error that made the start fail has been shown already, and this one often has the
        // same cause: a dead connection.
        if (!abandoned_)
            ShowCurrentException({}, [this](std::string_view text) { view_.ShowError(text); });
    }
}

}  // namespace tolvane
