#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "config/TypesUnit.h"
#include "tests/support/RecordingClock.h"
#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/CoreFactory.h"
#include "tests/support/upload/UploadFixture.h"
#include "upload/ScaleSession.h"

namespace tolvane::test {

// One pass over a virtual EVL scale of 3000 articles in label mode 1, which gets a price and the
// texts 0, 4 and 5.
class TCorePassTest : public ::testing::Test {
protected:
    TCorePassTest() {
        options.scale.capacity = 3000;
        options.scale.labelMode = 1;
    }

    bool Upload(const std::vector<std::string>& lines) { return Upload(lines, Rec()); }
    bool Upload(const std::vector<std::string>& lines, const TScaleRec& rec) {
        Connect(rec);
        return session->ProcessUpload(lines, rec);
    }
    bool Delete(const std::vector<std::string>& lines) {
        Connect(Rec());
        return session->ProcessDelete(lines);
    }
    static TScaleRec Rec() {
        TScaleRec rec = NetworkScale(7, "A");
        rec.Encoding = 0;
        return rec;
    }
    // The commands that came, in order, with the article that each is about: "3C 36 48 4A:12".
    std::string Commands() const {
        std::string text;
        for (const simulator::TRecordedRequest& recorded : core->Requests()) {
            if (!text.empty()) text += ' ';
            text += Hex({recorded.request.command});
            const std::vector<std::uint8_t>& data = recorded.request.data;
            if (data.size() > 2) text += ":" + std::to_string(data[1] + data[2] * 256);
            if (recorded.request.command == simulator::kSetParam)
                text += "." + std::to_string(data.at(3));
        }
        return text;
    }
    // What the scale holds of an article: "1234 'Eggs' 0,4,5" is price, name and the numbers of the
    // texts, "-" nothing; "cleared" an article deleted by its price and name.
    std::string Held(int number) const {
        const simulator::TScaleState state = core->State();
        const auto found = state.articles.find(number);
        if (found == state.articles.end()) return "-";
        const simulator::TArticle& article = found->second;
        if (article.IsCleared()) return "cleared";
        std::string text = article.price ? std::to_string(*article.price) : "no price";
        text += " '" + article.Text(0, simulator::TCodeTable::Windows) + "' ";
        for (const auto& [parameter, value] : article.texts)
            text += (text.back() == ' ' ? "" : ",") + std::to_string(parameter);
        return text;
    }
    bool IsProgramming() const { return core->State().programming; }

    simulator::TCoreOptions options;
    TEvents events;
    TRecordingClock clock;
    TRecordingView view{events};
    TRunStop stop;
    std::unique_ptr<simulator::TScaleCore> core;
    std::unique_ptr<TCoreFactory> factory;
    std::unique_ptr<TScaleSession> session;

private:
    void Connect(const TScaleRec& rec) {
        if (core == nullptr) core = std::make_unique<simulator::TScaleCore>(options);
        factory = std::make_unique<TCoreFactory>(clock, *core);
        session = std::make_unique<TScaleSession>(*factory, clock, view, stop, '.');
        EXPECT_TRUE(session->InitComm(rec));
    }
};

}  // namespace tolvane::test
