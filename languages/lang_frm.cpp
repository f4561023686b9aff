#include "languages/lang_frm.h"

#include <algorithm>

#include "app/pages.h"
#include "common/text.h"
#include "languages/language_table.h"
#include "ui/layout.h"
#include "ui/screen.h"

namespace murmelix {

namespace {

// Sorted by the shown name.
constexpr struct {
    const char16_t* name; // in the table
    const char16_t* shown;
} languages[] = {
    {u"Arabic", u"Arabic"},
    {u"Basque", u"Basque"},
    {u"SimplifiedChinese", u"Chinese (Simplified)"},
    {u"TraditionalChinese", u"Chinese (Traditional)"},
    {u"Croation", u"Croation"},
    {u"Czech", u"Czech"},
    {u"Danish", u"Danish"},
    {u"Dutch", u"Dutch"},
    {u"EnglishUS", u"English (US)"},
    {u"EnglishGB", u"English (GB)"},
    {u"Finnish", u"Finnish"},
    {u"French", u"French"},
    {u"German", u"German"},
    {u"Greek", u"Greek"},
    {u"Hebrew", u"Hebrew"},
    {u"Hungarian", u"Hungarian"},
    {u"Italian", u"Italian"},
    {u"Japanese", u"Japanese"},
    {u"Korean", u"Korean"},
    {u"Norwegian", u"Norwegian"},
    {u"Polish", u"Polish"},
    {u"Portuguese", u"Portuguese"},
    {u"Portuguese_Brazil", u"Portuguese (Brazil)"},
    {u"Romanian", u"Romanian"},
    {u"Russian", u"Russian"},
    {u"Slovakian", u"Slovakian"},
    {u"Slovenian", u"Slovenian"},
    {u"Spanish", u"Spanish"},
    {u"Swedish", u"Swedish"},
    {u"Thai", u"Thai"},
    {u"Turkish", u"Turkish"},
};

// Pixels at 96 dots an inch.
constexpr int row_height = 18, rows_in_view = 10;

} // namespace

LangFRM::LangFRM() : Form(nullptr, u"Change Language", ui::FormStyle::dialog) {
    setIcon({u"murmelix"});
    LanguageList.P.setAccessibleName(u"Languages");
    ChangeButt.setToolTipText(u"Changes the character's language to the selected one");
    CloseButt.setToolTipText(u"Close the window and discard any changes");
    GetLangButt.setToolTipText(u"Download more languages");
    ChangeButt.Click = [this] { ChangeButt_Click(); };
    CloseButt.Click = [this] { CloseButt_Click(); };
    GetLangButt.Click = [this] { GetLangButt_Click(); };
    LanguageList.OnSelect = [this] { ChangeButt.setEnabled(rowSelected()); };
    LanguageList.DblClick = [this] { ChangeButt_Click(); };
    LanguageList.P.KeyPress = [this](const ui::Shortcut& key) { return LanguageList_KeyPress(key); };
    DefaultButton = &ChangeButt;
    CancelButton = &CloseButt;
    layOut();
}

void LangFRM::Form_Load() {
    LanguageList.setSelected(0);
    LanguageList.ClearList();
    for (const auto& language : languages) {
        LanguageList.AddItem(language.shown, u"", LanguageTable.Item(std::u16string(language.name)), false);
    }
    LanguageList.SelectKey(u"%" + toText(LanguageToSwitch), true);
    ChangeButt.setEnabled(rowSelected());
    LanguageList.P.SetFocus();
}

void LangFRM::layOut() {
    constexpr int margin = 180, gap = 120, list_width = 3600, below_caption = 75;
    const int line = ui::toTwips(LanguageList.P.surface().TextHeight());
    const int row = std::max(line + 60, 15 * row_height);
    const int edge = 30; // of the list's border
    const ui::Layout buttons =
        ui::columns({ui::item(GetLangButt).least(1500, 375), ui::stretch(), ui::item(ChangeButt).least(1200, 375),
                     ui::item(CloseButt).least(1200, 375)})
            .gap(gap);
    ui::fit(
        *this,
        ui::rows({ui::within(Frame1, ui::rows({ui::item(LanguageList).least(list_width, rows_in_view * row + 2 * edge)})
                                         .pad(gap, Frame1.neededSize().height + below_caption, gap, gap)),
                  buttons})
            .gap(gap)
            .pad(margin));
    LanguageList.setItemHeight(toInt16(ui::toPixels(row)));
    const int above = (row - line) / 2;
    LanguageList.SetPos(ui::toPixels(90), ui::toPixels(above), ui::toPixels(90), ui::toPixels(above), 0, 0);
}

bool LangFRM::rowSelected() const {
    return LanguageList.Selected() != 0;
}

bool LangFRM::LanguageList_KeyPress(const ui::Shortcut& key) {
    const int count = LanguageList.GetItemCount(), selected = LanguageList.Selected();
    int position = 0;
    if (key == ui::Shortcut(ui::Key::up)) {
        position = selected - 1;
    } else if (key == ui::Shortcut(ui::Key::down)) {
        position = selected + 1;
    } else if (key == ui::Shortcut(ui::Key::page_up)) {
        position = selected - rows_in_view;
    } else if (key == ui::Shortcut(ui::Key::page_down)) {
        position = selected + rows_in_view;
    } else if (key == ui::Shortcut(ui::Key::home)) {
        position = 1;
    } else if (key == ui::Shortcut(ui::Key::end)) {
        position = count;
    } else {
        return false;
    }
    if (count != 0) {
        LanguageList.SelectKey(LanguageList.Item(static_cast<std::int16_t>(std::clamp(position, 1, count))).Key, true);
    }
    return true;
}

void LangFRM::ChangeButt_Click() {
    if (!rowSelected()) {
        return;
    }
    LanguageToSwitch = LanguageFromKey(LanguageList.GetSelectedKey());
    CloseButt_Click();
}

void LangFRM::CloseButt_Click() {
    Unload();
}

void LangFRM::GetLangButt_Click() {
    openPage(u"/Murmelix/download/langauges.html");
}

} // namespace murmelix
