#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "settings/forms/uScaleSettings.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {

// The connection dialog on a computer of the test's own.
class ScaleSettingsFixture : public testing::Test {
protected:
    using TStep = TDialogScript::TStep;
    using TSteps = std::vector<TStep>;

    TScaleSettingsServices Services() {
        return {[this](bool sort, std::vector<std::string>& items) {
                    sorts_.push_back(sort);
                    items = ports_;
                },
                [this](const std::atomic<bool>&, const TProbeReport& report) { report(found_); }};
    }

    int Show(const TScaleSettings& settings, TSteps steps) {
        TfrmScaleSettings form(host_.Frame(), {}, settings, listed_, Services());
        const TDialogScript script(kScaleSettingsFormClass, std::move(steps));
        const int result = form.ShowModal();
        confirmed_ = form.Settings();
        return result;
    }
    int Show(TSteps steps) { return Show(SettingsOfNewScale(ports_), std::move(steps)); }

    static TScaleSettings Tcp(const std::string& address) {
        TScaleSettings settings = SettingsOfNewScale({});
        settings.transport = TTransport::Tcp;
        settings.ipAddress = address;
        settings.port = "100";
        return settings;
    }

    THostFrame host_;
    std::vector<std::string> ports_ = {"COM3", "COM1"};
    std::vector<std::int32_t> listed_;
    std::vector<TFoundDevice> found_;
    std::vector<bool> sorts_;  // whether each request for the ports asked to sort them
    TScaleSettings confirmed_;
};

}  // namespace tolvane::test
