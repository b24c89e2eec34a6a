#include "upload/forms/RunChoices.h"

#include "text/Cp1251.h"

namespace tolvane {
namespace {

// Sizes at 96 dots per inch.
constexpr int kLabelHeight = 16;
constexpr int kOpenedComboHeight = 150;

}  // namespace

void TRunChoices::Make(TForm& form) {
    constexpr std::array<const char*, kPriceCaptions.size()> kNames = {"PriceRadio0",
                                                                       "PriceRadio1"};
    priceRadio_ = form.Add(TControlKind::GroupBox, "PriceRadio", "Цена"_cp1251, {});
    for (std::size_t i = 0; i < priceButtons_.size(); ++i)
        priceButtons_[i] = form.Add(TControlKind::RadioButton, kNames[i], kPriceCaptions[i], {},
                                    i == 0 ? DWORD{WS_GROUP} : DWORD{0});
    lblPluName1_ = form.AddLabel("lblPluName1", "Име 1"_cp1251, {}, WS_GROUP);
    cbPluName1_ = form.Add(TControlKind::ComboList, "cbPluName1", {}, {});
    lblPluName2_ = form.AddLabel("lblPluName2", "Име 2"_cp1251, {});
    cbPluName2_ = form.Add(TControlKind::ComboList, "cbPluName2", {}, {});
    for (const HWND combo : {cbPluName1_, cbPluName2_}) {
        for (const TNameChoice& choice : kNameChoices)
            AddComboItem(combo, choice.caption);
    }
}

void TRunChoices::Arrange(const TForm& form, int left, int top) const {
    form.Place(priceRadio_, {left, top, kWidth, 64});
    int buttonTop = top + 18;
    for (const HWND button : priceButtons_) {
        form.Place(button, {left + 10, buttonTop, kWidth - 20, 19});
        buttonTop += 21;
    }
    form.Place(lblPluName1_, {left, top + 70, kWidth, kLabelHeight});
    form.Place(cbPluName1_, {left, top + 87, kWidth, kOpenedComboHeight});
    form.Place(lblPluName2_, {left, top + 116, kWidth, kLabelHeight});
    form.Place(cbPluName2_, {left, top + 133, kWidth, kOpenedComboHeight});
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
