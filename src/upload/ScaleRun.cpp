#include "upload/ScaleRun.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <string_view>
#include <utility>

#include "text/Cp1251.h"
#include "upload/ArticleLineBuilder.h"
#include "upload/RunMarks.h"

namespace tolvane {
namespace {

constexpr std::string_view kSeparatorLine = "-----------------------------------------";

bool IsKnownConnection(const TScaleRec& rec) {
    return rec.CommType == kCommSerial || rec.CommType == kCommTcp || rec.CommType == kCommUdp;
}

std::string_view SpeedText(std::uint8_t baudRate) {
    // 57600 bit/s reads 576000, as users know it.
    constexpr std::array<std::string_view, 5> kSpeeds = {"9600 bps", "19200 bps", "38400 bps",
                                                         "576000 bps", "115200 bps"};
    return baudRate < kSpeeds.size() ? kSpeeds[baudRate] : "N/A";
}

}  // namespace

std::string ConnectionText(const TScaleRec& rec) {
    constexpr std::size_t kHostLength = 21;
    std::string text("Хост: "_cp1251);
    text += rec.TCPAddress.View();
    text.resize(std::min(text.size(), kHostLength));
    if (rec.CommType == kCommSerial) {
        text += " Скорост: "_cp1251;
        text += SpeedText(rec.BaudRate);
    } else if (IsKnownConnection(rec)) {
        text += " Порт: "_cp1251;
        text += std::to_string(rec.TCPPort);
    }
    return text;
}

TScaleRun::TScaleRun(TScaleFactory& factory, TClock& clock, TRunView& view, TRunStop& stop,
                     const TRegionalSettings& regional)
    : view_(view),
      stop_(stop),
      regional_(regional),
      session_(factory, clock, view, stop, regional.decimalSeparator) {}

template <class Body>
void TScaleRun::Guarded(Body body) noexcept {
    try {
        try {
            body();
        } catch (const std::exception& error) {
            view_.ShowRunError(error.what());
        }
    } catch (...) {  // NOLINT(bugprone-empty-catch): the view cannot be told
    }
    session_.Close();
}

bool TScaleRun::BeginLog(const std::vector<TRunItem>& items) {
    view_.ClearLog();
    if (!items.empty()) return true;
    view_.Log(std::string("Не е дефинирана нито една везна."_cp1251));
    return false;
}

void TScaleRun::EndLog(bool anyChecked) {
    if (!anyChecked) view_.Log(std::string("Не е избрана нито една везна."_cp1251));
    session_.LastError.clear();
    view_.SetConnection({});
    view_.SetProgress({});
    view_.Log(std::string(kSeparatorLine));
}

void TScaleRun::LogStart(const std::string& name) {
    view_.Log(std::string(kSeparatorLine));
    view_.Log(std::string("Старт на запис във везна: "_cp1251) + name);
}

bool TScaleRun::Connect(const TScaleRec& rec) {
    view_.SetConnection(ConnectionText(rec));
    if (!IsKnownConnection(rec)) {
        session_.LastError = "Невалиден тип на комуникация с везна."_cp1251;
        return false;
    }
    if (!session_.InitComm(rec)) return false;
    view_.Log(std::string("Осъществена връзка с устройството за комуникация"_cp1251));
    return true;
}

void TScaleRun::RunListed(const std::vector<TRunItem>& items, const TRunArticles& articles,
                          TLineChoices choices, bool write) noexcept {
    Guarded([&] {
        if (!BeginLog(items)) return;
        stop_.TakeBack();
        view_.SetChoicesEnabled(false);
        view_.SetRunning(true);
        bool anyChecked = false;
        for (const TRunItem& item : items) {
            if (!item.checked || stop_.IsAbandoned()) continue;
            anyChecked = true;
            ListedInScale(item.rec, articles, choices, write);
        }
        EndLog(anyChecked || stop_.IsAbandoned());
        view_.SetChoicesEnabled(true);
        view_.SetRunning(false);
    });
}

void TScaleRun::ListedInScale(const TScaleRec& rec, const TRunArticles& articles,
                              TLineChoices choices, bool write) {
    const TArticleLineBuilder builder(
        *articles.table, choices, regional_,
        [this](std::string_view line) { view_.Log(std::string(line)); });
    std::vector<std::string> lines;
    builder.Build(articles.rows, rec.ScaleNumb, lines);

    const std::string name = rec.ScaleName.Str();
    LogStart(name);
    bool succeeded = Connect(rec);
    if (succeeded && write) {
        succeeded = session_.ProcessUpload(lines, rec);
    } else if (succeeded && !lines.empty()) {
        // ProcessDelete takes no lines for every article; here they mean that nothing is listed
        // for this scale.
        succeeded = session_.ProcessDelete(lines);
    }
    session_.Close();
    if (succeeded) {
        view_.Log(std::string("Успешно записани артикули във везна: "_cp1251) + name);
    } else {
        view_.Log(session_.LastError);
        view_.Log(std::string("Грешка при запис артикули във везна: "_cp1251) + name);
    }
    view_.Log({});
}

void TScaleRun::RunDeleteEverything(const std::vector<TRunItem>& items,
                                    const TRunMarks& marks) noexcept {
    Guarded([&] {
        if (!BeginLog(items)) return;
        bool anyChecked = false;
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (!marks.IsSet(i) || stop_.IsAbandoned()) continue;
            anyChecked = true;
            EverythingInScale(items[i].rec);
        }
        EndLog(anyChecked || stop_.IsAbandoned());
        view_.SetRunning(false);
    });
}

void TScaleRun::EverythingInScale(const TScaleRec& rec) {
    const std::string name = rec.ScaleName.Str();
    LogStart(name);
    // Each scale begins with the stop taken back; one that comes while it is being connected
    // counts.
    stop_.TakeBack();
    bool succeeded = Connect(rec);
    if (succeeded) {
        view_.SetRunning(true);
        succeeded = session_.ProcessDelete({});
    }
    session_.Close();
    if (!succeeded) view_.Log(session_.LastError);
    view_.Log(std::string(succeeded ? "Успешно изтрити артикули от везна: "_cp1251
                                    : "Грешка при изтриване артикули от везна: "_cp1251) +
              name);
}

}  // namespace tolvane
