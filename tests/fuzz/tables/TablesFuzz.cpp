#include <algorithm>
#include <string>
#include <vector>

#include "articles/GridLayout.h"
#include "command/ScaleList.h"
#include "config/IniDocument.h"
#include "config/ScaleTable.h"
#include "config/ScaleTableMerge.h"
#include "tests/fuzz/Fuzz.h"
#include "upload/RunSettings.h"

namespace tolvane {
namespace {

using fuzz::Must;
using fuzz::TInput;

TScaleTable TableOf(const TIniDocument& document) {
    TScaleTable table;
    table.Load(document);
    return table;
}

// The numbers of the slots in use.
std::vector<int> SlotsInUse(const TScaleTable& table) {
    std::vector<int> slots;
    for (int slot = 1; slot <= kScaleSlots; ++slot) {
        if (IsInUse(table[slot])) slots.push_back(slot);
    }
    return slots;
}

void TryTable(TInput& input) {
    TIniDocument document(input.RestAsText());
    const TScaleTable table = TableOf(document);
    const std::vector<TListedScale> listed = ListedScales(document);
    Must(listed.size() <= kScaleSlots, "a list has room for twenty scales");
    for (const TListedScale& scale : listed)
        Must(scale.fault.empty() == scale.cure.empty(), "each fault has a cure");
    table.Save(document);
    const std::string saved = document.Bytes();
    Must(HasSameScales(TableOf(document), table), "what was saved is loaded");
    Must(HasSameScales(TableOf(TIniDocument(saved)), table), "what is in the file is loaded");
    table.Save(document);
    Must(document.Bytes() == saved, "saving once more changes nothing");
    for (int slot = 1; slot <= kScaleSlots; ++slot)
        Must(document.HasSection("SCALE" + std::to_string(slot)) == IsInUse(table[slot]),
             "only scales in use have a section");
}

// A text that a field of a window can hold.
std::string EnteredText(TInput& input) {
    std::string text = input.Text();
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\r' || c == '\0'; }, ' ');
    return text;
}

// What a user does with a slot of the list.
void ChangeSlot(TInput& input, TScaleTable& table) {
    const int slot = 1 + static_cast<int>(input.Below(kScaleSlots));
    TScaleRec& rec = table[slot];
    switch (input.Below(8)) {
        case 0:
            rec = {};
            break;
        case 1:
            rec = table[1 + static_cast<int>(input.Below(kScaleSlots))];
            break;
        case 2:
            rec.Checked = !rec.Checked;
            break;
        case 3:
            rec.ScaleNumb = input.Byte();
            break;
        case 4:
            rec.ScaleName = EnteredText(input);
            break;
        case 5:
            rec.TCPAddress = EnteredText(input);
            break;
        case 6:
            std::swap(rec, table[1 + static_cast<int>(input.Below(kScaleSlots))]);
            break;
        default:
            rec = TScaleRec();
            rec.ScaleNumb = input.Byte();
            rec.ScaleName = "N" + std::to_string(input.Byte() % 4);
            rec.TCPAddress = "10.0.0." + std::to_string(input.Byte() % 4);
            rec.TCPPort = 1001;
            rec.CommType = kCommTcp;
    }
}

bool HasNumber(const TScaleTable& table, std::int32_t number) {
    const std::vector<int> slots = SlotsInUse(table);
    return std::any_of(slots.begin(), slots.end(),
                       [&](int slot) { return table[slot].ScaleNumb == number; });
}

std::size_t ChangesIn(TInput& input, TScaleTable& table) {
    const std::size_t changes = input.Below(6);
    for (std::size_t i = 0; i < changes; ++i)
        ChangeSlot(input, table);
    return changes;
}

void TryMerge(TInput& input) {
    TScaleTable known;
    // Small tables at first, so that changes meet.
    for (std::size_t i = input.Below(kScaleSlots + 1); i > 0; --i)
        ChangeSlot(input, known);
    TScaleTable current = known;
    const std::size_t changes = ChangesIn(input, current);
    TScaleTable others = known;
    const std::size_t othersChanges = ChangesIn(input, others);
    const std::string foreign = "; the shop's\r\n[Printer]\r\nName=Zebra\r\n";
    TIniDocument document(foreign);
    others.Save(document);
    const TScaleTable before = TableOf(document);
    const std::vector<int> leftOut = SaveScaleChanges(known, current, document);
    const TScaleTable merged = TableOf(document);
    Must(document.Bytes().starts_with(foreign), "what is not the module's stays");
    for (const int slot : leftOut)
        Must(slot >= 1 && slot <= kScaleSlots && IsInUse(current[slot]), "a scale was left out");
    if (changes == 0) Must(HasSameScales(merged, before), "without a change nothing is changed");
    if (othersChanges == 0)
        Must(leftOut.empty() && HasSameScales(merged, current),
             "without others, all is as it is here");
    for (const int slot : SlotsInUse(before)) {
        if (HasNumber(known, before[slot].ScaleNumb)) continue;
        Must(merged[slot] == before[slot], "a scale that only others know stays");
    }
    if (!leftOut.empty())
        Must(SlotsInUse(merged).size() == kScaleSlots, "a scale is left out for want of room only");
}

void TryLayout(TInput& input) {
    const int dotsPerInch = 96 + static_cast<int>(input.Byte());
    TIniDocument document(input.RestAsText());
    const TGridLayout layout = LoadGridLayout(document, dotsPerInch);
    for (const TGridColumn& column : kGridColumns) {
        const auto isIt = [&](const TColumnLayout& placed) { return placed.field == column.field; };
        Must(std::count_if(layout.columns.begin(), layout.columns.end(), isIt) == 1,
             "each column is there once");
    }
    for (const TColumnLayout& column : layout.columns)
        Must(column.width >= 0 && column.width <= 100'000, "a width is one");
    for (std::size_t i = 0; i < layout.columns.size(); ++i)
        Must(IsHidden(layout.hiddenRows, i).has_value() == (i < layout.hiddenRows.size()),
             "a column is hidden or not");
    SaveGridLayout(layout, dotsPerInch, document);
    const std::string saved = document.Bytes();
    const TGridLayout again = LoadGridLayout(TIniDocument(saved), dotsPerInch);
    Must(std::equal(layout.columns.begin(), layout.columns.end(), again.columns.begin(),
                    [](const TColumnLayout& a, const TColumnLayout& b) {
                        return a.field == b.field && a.width == b.width;
                    }),
         "a layout is saved");
    Must(again.hiddenRows == layout.hiddenRows, "hidden columns are saved");
    Must(again.place.has_value() == layout.place.has_value(), "a place is saved");
    SaveGridLayout(again, dotsPerInch, document);
    Must(document.Bytes() == saved, "saving once more changes nothing");
}

void TryRunSettings(TInput& input) {
    TIniDocument document(input.RestAsText());
    LoadGridStyle(document);
    const TRunSettings settings = LoadRunSettings(document);
    const TLineChoices& choices = settings.choices;
    Must(choices.price >= 0 && choices.price < 2, "a price is one of two");
    Must(choices.name1 >= 0 && choices.name1 < 4 && choices.name2 >= 0 && choices.name2 < 4,
         "a name is one of four");
    SaveRunSettings(settings, document);
    const std::string saved = document.Bytes();
    const TRunSettings again = LoadRunSettings(TIniDocument(saved));
    Must(again.choices.price == choices.price && again.choices.name1 == choices.name1 &&
             again.choices.name2 == choices.name2,
         "choices are saved");
    SaveRunSettings(again, document);
    Must(document.Bytes() == saved, "saving once more changes nothing");
}

}  // namespace
}  // namespace tolvane

// A letter for the subject, then its input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tolvane::fuzz::TInput input(data, size);
    switch (input.Byte()) {
        case 't':
            tolvane::TryTable(input);
            break;
        case 'm':
            tolvane::TryMerge(input);
            break;
        case 'g':
            tolvane::TryLayout(input);
            break;
        case 'r':
            tolvane::TryRunSettings(input);
            break;
        default:
            return -1;
    }
    return 0;
}
