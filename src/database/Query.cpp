#include "database/Query.h"

#include "database/ColumnReader.h"
#include "database/DatabaseError.h"
#include "database/Handles.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

constexpr unsigned short kDialect = 3;
constexpr ISC_STATUS kNoMoreRows = 100;

}  // namespace

// An open select: its statement, columns and the rows that are fetched.
struct TCursor {
    TStatement statement;
    TColumnReader reader;
    TRowBuffer rows;
    std::span<const TColumnValue> latest;
    bool atEnd = false;

    TCursor(TTransactionState& transaction, const std::string& text) : statement(transaction) {
        const TClientFunctions& functions = transaction.functions;
        TStatus status(functions);
        functions.prepare(status, &transaction.handle, statement.Handle(), 0, text.c_str(),
                          kDialect, reader.Descriptor());
        status.Check();
        if (reader.Grow()) {
            functions.describe(status, statement.Handle(), SQLDA_VERSION1, reader.Descriptor());
            status.Check();
        }
        reader.Bind();
        if (reader.Count() == 0)
            throw TDatabaseError(std::string("Заявката не връща данни"_cp1251));
        rows = TRowBuffer(reader.Types());
        functions.execute(status, &transaction.handle, statement.Handle(), SQLDA_VERSION1, nullptr);
        status.Check();
    }

    // False at the end of the rows.
    bool FetchLatest(TTransactionState& transaction) {
        latest = {};
        if (atEnd) return false;
        TStatus status(transaction.functions);
        const ISC_STATUS code = transaction.functions.fetch(status, statement.Handle(),
                                                            SQLDA_VERSION1, reader.Descriptor());
        if (code == kNoMoreRows) {
            atEnd = true;
            return false;
        }
        status.Check(code);
        latest = reader.Row(transaction);
        return true;
    }

    bool Fetch(TTransactionState& transaction) {
        if (!FetchLatest(transaction)) return false;
        rows.Append(latest);
        return true;
    }
};

TQuery::TQuery(TTransaction& transaction) : transaction_(&transaction.State()) {}
TQuery::TQuery(TQuery&&) noexcept = default;
TQuery& TQuery::operator=(TQuery&&) noexcept = default;
TQuery::~TQuery() = default;

void TQuery::SetText(std::string text) {
    Close();
    text_ = std::move(text);
}

void TQuery::Open() {
    Close();
    auto cursor = std::make_unique<TCursor>(*transaction_, text_);
    cursor->Fetch(*transaction_);
    cursor_ = std::move(cursor);
}

TCursor& TQuery::Cursor() const {
    if (cursor_ == nullptr) throw TDatabaseError(std::string("Заявката не е отворена"_cp1251));
    return *cursor_;
}

void TQuery::FetchAll() {
    while (Cursor().Fetch(*transaction_)) {
    }
}

bool TQuery::FetchLatest() {
    return Cursor().FetchLatest(*transaction_);
}

std::span<const TColumnValue> TQuery::LatestRow() const noexcept {
    return cursor_ == nullptr ? std::span<const TColumnValue>() : cursor_->latest;
}

void TQuery::Execute() {
    Close();
    TStatus status(transaction_->functions);
    transaction_->functions.executeImmediate(status, transaction_->database, &transaction_->handle,
                                             0, text_.c_str(), kDialect, nullptr);
    status.Check();
}

void TQuery::Close() noexcept {
    cursor_.reset();
}

bool TQuery::IsOpen() const noexcept {
    return cursor_ != nullptr;
}

std::size_t TQuery::RowCount() const noexcept {
    return cursor_ == nullptr ? 0 : cursor_->rows.RowCount();
}

std::size_t TQuery::ColumnCount() const noexcept {
    return cursor_ == nullptr ? 0 : cursor_->reader.Count();
}

std::size_t TQuery::Column(std::string_view alias) const {
    for (std::size_t i = 0; i < ColumnCount(); ++i)
        if (cursor_->reader.Alias(i) == alias) return i;
    throw TDatabaseError(
        std::string("Заявката няма колона "_cp1251).append(1, '"').append(alias).append(1, '"'));
}

TColumnValue TQuery::Value(std::size_t row, std::size_t column) const {
    static const TRowBuffer kNoRows;
    return (cursor_ == nullptr ? kNoRows : cursor_->rows).Value(row, column);
}

bool TQuery::IsNull(std::size_t row, std::size_t column) const {
    return Value(row, column).kind == TValueKind::Null;
}

std::string TQuery::AsText(std::size_t row, std::size_t column,
                           const TRegionalSettings& regional) const {
    return ValueAsText(Value(row, column), regional);
}

std::int32_t TQuery::AsInteger(std::size_t row, std::size_t column,
                               const TRegionalSettings& regional) const {
    const TColumnValue value = Value(row, column);
    return ValueAsInteger(value, cursor_->reader.Alias(column), regional);
}

double TQuery::AsFloat(std::size_t row, std::size_t column,
                       const TRegionalSettings& regional) const {
    const TColumnValue value = Value(row, column);
    return ValueAsFloat(value, cursor_->reader.Alias(column), regional);
}

}  // namespace tolvane
