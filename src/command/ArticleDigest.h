#pragma once

#include <cstdint>
#include <memory>

#include "config/TypesUnit.h"
#include "scale/DevElicomScaleUnit.h"
#include "upload/ProgrammingMode.h"

namespace tolvane {

// Tells whether writing an article would leave something else in a scale than what was written
// before: the hash of the very commands that the scale would get. One thread.
class TArticleDigest {
public:
    // `rec` is copied.
    TArticleDigest(const TScaleRec& rec, const TScaleVersion& version);
    TArticleDigest(const TArticleDigest&) = delete;
    TArticleDigest& operator=(const TArticleDigest&) = delete;
    ~TArticleDigest();

    // FNV-1a of the requests. `plu` holds the number that the scale uses. Throws TFailure when the
    // article cannot be put into commands, such as a price of 10000 or more.
    std::uint64_t Of(const TPLUD& plu, std::int32_t uncutScaleNumber);

private:
    class TRecorder;

    TScaleRec rec_;
    TScaleVersion version_;
    TRecorder* recorder_;  // the driver's channel
    std::unique_ptr<TClock> clock_;
    std::unique_ptr<TElicomScale> driver_;
};

}  // namespace tolvane
