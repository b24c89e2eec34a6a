#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "command/ArticleJobs.h"
#include "simulator/Faults.h"
#include "tests/support/RecordingClock.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/CoreFactory.h"
#include "tests/support/upload/UploadFixture.h"
#include "tests/unit/command/Shop.h"

namespace tolvane::test {

inline const std::vector<TArticle> kThree = {Goods(12, "Tomatoes"), Goods(7, "Eggs"),
                                             Goods(9, "Milk")};

// What a job reports, as "begins 2", "1 done", "written 12 Eggs".
class TJobEvents : public TJobView {
public:
    void Begins(std::size_t total) override { Add("begins " + std::to_string(total)); }
    void Progress(std::size_t done) override { Add(std::to_string(done) + " done"); }
    void Article(std::string_view what, std::int32_t number, std::string_view text) override {
        std::string event = std::string(what) + " " + std::to_string(number);
        if (!text.empty()) event += " " + std::string(text);
        Add(std::move(event));
    }

    TEvents events;
    std::function<void(const std::string&)> onEvent;

private:
    void Add(std::string event) {
        events.push_back(event);
        if (onEvent) onEvent(event);
    }
};

// Jobs in a virtual EVL scale of 3000 articles in label mode 1, which gets a price and the texts 0,
// 4 and 5 of each article. The time of day stands still unless a test moves it.
class TJobTest : public ::testing::Test {
protected:
    TJobTest() {
        options.scale.capacity = 3000;
        options.scale.labelMode = 1;
        options.scale.version = "1.23";
        rec = NetworkScale(7, "A");
        rec.Encoding = 0;
    }

    TScaleResult Write(const std::vector<TArticle>& articles, const TWriteChoice& choice = {},
                       bool prune = false) {
        const auto table = TableOf(articles);
        return TWriteJob(Parts(), rec, LedgerParts(),
                         {.table = *table,
                          .regional = {},
                          .choice = choice,
                          .prune = prune,
                          .keepSent = keepSent})
            .Run();
    }
    TScaleResult WriteChanged(const std::vector<TArticle>& articles) {
        return Write(articles, {.changedOnly = true});
    }
    TScaleResult Prune(const std::vector<TArticle>& articles) {
        return Write(articles, {.changedOnly = true}, true);
    }
    TScaleResult Delete(std::optional<std::vector<std::int32_t>> numbers) {
        return TDeleteJob(Parts(), rec, LedgerParts(), std::move(numbers)).Run();
    }
    TScaleResult Test() { return TTestJob(Parts(), rec, LedgerParts()).Run(); }
    TScaleResult Release() { return TReleaseJob(Parts(), rec, LedgerParts()).Run(); }

    TJobParts Parts() {
        if (core == nullptr) core = std::make_unique<simulator::TScaleCore>(options);
        factory = std::make_unique<TCoreFactory>(clock, *core);
        factory->openError = openError;
        requestsBefore_ = core->Requests().size();
        return {.factory = *factory,
                .clock = clock,
                .stop = stop,
                .view = view,
                .stateFolder = folder.Path(),
                .lockWait = TMilliseconds(0)};
    }
    TLedgerJob::TLedgerParts LedgerParts() {
        return {.choices = {}, .maxAge = kWeek, .now = [this] { return now += perLook; }};
    }

    // The commands of the latest job, in order, with the article and the text that each is about:
    // "3C 36 48 4A:12 4C:12.0".
    std::string Commands() const {
        std::string text;
        const std::vector<simulator::TRecordedRequest> requests = core->Requests();
        for (std::size_t i = requestsBefore_; i < requests.size(); ++i) {
            const simulator::TRequest& request = requests[i].request;
            text += (text.empty() ? "" : " ") + Hex({request.command});
            if (request.data.size() > 2)
                text += ":" + std::to_string(request.data[1] + request.data[2] * 256);
            if (request.command == simulator::kSetParam)
                text += "." + std::to_string(request.data.at(3));
        }
        return text;
    }
    // What the scale holds of an article: its price in hundredths and its name; "-" nothing,
    // "cleared" a deleted one.
    std::string Held(int number) const {
        const simulator::TScaleState state = core->State();
        const auto found = state.articles.find(number);
        if (found == state.articles.end()) return "-";
        if (found->second.IsCleared()) return "cleared";
        return std::to_string(found->second.price.value_or(-1)) + " " +
               found->second.Text(0, simulator::TCodeTable::Windows);
    }
    bool IsProgramming() const { return core->State().programming; }

    // The ledger as it is on the disk.
    TLedger Disk() const { return LoadAt(folder.Path(), now, rec); }
    std::string Claimed() const {
        std::string text;
        const TLedger ledger = Disk();
        for (const auto& [number, claim] : ledger.Claims())
            text += (text.empty() ? "" : " ") + std::to_string(number);
        return text;
    }
    // From now on no save of the ledger succeeds.
    void BlockLedger() const {
        const std::filesystem::path file = TLedger::FileOf(folder.Path(), rec.ScaleNumb);
        std::filesystem::remove(file);
        std::filesystem::create_directory(file);
        PutFile(file / "in the way", "");
    }
    void UnblockLedger() const {
        std::filesystem::remove_all(TLedger::FileOf(folder.Path(), rec.ScaleNumb));
    }

    void SetFaults(std::vector<simulator::TFault> faults) {
        core->SetFaults({.faults = std::move(faults)});
    }
    // A fault of one request of a command, or of each of them when that is 0.
    static simulator::TFault Fault(simulator::TFaultKind kind, std::uint8_t command,
                                   int request = 0, int code = 0) {
        simulator::TFault fault;
        fault.kind = kind;
        fault.command = command;
        fault.request = request;
        fault.code = code;
        return fault;
    }

    simulator::TCoreOptions options;
    TScratchFolder folder;
    TRecordingClock clock;
    TRunStop stop;
    TJobEvents view;
    TScaleRec rec;
    std::string openError;
    bool keepSent = true;
    std::chrono::sys_seconds now = kNoon;
    std::chrono::seconds perLook{0};  // the time that passes each time a job asks for it
    std::unique_ptr<simulator::TScaleCore> core;
    std::unique_ptr<TCoreFactory> factory;

private:
    std::size_t requestsBefore_ = 0;
};

}  // namespace tolvane::test
