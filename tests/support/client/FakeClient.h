#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tolvane::test {

// One value of a fake row. A text may be longer than its column.
struct TFakeValue {
    bool isNull = false;
    std::int64_t integer = 0;
    double number = 0;
    std::string_view text = {};
};

inline constexpr TFakeValue kNull{.isNull = true};
constexpr TFakeValue Whole(std::int64_t value) {
    return {.integer = value};
}
constexpr TFakeValue Words(std::string_view value) {
    return {.text = value};
}

// A column as the library describes it: type, length and scale as in XSQLVAR.
struct TFakeColumn {
    std::string_view alias;
    short type = 0;
    short length = 0;
    short scale = 0;
};

// What a statement that contains `words` returns, row after row.
struct TFakeResult {
    std::string_view words;
    std::span<const TFakeColumn> columns;
    std::span<const TFakeValue> values;
};

// A client library in memory: what it answers, which call fails, and what has not been given back.
// It takes no memory from the heap. One thread.
struct TFakeClient {
    std::span<const TFakeResult> results;

    // Failures: the n-th call, counted from 1; 0 for none. A failing call says in its status vector
    // "<name> failed" and then "as the test wants it".
    int failingCall = 0;
    bool failsForGood = false;  // all calls after it as well
    int calls = 0;
    std::string_view firstFailed = {};
    // Is called within each call of the library.
    void (*during)(void* context) = nullptr;
    void* context = nullptr;
    // What fb_cancel_operation was asked for.
    int cancels = 0;
    const void* cancelled = nullptr;
    unsigned short cancelKind = 0;

    // Oddities.
    short indicatorOfNull = -1;
    short indicatorOfValue = 0;
    bool takesPointersAway = false;   // a fetch leaves no address of any value
    bool hasEmptySegments = false;    // BLOBs have no end, and nothing in them
    bool segmentsAreTooLong = false;  // a segment is reported as longer than its buffer
    int columnsAtPrepare = 0;         // not 0: reported instead of the columns that there are
    int columnsAtDescribe = 0;
    short aliasLength = 0;        // not 0: reported instead of the alias's length
    int resultOfFetch = 0;        // not 0: what a fetch returns, without a status vector
    bool wordsHaveNoEnd = false;  // a status vector's text goes on for ever
    bool nullsInStatus = false;   // texts in a status vector are null

    // What is open now.
    int transactions = 0;
    int statements = 0;
    int blobs = 0;
    int misuses = 0;  // calls with a handle that is not open

    struct TStatement {
        bool open = false;
        const TFakeResult* result = nullptr;
        std::size_t nextRow = 0;
    };
    static constexpr int kMostStatements = 8;
    TStatement statement[kMostStatements] = {};
    std::string_view blobText = {};  // of the open BLOB, what is left
};

// Loads the library, and puts its state back to that of a new one.
TFakeClient& NewFakeClient();
// Its name, as TClientLibrary takes it.
const char* FakeClientName();

}  // namespace tolvane::test
