#include "command/ArticleJobs.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <set>
#include <string>
#include <utility>

#include "command/EnglishWords.h"
#include "command/PlannedResults.h"
#include "config/IniFile.h"
#include "upload/LabelTexts.h"

namespace tolvane {
namespace {

TRunOutcome InLedger(TScaleOutcome outcome) {
    switch (outcome) {
        case TScaleOutcome::Done:
            return TRunOutcome::Done;
        case TScaleOutcome::Failed:
            return TRunOutcome::Failed;
        case TScaleOutcome::NotReached:
            return TRunOutcome::NotReached;
        case TScaleOutcome::Locked:
            return TRunOutcome::Locked;
        case TScaleOutcome::Stopped:
            return TRunOutcome::Stopped;
    }
    return TRunOutcome::Failed;
}

std::int32_t Count(std::size_t count) {
    return static_cast<std::int32_t>(count);
}

std::vector<std::int32_t> NumbersOf(const std::vector<TPlannedArticle>& articles) {
    std::vector<std::int32_t> numbers;
    numbers.reserve(articles.size());
    for (const TPlannedArticle& article : articles)
        numbers.push_back(article.plu.ScaleNumber);
    return numbers;
}

// Answers, after a stop, whether an article is still to be finished: a scale that takes longer than
// this for a command would keep who has stopped the run for up to a minute.
class TFinishing {
public:
    TFinishing(const TRunStop& stop, TClock& clock)
        : stop_(stop), clock_(clock), last_(clock.Now()) {}
    bool GoesOn() {
        const TTimePoint now = clock_.Now();
        const bool quick = now - std::exchange(last_, now) <= kQuick;
        return quick || !stop_.IsStopped();
    }

private:
    static constexpr TMilliseconds kQuick{200};

    const TRunStop& stop_;
    TClock& clock_;
    TTimePoint last_;  // when the command before began
};

}  // namespace

TLedgerJob::TLedgerJob(const TJobParts& parts, const TScaleRec& rec, TLedgerParts ledger)
    : TScaleJob(parts, rec), ledgerParts_(std::move(ledger)) {}

void TLedgerJob::Begin() {
    start_ = Now();
    ledger_ =
        TLedger::Load(parts_.stateFolder, rec_, ledgerParts_.choices, start_, ledgerParts_.maxAge);
}

void TLedgerJob::Work(TElicomScale& scale, const TScaleVersion& version) {
    Ledger().Confirm(
        {.version = version.text, .maxPlu = version.maxPlu, .labelMode = version.mode});
    WorkWithLedger(scale, version);
}

// As a killed run leaves it.
void TLedgerJob::Entering() {
    TLastRun run;
    run.start = start_;
    Ledger().SetLastRun(run);
    Ledger().SetMayBeProgramming(true);
    Ledger().Save(Now());
}

// Another device may have answered, to any of the requests.
void TLedgerJob::ReplyDidNotFit() {
    if (!ledger_ || Ledger().Claims().empty()) return;
    Ledger().Drop("a reply of the scale did not fit its request");
    Ledger().Save(Now());
}

// The scale is not asked; what the ledger says of one that another run works on is that run's.
void TLedgerJob::NotBegun() {
    Begin();
    if (ledger_ && result_.outcome == TScaleOutcome::Stopped)
        result_.mayBeProgramming = Ledger().MayBeProgramming();
}

bool TLedgerJob::NoteMode() {
    const bool before = Ledger().MayBeProgramming();
    result_.mayBeProgramming = MayBeProgramming().value_or(before);
    Ledger().SetMayBeProgramming(result_.mayBeProgramming);
    return result_.mayBeProgramming != before;
}

void TLedgerJob::End() {
    result_.ledgerNote = Ledger().DropReason();
    NoteMode();
    ledger_->SetLastRun({.start = start_,
                         .end = Now(),
                         .outcome = InLedger(result_.outcome),
                         .error = InEnglish(result_.error),
                         .written = Count(result_.written),
                         .unchanged = Count(result_.unchanged),
                         .refused = Count(result_.refused.size()),
                         .leftOut = Count(result_.leftOut.size()),
                         .pending = Count(result_.pending)});
    ledger_->Save(Now());
}

void TLedgerJob::Delete(TElicomScale& scale, const std::vector<std::int32_t>& numbers,
                        TDeleteForm form) {
    // What the ledger does not know stays unknown: a deletion puts nothing into the scale.
    const std::set<std::int32_t> known = Ledger().Numbers();
    std::vector<std::int32_t> withdrawn;
    std::ranges::copy_if(numbers, std::back_inserter(withdrawn),
                         [&](std::int32_t number) { return known.contains(number); });
    Ledger().Withdraw(withdrawn, Now());
    const std::size_t before = result_.written + result_.refused.size();
    result_.pending += numbers.size();
    for (std::size_t i = 0; i < numbers.size() && !IsStopped(); ++i) {
        DeleteOne(scale, numbers[i], form);
        --result_.pending;
        Ledger().SaveIfDue(Now());
        parts_.view.Progress(before + i + 1);
    }
}

void TLedgerJob::DeleteOne(TElicomScale& scale, std::int32_t number, TDeleteForm form) {
    std::int32_t errCode = 0;
    try {
        // A name that the scale keeps does no harm to an article without a price. A scale that
        // does not answer any more would cost a time-out for each number.
        if (!DeleteArticle(scale, number, form, errCode) && errCode == 0)
            throw TFailure(scale.LastError);
    } catch (const TScaleRefusal& refusal) {
        parts_.view.Article("refused", number, refusal.Text());
        result_.refused.push_back({.number = number, .name = {}, .reason = refusal.Text()});
        return;
    }
    Ledger().Deleted(number);
    ++result_.deleted;
    parts_.view.Article("deleted", number, {});
}

// A test is no run: what the last one did stays known.
void TTestJob::Entering() {
    Ledger().SetMayBeProgramming(true);
    Ledger().Save(Now());
}

void TTestJob::WorkWithLedger(TElicomScale&, const TScaleVersion&) {
    parts_.view.Begins(0);
}

void TTestJob::End() {
    // A scale that did not answer leaves no trace.
    if (NoteMode() || result_.version) Ledger().Save(Now());
    result_.ledgerNote = Ledger().DropReason();
}

void TReleaseJob::Begin() {
    try {
        TLedgerJob::Begin();
    } catch (const TFileError& error) {
        unreadable_ = error.what();
    }
}

void TReleaseJob::End() {
    if (!unreadable_.empty()) throw TFileError(unreadable_);
    if (NoteMode()) Ledger().Save(Now());
}

TWriteJob::TWriteJob(const TJobParts& parts, const TScaleRec& rec, TLedgerParts ledger,
                     const TTask& task)
    : TLedgerJob(parts, rec, std::move(ledger)), task_(task) {}

void TWriteJob::Begin() {
    TLedgerJob::Begin();
    articles_ = ArticlesForScale(task_.table, rec_.ScaleNumb, Choices(), task_.regional);
}

void TWriteJob::CountPending() {
    result_.pending =
        PlanWrite(articles_, task_.table, rec_, KnownVersion(Ledger()), Ledger(), task_.choice)
            .toWrite.size();
}

void TWriteJob::End() {
    if (!result_.version) CountPending();
    TLedgerJob::End();
}

void TWriteJob::NotBegun() {
    TLedgerJob::NotBegun();
    CountPending();
}

void TWriteJob::WorkWithLedger(TElicomScale& scale, const TScaleVersion& version) {
    TWritePlan plan = PlanWrite(articles_, task_.table, rec_, version, Ledger(), task_.choice);
    result_.unchanged = plan.unchanged;
    result_.refused = std::move(plan.refused);
    result_.leftOut = std::move(plan.leftOut);
    result_.strays = std::move(plan.strays);
    result_.pending = plan.toWrite.size();
    parts_.view.Begins(plan.toWrite.size() + (task_.prune ? result_.strays.size() : 0));
    Write(scale, version, plan.toWrite);
    if (task_.prune && !IsStopped()) Prune(scale);
}

void TWriteJob::Write(TElicomScale& scale, const TScaleVersion& version,
                      const std::vector<TPlannedArticle>& articles) {
    Ledger().Withdraw(NumbersOf(articles), Now());
    TArticleWriter writer(scale, rec_, version);
    for (const TPlannedArticle& article : articles) {
        if (IsStopped() || !WriteOne(writer, article)) return;
        --result_.pending;
        Ledger().SaveIfDue(Now());
        parts_.view.Progress(articles.size() - result_.pending);
    }
}

bool TWriteJob::WriteOne(TArticleWriter& writer, const TPlannedArticle& article) {
    try {
        TFinishing finishing(parts_.stop, parts_.clock);
        if (!writer.Write(article.plu, article.uncutNumber,
                          [&finishing] { return finishing.GoesOn(); })) {
            result_.error = "it was stopped in the middle of article " +
                            std::to_string(article.plu.ScaleNumber) +
                            ", which the next run writes again";
            return false;
        }
    } catch (const TScaleRefusal& refusal) {
        parts_.view.Article("refused", article.plu.ScaleNumber, refusal.Text());
        result_.refused.push_back({.number = article.uncutNumber,
                                   .name = article.plu.LabelName1,
                                   .reason = refusal.Text()});
        return true;
    }
    Ledger().Claim(article.plu.ScaleNumber, article.digest, Now());
    ++result_.written;
    if (task_.keepSent)
        result_.sent.push_back({.number = article.plu.ScaleNumber, .name = article.plu.LabelName1});
    parts_.view.Article("written", article.plu.ScaleNumber, article.plu.LabelName1);
    return true;
}

void TWriteJob::Prune(TElicomScale& scale) {
    Delete(scale, result_.strays, TDeleteForm::Listed);
    const std::set<std::int32_t> left = Ledger().Numbers();
    std::erase_if(result_.strays, [&](std::int32_t number) {
        if (left.contains(number)) return false;
        if (task_.keepSent)
            result_.sent.push_back({.number = number, .name = {}, .isDeleted = true});
        return true;
    });
}

TDeleteJob::TDeleteJob(const TJobParts& parts, const TScaleRec& rec, TLedgerParts ledger,
                       std::optional<std::vector<std::int32_t>> numbers)
    : TLedgerJob(parts, rec, std::move(ledger)), numbers_(std::move(numbers)) {}

void TDeleteJob::WorkWithLedger(TElicomScale& scale, const TScaleVersion& version) {
    std::vector<std::int32_t> numbers;
    if (!numbers_) {
        numbers.resize(static_cast<std::size_t>(std::max(version.maxPlu, 0)));
        std::iota(numbers.begin(), numbers.end(), 1);
    }
    for (const std::int32_t number : numbers_.value_or(std::vector<std::int32_t>{})) {
        const std::int32_t cut = PluTail(number, version.maxPlu);
        if (cut >= 1 && cut <= version.maxPlu)
            numbers.push_back(cut);
        else
            result_.leftOut.push_back(
                {.number = number, .name = {}, .reason = NoSuchNumberText(version.maxPlu)});
    }
    // Two numbers may be one in the scale.
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    parts_.view.Begins(numbers.size());
    Delete(scale, numbers, numbers_ ? TDeleteForm::Listed : TDeleteForm::Numbered);
}

}  // namespace tolvane
