#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "command/Ledger.h"
#include "command/ScaleArticles.h"
#include "command/ScaleJob.h"
#include "command/WritePlan.h"
#include "upload/ArticleDelete.h"
#include "upload/ArticleWriter.h"

namespace tolvane {

// A job that keeps the scale's ledger: loads it before the scale is opened, and saves how the job
// ended.
class TLedgerJob : public TScaleJob {
public:
    struct TLedgerParts {
        TLineChoices choices;
        std::chrono::seconds maxAge;
        std::function<std::chrono::sys_seconds()> now;
    };
    TLedgerJob(const TJobParts& parts, const TScaleRec& rec, TLedgerParts ledger);

protected:
    void Begin() override;
    void Entering() override;
    void Work(TElicomScale& scale, const TScaleVersion& version) final;
    void ReplyDidNotFit() override;
    void End() override;
    void NotBegun() override;

    // With a ledger that knows what the scale has reported.
    virtual void WorkWithLedger(TElicomScale& scale, const TScaleVersion& version) = 0;
    TLedger& Ledger() { return *ledger_; }
    const TLineChoices& Choices() const { return ledgerParts_.choices; }
    std::chrono::sys_seconds Now() const { return ledgerParts_.now(); }
    // Notes in the ledger and in the result what is known of the scale's mode; true when the ledger
    // knew it otherwise.
    bool NoteMode();
    // Deletes the articles from the scale and the ledger, up to a stop.
    void Delete(TElicomScale& scale, const std::vector<std::int32_t>& numbers, TDeleteForm form);

private:
    void DeleteOne(TElicomScale& scale, std::int32_t number, TDeleteForm form);

    TLedgerParts ledgerParts_;
    std::optional<TLedger> ledger_;
    std::chrono::sys_seconds start_{};
};

// Reads what the scale is: its version, its capacity, its label mode, and how long an exchange
// takes. The ledger remembers it.
class TTestJob : public TLedgerJob {
public:
    using TLedgerJob::TLedgerJob;

protected:
    void Entering() override;
    void WorkWithLedger(TElicomScale&, const TScaleVersion&) override;
    void End() override;
};

// Puts the scale back to weighing, nothing else; also one whose ledger cannot be read. The ledger
// keeps what it knows, and whether the scale weighs.
class TReleaseJob : public TLedgerJob {
public:
    using TLedgerJob::TLedgerJob;

protected:
    void Begin() override;
    bool NeedsProgramming() const override { return false; }
    void WorkWithLedger(TElicomScale&, const TScaleVersion&) override {}
    void End() override;

private:
    std::string unreadable_;
};

// Writes articles: all of the scale's, those that differ from what the ledger knows, or some.
class TWriteJob : public TLedgerJob {
public:
    struct TTask {
        const TArticleTable& table;
        TRegionalSettings regional;
        TWriteChoice choice;
        bool prune = false;     // delete what the scale holds by the ledger and its list lacks
        bool keepSent = false;  // name in the result each article that the scale has acknowledged
    };
    TWriteJob(const TJobParts& parts, const TScaleRec& rec, TLedgerParts ledger, const TTask& task);

protected:
    void Begin() override;
    void WorkWithLedger(TElicomScale& scale, const TScaleVersion& version) override;
    void End() override;
    void NotBegun() override;

private:
    // By what the ledger knows of a scale that has not told its version.
    void CountPending();
    void Write(TElicomScale& scale, const TScaleVersion& version,
               const std::vector<TPlannedArticle>& articles);
    // False when a stop has left it incomplete.
    bool WriteOne(TArticleWriter& writer, const TPlannedArticle& article);
    void Prune(TElicomScale& scale);

    TTask task_;
    TScaleArticles articles_;
};

// Deletes the articles of these numbers, or every number of the scale.
class TDeleteJob : public TLedgerJob {
public:
    // `numbers` are not cut; nothing: everything.
    TDeleteJob(const TJobParts& parts, const TScaleRec& rec, TLedgerParts ledger,
               std::optional<std::vector<std::int32_t>> numbers);

protected:
    void WorkWithLedger(TElicomScale& scale, const TScaleVersion& version) override;

private:
    std::optional<std::vector<std::int32_t>> numbers_;
};

}  // namespace tolvane
