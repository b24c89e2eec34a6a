#include "upload/forms/RunChoices.h"

#include "text/Cp1251.h"

namespace tolvane {
namespace {

// Sizes at 96 dots per inch.
constexpr int kLabelHeight = 16;
constexpr int kOpenedComboHeight = 150;

}  // namespace

void TRunChoices::Make(const std::function<HWND(const TControlOptions&)>& add) {
    constexpr std::array<const char*, kPriceCaptions.size()> kNames = {"PriceRadio0",
                                                                       "PriceRadio1"};
    priceRadio_ =
        add({.kind = TControlKind::GroupBox, .name = "PriceRadio", .text = "Цена"_cp1251});
    for (std::size_t i = 0; i < priceButtons_.size(); ++i)
        priceButtons_[i] = add({.kind = TControlKind::RadioButton,
                                .name = kNames[i],
                                .text = kPriceCaptions[i],
                                .style = i == 0 ? DWORD{WS_GROUP} : DWORD{0}});
    lblPluName1_ = add({.kind = TControlKind::Label,
                        .name = "lblPluName1",
                        .text = "Име 1"_cp1251,
                        .style = WS_GROUP});
    cbPluName1_ = add({.kind = TControlKind::ComboList, .name = "cbPluName1"});
    lblPluName2_ =
        add({.kind = TControlKind::Label, .name = "lblPluName2", .text = "Име 2"_cp1251});
    cbPluName2_ = add({.kind = TControlKind::ComboList, .name = "cbPluName2"});
    for (const HWND combo : {cbPluName1_, cbPluName2_}) {
        for (const TNameChoice& choice : kNameChoices)
            AddComboItem(combo, choice.caption);
    }
}

void TRunChoices::Place(int left, int top,
                        const std::function<void(HWND, const TBounds&)>& place) const {
    place(priceRadio_, {left, top, kWidth, 64});
    int buttonTop = top + 18;
    for (const HWND button : priceButtons_) {
        place(button, {left + 10, buttonTop, kWidth - 20, 19});
        buttonTop += 21;
    }
    place(lblPluName1_, {left, top + 70, kWidth, kLabelHeight});
    place(cbPluName1_, {left, top + 87, kWidth, kOpenedComboHeight});
    place(lblPluName2_, {left, top + 116, kWidth, kLabelHeight});
    place(cbPluName2_, {left, top + 133, kWidth, kOpenedComboHeight});
}

void TRunChoices::Show(const TLineChoices& choices) const {
    for (std::size_t i = 0; i < priceButtons_.size(); ++i)
        SetChecked(priceButtons_[i], static_cast<int>(i) == choices.price);
    SetComboIndex(cbPluName1_, choices.name1);
    SetComboIndex(cbPluName2_, choices.name2);
}

TLineChoices TRunChoices::Current() const {
    TLineChoices choices;
    for (std::size_t i = 0; i < priceButtons_.size(); ++i) {
        if (IsChecked(priceButtons_[i])) choices.price = static_cast<int>(i);
    }
    choices.name1 = ComboIndex(cbPluName1_);
    choices.name2 = ComboIndex(cbPluName2_);
    return choices;
}

void TRunChoices::Enable(bool enabled) const {
    for (const HWND control : {cbPluName1_, cbPluName2_, priceRadio_})
        EnableWindow(control, enabled ? TRUE : FALSE);
    for (const HWND button : priceButtons_)
        EnableWindow(button, enabled ? TRUE : FALSE);
}

}  // namespace tolvane
