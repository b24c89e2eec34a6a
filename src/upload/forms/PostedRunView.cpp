#include "upload/forms/PostedRunView.h"

namespace tolvane {

void TPostedRunView::ClearLog() {
    queue_.Post([&window = window_] { window.ClearLog(); });
}

void TPostedRunView::Log(std::string line) {
    queue_.Post([&window = window_, line = std::move(line)] { window.Log(line); });
}

void TPostedRunView::SetConnection(std::string text) {
    queue_.Post([&window = window_, text = std::move(text)] { window.SetConnection(text); });
}

void TPostedRunView::SetProgress(std::string text) {
    queue_.Post([&window = window_, text = std::move(text)] { window.SetProgress(text); });
}

void TPostedRunView::ShowCount(const TRunCount& count) {
    queue_.Post([&window = window_, count] { window.ShowCount(count); });
}

void TPostedRunView::SetRunning(bool running) {
    queue_.Post([&window = window_, running] { window.SetRunning(running); });
}

void TPostedRunView::SetChoicesEnabled(bool enabled) {
    queue_.Post([&window = window_, enabled] { window.SetChoicesEnabled(enabled); });
}

void TPostedRunView::ShowRunError(std::string text) {
    queue_.Post([&window = window_, text = std::move(text)] { window.ShowRunError(text); });
}

void TPostedRunView::ShowMemoryError() noexcept {
    queue_.Post(memoryError_);
}

}  // namespace tolvane
