#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "config/TypesUnit.h"
#include "scale/DevElicomScaleUnit.h"
#include "system/Clock.h"
#include "upload/RunView.h"
#include "upload/ScaleFactory.h"

namespace tolvane {

// One scale at a time: opens its driver, writes or deletes articles through it, closes it. Blocks
// for all exchanges and pauses. A failed operation answers false and leaves its text (code page
// 1251) in LastError; none of them throws.
class TScaleSession {
public:
    TScaleSession(TScaleFactory& factory, TClock& clock, TRunView& view, const TRunStop& stop,
                  char decimalSeparator);

    std::string LastError;

    // Makes the driver of a configured scale and opens it. A driver held before is destroyed; the
    // new one is held also when opening fails.
    bool InitComm(const TScaleRec& Rec);
    // Writes the article lines. After a failure the scale stays in programming mode.
    bool ProcessUpload(const std::vector<std::string>& Lines, const TScaleRec& Rec);
    // Deletes the articles of the lines or, without any line, every article of the scale. The scale
    // stays in programming mode only after a stop.
    bool ProcessDelete(const std::vector<std::string>& Lines);
    // Destroys the driver, which closes its channel.
    void Close() noexcept { driver_.reset(); }

private:
    struct TVersion {
        std::int32_t maxPlu = 0;
        std::int32_t mode = 0;
        std::string text;
    };

    std::unique_ptr<TElicomScale> CreateDriver(const TScaleRec& rec);
    // The way into programming mode; throws the failure's text. Nothing when the run was given up
    // before the scale was asked for that mode: it has then got no request for it.
    std::optional<TVersion> EnterProgramming();
    // The closing way out.
    void LeaveProgramming();
    // The failure's text of a command: [operation] ErrCode: n, the driver's text.
    std::string CommandError(std::string_view operation, std::int32_t errCode) const;

    void UploadLines(const std::vector<std::string>& lines, const TScaleRec& rec, TPLUD& plu);
    bool UploadArticle(const TScaleRec& rec, const TVersion& version, TPLUD& plu);
    void WritePrice(const TScaleRec& rec, const TPLUD& plu);
    void WriteTexts(const TScaleRec& rec, const TVersion& version, const TPLUD& plu,
                    std::int32_t uncutScaleNumber);
    // False when the user stopped the pass or gave the run up.
    bool DeleteArticles(const std::vector<std::string>& lines);
    bool DeleteEverything(std::int32_t maxPlu);
    bool DeleteListed(const std::vector<std::string>& lines, std::int32_t maxPlu);
    void ClearName(std::int32_t plu);

    TScaleFactory& factory_;
    TClock& clock_;
    TRunView& view_;
    const TRunStop& stop_;
    char decimalSeparator_;
    std::unique_ptr<TElicomScale> driver_;
};

}  // namespace tolvane
