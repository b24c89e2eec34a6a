#pragma once

#include "scale/DevElicomScaleUnit.h"
#include "system/Clock.h"
#include "upload/RunProgress.h"
#include "upload/RunView.h"

namespace tolvane {

// What a pass over one scale needs. The parts outlive the pass.
struct TPassParts {
    TElicomScale& scale;  // open
    TClock& clock;
    TRunView& view;
    TRunProgress& progress;
    const TRunStop& stop;
    char decimalSeparator;  // of the prices in article lines

    // The scale is ready for its first article.
    void StartArticles() const {
        progress.StartArticles(clock.Now());
        view.ShowCount(progress.Count());
    }
    // An article is written, deleted or skipped.
    void ArticleDone() const {
        progress.ArticleDone(clock.Now());
        view.ShowCount(progress.Count());
    }
};

}  // namespace tolvane
