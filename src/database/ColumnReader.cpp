#include "database/ColumnReader.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "database/DatabaseError.h"
#include "database/Handles.h"
#include "database/Query.h"
#include "database/Unaligned.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

constexpr std::size_t kUsualColumns = 32;
constexpr short kTextOfUnknown = 255;
constexpr std::size_t kSegment = 0x4000;
constexpr ISC_SHORT kNullable = 1;

short TypeOf(const XSQLVAR& variable) {
    return static_cast<short>(variable.sqltype & ~kNullable);
}

TValueKind KindOf(short type) {
    switch (type) {
        case SQL_SHORT:
        case SQL_LONG:
        case SQL_INT64:
            return TValueKind::Integer;
        case SQL_FLOAT:
        case SQL_DOUBLE:
        case SQL_D_FLOAT:
            return TValueKind::Float;
        case SQL_TYPE_DATE:
            return TValueKind::Date;
        case SQL_TYPE_TIME:
            return TValueKind::Time;
        case SQL_TIMESTAMP:
            return TValueKind::Timestamp;
        case SQL_BOOLEAN:
            return TValueKind::Boolean;
        default:
            return TValueKind::Text;
    }
}

bool IsKnown(short type) {
    return KindOf(type) != TValueKind::Text || type == SQL_TEXT || type == SQL_VARYING ||
           type == SQL_BLOB;
}

// At least what is read of any type but a text, whatever length is reported.
std::size_t SizeOf(const XSQLVAR& variable) {
    const auto length = static_cast<std::size_t>(static_cast<unsigned short>(variable.sqllen));
    const std::size_t size = TypeOf(variable) == SQL_VARYING ? length + sizeof(ISC_USHORT) : length;
    return std::max(size, sizeof(std::int64_t));
}

std::int64_t ReadInteger(const XSQLVAR& variable) {
    switch (TypeOf(variable)) {
        case SQL_SHORT:
            return Get<std::int16_t>(variable.sqldata);
        case SQL_LONG:
            return Get<std::int32_t>(variable.sqldata);
        default:
            return Get<std::int64_t>(variable.sqldata);
    }
}

// Single precision becomes the shortest decimal number that denotes it, so that 4.3 stays 4.3.
double Widen(float value) {
    std::array<char, 32> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    double wide = value;
    std::from_chars(digits.data(), written.ptr, wide);
    return wide;
}

std::string_view ReadText(const XSQLVAR& variable) {
    if (TypeOf(variable) == SQL_VARYING) {
        const std::size_t length = std::min<std::size_t>(
            Get<ISC_USHORT>(variable.sqldata), static_cast<unsigned short>(variable.sqllen));
        return {variable.sqldata + sizeof(ISC_USHORT), length};
    }
    const std::string_view text(variable.sqldata, static_cast<unsigned short>(variable.sqllen));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string ReadBlob(TTransactionState& transaction, ISC_QUAD id) {
    TBlob blob(transaction, id);
    std::string text;
    std::array<char, kSegment> segment{};
    // Empty segments count as well, so that it ends in any case.
    for (std::size_t read = 0; read < TQuery::kLongestBlob;) {
        unsigned short length = 0;
        TStatus status(transaction.functions);
        const ISC_STATUS code = transaction.functions.getSegment(status, blob.Handle(), &length,
                                                                 kSegment, segment.data());
        if (code == isc_segstr_eof) break;
        // A segment longer than the buffer comes in pieces.
        if (code != isc_segment) status.Check(code);
        text.append(segment.data(), std::min<std::size_t>(length, segment.size()));
        read += std::max<std::size_t>(length, 1);
    }
    text.resize(std::min(text.size(), TQuery::kLongestBlob));
    return text;
}

}  // namespace

TColumnReader::TColumnReader() {
    Resize(kUsualColumns);
}

void TColumnReader::Resize(std::size_t columns) {
    descriptor_.assign(1 + (XSQLDA_LENGTH(columns) - 1) / sizeof(XSQLVAR), {});
    Descriptor()->version = SQLDA_VERSION1;
    Descriptor()->sqln = static_cast<ISC_SHORT>(columns);
}

bool TColumnReader::Grow() {
    const ISC_SHORT columns = Descriptor()->sqld;
    if (columns <= Descriptor()->sqln) return false;
    Resize(static_cast<std::size_t>(columns));
    return true;
}

void TColumnReader::Bind() {
    if (Descriptor()->sqld < 0 || Descriptor()->sqld > Descriptor()->sqln)
        throw TDatabaseError(std::string("Неочакван брой колони: "_cp1251) +
                             std::to_string(Descriptor()->sqld));
    const auto count = static_cast<std::size_t>(Descriptor()->sqld);
    XSQLVAR* const variables = Descriptor()->sqlvar;
    std::vector<std::size_t> offsets;
    std::size_t words = 0;
    for (std::size_t i = 0; i < count; ++i) {
        XSQLVAR& variable = variables[i];
        if (!IsKnown(TypeOf(variable))) {
            variable.sqltype = SQL_VARYING;
            variable.sqllen = kTextOfUnknown;
            variable.sqlscale = 0;
            variable.sqlsubtype = 0;
        }
        variable.sqltype = static_cast<ISC_SHORT>(variable.sqltype | kNullable);
        types_.push_back({KindOf(TypeOf(variable)), static_cast<std::int8_t>(variable.sqlscale)});
        offsets.push_back(words);
        words += (SizeOf(variable) + sizeof(std::int64_t) - 1) / sizeof(std::int64_t);
    }
    data_.resize(words + 1);
    nulls_.resize(count);
    values_.resize(count);
    blobs_.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        variables[i].sqldata = reinterpret_cast<ISC_SCHAR*>(data_.data() + offsets[i]);
        variables[i].sqlind = &nulls_[i];
    }
}

const XSQLVAR& TColumnReader::Variable(std::size_t column) const noexcept {
    return reinterpret_cast<const XSQLDA*>(descriptor_.data())->sqlvar[column];
}

std::string_view TColumnReader::Alias(std::size_t column) const {
    const XSQLVAR& variable = Variable(column);
    const auto length = static_cast<unsigned short>(variable.aliasname_length);
    return {variable.aliasname, std::min<std::size_t>(length, sizeof variable.aliasname)};
}

TColumnValue TColumnReader::Read(std::size_t column, TTransactionState& transaction) {
    const XSQLVAR& variable = Variable(column);
    if (nulls_[column] < 0 || variable.sqldata == nullptr) return {};
    TColumnValue value;
    value.kind = types_[column].kind;
    value.scale = types_[column].scale;
    switch (value.kind) {
        case TValueKind::Integer:
            value.integer = ReadInteger(variable);
            break;
        case TValueKind::Float:
            value.number = TypeOf(variable) == SQL_FLOAT ? Widen(Get<float>(variable.sqldata))
                                                         : Get<double>(variable.sqldata);
            break;
        case TValueKind::Date:
            value.days = Get<ISC_DATE>(variable.sqldata);
            break;
        case TValueKind::Time:
            value.ticks = Get<ISC_TIME>(variable.sqldata);
            break;
        case TValueKind::Timestamp:
            value.days = Get<ISC_TIMESTAMP>(variable.sqldata).timestamp_date;
            value.ticks = Get<ISC_TIMESTAMP>(variable.sqldata).timestamp_time;
            break;
        case TValueKind::Boolean:
            value.integer = *variable.sqldata != 0 ? 1 : 0;
            break;
        default:
            if (TypeOf(variable) == SQL_BLOB) {
                blobs_[column] = ReadBlob(transaction, Get<ISC_QUAD>(variable.sqldata));
                value.text = blobs_[column];
            } else {
                value.text = ReadText(variable);
            }
    }
    return value;
}

std::span<const TColumnValue> TColumnReader::Row(TTransactionState& transaction) {
    for (std::size_t i = 0; i < values_.size(); ++i)
        values_[i] = Read(i, transaction);
    return values_;
}

}  // namespace tolvane
