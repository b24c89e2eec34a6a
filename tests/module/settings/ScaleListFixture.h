#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "settings/forms/ScaleComunicationForm.h"
#include "tests/support/scales/TestScales.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/UserScript.h"
#include "text/Cp1251.h"

namespace tolvane::test {

using TNames = std::vector<std::string>;
using TSteps = std::vector<TDialogScript::TStep>;

// ETS scales that take no part in runs: on TCP port 100, and on COM3 at 38400 bps.
inline TScaleObj EtsScale(std::int32_t number, std::string_view name, std::string_view address) {
    TScaleRec rec = NetworkScale(number, name, address, 100);
    rec.ScaleType = kScaleTypeEts;
    rec.Checked = false;
    return {rec};
}
inline TScaleObj SerialEtsScale(std::int32_t number, std::string_view name) {
    TScaleRec rec = SerialScale(number, name, "COM3");
    rec.ScaleType = kScaleTypeEts;
    rec.Checked = false;
    rec.BaudRate = 2;
    return {rec};
}

inline const std::vector<TScaleObj> kTwo = {EtsScale(3, "Месна витрина"_cp1251, "192.168.1.10"),
                                            SerialEtsScale(8, "Риба"_cp1251)};

// The names in the list.
inline TNames Items(HWND window) {
    const HWND list = ControlOf(window, "ScaleListBox");
    TNames names;
    const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        std::wstring text(128, L'\0');
        text.resize(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i),
                                                          reinterpret_cast<LPARAM>(text.data()))));
        names.push_back(Utf8(text));
    }
    return names;
}

inline void ExpectDetails(HWND window, const char* number, const char* name, const char* address,
                          const char* portOrSpeed) {
    EXPECT_EQ(TextOf(window, "edtScaleNumb"), number);
    EXPECT_EQ(TextOf(window, "edtScaleName"), name);
    EXPECT_EQ(TextOf(window, "edtScaleAddress"), address);
    EXPECT_EQ(TextOf(window, "edtScalePortBoud"), portOrSpeed);
}

// The list editor on a computer of the test's own.
class ScaleListFixture : public testing::Test {
protected:
    TScaleListServices Services() {
        TScaleListServices services;
        services.settings.listSerialPorts = [this](bool, std::vector<std::string>& items) {
            items = ports_;
        };
        services.settings.search = [](const std::atomic<bool>&, const TProbeReport&) {};
        services.openPage = [this](HWND, const std::string& page) { pages_.push_back(page); };
        return services;
    }

    int Show(std::vector<TScaleObj> scales, TSteps steps) {
        TScaleComunicationForm form(host_.Frame(), std::move(scales), Services());
        form_ = &form;
        const TDialogScript script(kScaleComunicationFormClass, std::move(steps));
        const int result = form.ShowModal();
        scales_ = form.Scales();
        return result;
    }

    THostFrame host_;
    TNames ports_ = {"COM1", "COM3"};
    TNames pages_;
    TScaleComunicationForm* form_ = nullptr;
    std::vector<TScaleObj> scales_;  // after the window has closed
};

}  // namespace tolvane::test
