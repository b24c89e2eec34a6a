#include "upload/ScaleSession.h"

#include <exception>

#include "system/SystemError.h"
#include "text/Failure.h"
#include "upload/DeletePass.h"
#include "upload/ScaleDriver.h"
#include "upload/WritePass.h"

namespace tolvane {
TScaleSession::TScaleSession(TScaleFactory& factory, TClock& clock, TRunView& view,
                             const TRunStop& stop, char decimalSeparator)
    : factory_(factory),
      clock_(clock),
      view_(view),
      stop_(stop),
      decimalSeparator_(decimalSeparator) {}

bool TScaleSession::InitComm(const TScaleRec& Rec) {
    LastError.clear();
    Close();
    try {
        driver_ = MakeScaleDriver(factory_, Rec);
        if (!driver_->OpenChannel()) throw TFailure(driver_->LastError);
        return true;
    } catch (const std::exception& error) {
        LastError = "InitComm >> " + FailureText(error);
        return false;
    }
}

TPassParts TScaleSession::Parts() {
    return {.scale = *driver_,
            .clock = clock_,
            .view = view_,
            .progress = Progress,
            .stop = stop_,
            .decimalSeparator = decimalSeparator_};
}

bool TScaleSession::ProcessUpload(const std::vector<std::string>& Lines, const TScaleRec& Rec) {
    if (driver_ == nullptr) return false;
    TWritePass pass(Parts(), Rec);
    if (pass.Run(Lines)) return true;
    LastError = pass.LastError;
    return false;
}

bool TScaleSession::ProcessDelete(const std::vector<std::string>& Lines) {
    if (driver_ == nullptr) return false;
    TDeletePass pass(Parts());
    if (pass.Run(Lines)) return true;
    LastError = pass.LastError;
    return false;
}

}  // namespace tolvane
