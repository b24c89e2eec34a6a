#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "BadScale.h"
#include "CoreFixture.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using namespace test;  // NOLINT: the texts and faults of bad scales
using simulator::TFault;
using simulator::TFaultKind;

// A text as a failure quotes it: cut and padded, before it goes through the scale's code table.
struct TSentText {
    int parameter;
    std::string_view label;
    std::string text;
};

void PrintTo(const TSentText& text, std::ostream* out) {
    *out << text.parameter;
}

std::string Padded(std::string_view text, std::size_t length) {
    std::string padded(text);
    padded.resize(length, ' ');
    return padded;
}

// Number 50012 is 12 in a scale of 3000 articles.
constexpr std::string_view kLine =
    "50012|22012|1|0|0|1.00|0|5| Домати |Розови|c1|abcdefghijklmnopqrstuvwxyz123456789|c3|Л-7|0|0|101|"_cp1251;

// All the texts that an S300 scale in label mode 2 gets of it, in order.
const std::vector<TSentText> kTexts = {
    {0, "Име1"_cp1251, Padded("Домати"_cp1251, 31)},
    {4, "Годност"_cp1251, "\x01\x05"},
    {5, "Баркод"_cp1251, "22012"},
    {1, "Име2"_cp1251, Padded("Розови"_cp1251, 31)},
    {2, "Етикет1"_cp1251, Padded("c1", 31)},
    {3, "Етикет2"_cp1251, "abcdefghijklmnopqrstuvwxyz12345"},
    {6, "Етикет3"_cp1251, Padded("c3", 31)},
    {7, "Партида"_cp1251, Padded("Л-7"_cp1251, 31)},
    {14, "КодВезна"_cp1251, Padded("50012", 31)},
    {15, "КодАрт"_cp1251, Padded("101", 31)},
    {19, "Етикет1"_cp1251, Padded("c1", 63)},
    {20, "Етикет2"_cp1251, Padded("abcdefghijklmnopqrstuvwxyz123456789", 63)},
    {21, "Етикет3"_cp1251, Padded("c3", 63)},
};

class BadScaleTextTest : public TCorePassTest, public ::testing::WithParamInterface<TSentText> {
protected:
    BadScaleTextTest() {
        options.scale.model = simulator::TModel::S300;
        options.scale.labelMode = 2;
    }
    // Expects that the pass fails at the parameter's text after sending it that many times. The
    // scale then stays in programming mode and holds the earlier texts, and this one too if it
    // obeyed.
    void ExpectFailure(TFaultKind kind, int code, const std::string& reason, int times,
                       bool obeyed) {
        TFault fault = Fault(kind, kParam, 0, code);
        fault.from = Order();
        options.faults.faults = {fault};
        TScaleRec rec = Rec();
        rec.ScaleType = kScaleTypeS300;
        rec.Encoding = 2;
        EXPECT_FALSE(Upload({std::string(kLine)}, rec));
        const std::string number = std::to_string(GetParam().parameter);
        EXPECT_EQ(session->LastError, std::string("Fail! Plu: 12 \" Домати \" [SetParam:"_cp1251) +
                                          number + "][" + std::string(GetParam().label) +
                                          "] ErrCode: " + std::to_string(code) +
                                          ", Fail set parameter: Plu:12 ParN:" + number +
                                          " ParT:\"" + GetParam().text + "\"\r\n" + reason);
        ExpectSent(times, obeyed);
        EXPECT_TRUE(IsProgramming());
        EXPECT_EQ(Filtered(events, {"log:   Брой"}), TEvents{});
    }

private:
    // Counted from 1.
    static int Order() {
        int order = 1;
        for (const TSentText& text : kTexts) {
            if (text.parameter == GetParam().parameter) break;
            ++order;
        }
        return order;
    }
    void ExpectSent(int times, bool obeyed) const {
        std::string commands = "3C 36 48 4A:12";
        std::vector<int> held;
        for (const TSentText& text : kTexts) {
            const bool last = text.parameter == GetParam().parameter;
            for (int i = 0; i < (last ? times : 1); ++i)
                commands += " 4C:12." + std::to_string(text.parameter);
            if (!last || obeyed) held.push_back(text.parameter);
            if (last) break;
        }
        EXPECT_EQ(Commands(), commands);
        const simulator::TScaleState state = core->State();
        const simulator::TArticle& article = state.articles.at(12);
        EXPECT_EQ(article.texts.size(), held.size());
        for (const int parameter : held)
            EXPECT_EQ(article.texts.count(parameter), 1U) << parameter;
    }
};

TEST_P(BadScaleTextTest, ARefusedTextIsNamedWholeWithTheScalesCode) {
    ExpectFailure(TFaultKind::Error, 5, "Scale return Error code: 5", 1, false);
}

TEST_P(BadScaleTextTest, AMisheardTextIsSentFourTimesAndNamedWhole) {
    ExpectFailure(TFaultKind::EtxFirst, 0, kMisheard, 4, true);
}

TEST_P(BadScaleTextTest, AnUnansweredTextIsSentOnceAndNamedWhole) {
    ExpectFailure(TFaultKind::NoReply, 0, kSilence, 1, false);
}

TEST_P(BadScaleTextTest, ATextAnsweredWithAWrongCommandIsNamedWhole) {
    ExpectFailure(TFaultKind::WrongCommand, 0, kNotTheCommand + "Exp:4C Rec:4D)", 1, true);
}

TEST_P(BadScaleTextTest, ATextAnsweredWithoutDataIsNamedWhole) {
    ExpectFailure(TFaultKind::Empty, 0, kNoCode, 1, true);
}

INSTANTIATE_TEST_SUITE_P(Texts, BadScaleTextTest, ::testing::ValuesIn(kTexts), [](const auto& row) {
    return "Parameter" + std::to_string(row.param.parameter);
});

}  // namespace
}  // namespace tolvane
