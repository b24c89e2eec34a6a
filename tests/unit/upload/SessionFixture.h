#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/upload/UploadFixture.h"
#include "upload/ScaleSession.h"

namespace tolvane::test {

// A session with one fake scale.
class TSessionTest : public ::testing::Test {
protected:
    TSessionTest() { factory_.scales.push_back(scale_); }

    TEvents events_;
    TFakeClock clock_{events_};
    TRecordingView view_{events_};
    TRunStop stop_;
    TFakeFactory factory_{events_, clock_};
    std::shared_ptr<TFakeScale> scale_ = std::make_shared<TFakeScale>();
    TScaleSession session_{factory_, clock_, view_, stop_, '.'};
};

}  // namespace tolvane::test
