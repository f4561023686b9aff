#include "quickmsg/quick_msg_frm.h"

#include <algorithm>
#include <array>

#include "app/shell_state.h"
#include "common/ansi.h"
#include "platform/foreign_window.h"
#include "platform/message_box.h"
#include "platform/system.h"
#include "ui/layout.h"

namespace murmelix {

namespace {

const std::u16string prompt = u"Enter your quick message and press Enter...";

constexpr unsigned space_key = 32; // its virtual-key code

struct Smiley {
    const char16_t* caption;
    const char16_t* text;
    const char16_t* picture; // "smiley_" + this
};

constexpr Smiley smilies[] = {
    {u"Happy", u":)", u"smiley_happy"},
    {u"Open-Mouthed", u":D", u"smiley_open_mouthed"},
    {u"Winking", u";)", u"smiley_winking"},
    {u"Surprised", u":O", u"smiley_surprised"},
    {u"Tongue out", u":p", u"smiley_tongue_out"},
    {u"Hot", u"(H)", u"smiley_hot"},
    {u"Angry", u":@", u"smiley_angry"},
    {u"Confused", u":S", u"smiley_confused"},
    {u"Embarrassed", u":$", u"smiley_embarrassed"},
    {u"Sad", u":(", u"smiley_sad"},
    {u"Crying", u":'(", u"smiley_crying"},
    {u"Disappointed", u":|", u"smiley_disappointed"},
};

constexpr std::array canned = {u"Thank you", u"Always a pleasure", u"Be right back (BRB)", u"Sorry, I was away"};

constexpr std::array effects = {u"(lol)", u"(birthday)", u"(whistle)", u"(boo)", u"(run)",
                                u"(ohh)", u"(slap)",     u"(sniff)",   u"(sigh)"};

// The second edit box of a conversation window, whose first one is the history; 0 where there is none.
std::intptr_t inputBox(std::intptr_t window) {
    std::intptr_t history = 0;
    for (const char* rich_edit : {"RichEdit20A", "RichEdit20W"}) {
        if (const std::intptr_t first = platform::childWindow(window, rich_edit)) {
            if (const std::intptr_t second = platform::nextChildWindow(window, first, rich_edit)) {
                return second;
            }
            history = first;
        }
    }
    return history ? platform::nextChildWindow(window, history, "InkEdit") : 0;
}

} // namespace

QuickMsgFRM::QuickMsgFRM() : Form(nullptr, u"Quick Message", ui::FormStyle::dialog), QuicTextBox(*this, prompt) {
    setIcon({u"murmelix"});
    QuicTextBox.setAccessibleName(u"Quick message");
    QuicTextBox.setToolTipText(u"Type a quick message and press Enter to send");
    SendButt.setToolTipText(u"Send quick message");
    for (int i = 0; i < static_cast<int>(std::size(smilies)); ++i) {
        SmiliesMenu.AddItem(smilies[i].caption, [this, i] { SmiliesMenu_Click(i); });
    }
    for (int i = 0; i < static_cast<int>(canned.size()); ++i) {
        CannedMenu.AddItem(canned[static_cast<std::size_t>(i)], [this, i] { CannedMenu_Click(i); });
    }
    EffectsMenu.AddItem(u"- For Murmelix Users Only -").setEnabled(false);
    for (int i = 0; i < static_cast<int>(effects.size()); ++i) {
        EffectsMenu.AddItem(effects[static_cast<std::size_t>(i)], [this, i] { EffectsMenu_Click(i); });
    }
    QuicTextBox.GotFocus = [this] { QuicTextBox_GotFocus(); };
    QuicTextBox.DblClick = [this] { QuicTextBox.SelectAll(); };
    QuicTextBox.Change = [this] { QuicTextBox_Change(); };
    SendButt.Click = [this] { SendButt_Click(); };
    CloseMenu.Click = [this] { CloseMenu_Click(); };
    DefaultButton = &SendButt;
    layOut();
}

void QuickMsgFRM::Form_Load() {
    for (std::size_t i = 0; i < std::size(smilies); ++i) {
        SmiliesMenu.items().at(i)->setColourPicture({smilies[i].picture});
    }
    QuicTextBox.setText(prompt);
    QuicTextBox_Change();
    QuicTextBox.SetFocus();
    QuicTextBox.SelectAll(); // where it has the focus already, nothing tells of it
}

bool QuickMsgFRM::onEscape() {
    CloseMenu_Click();
    return true;
}

void QuickMsgFRM::layOut() {
    constexpr int margin = 120, gap = 90, text_width = 4500;
    ui::fit(*this, ui::columns({ui::item(QuicTextBox).least(text_width).centered().growing(),
                                ui::item(SendButt).least(1050, 375)})
                       .gap(gap)
                       .pad(margin));
}

bool QuickMsgFRM::promptShows() const {
    return QuicTextBox.Text() == prompt;
}

void QuickMsgFRM::clearPrompt() {
    if (promptShows()) {
        QuicTextBox.setText(u"");
    }
}

void QuickMsgFRM::put(const std::u16string& text) {
    QuicTextBox.setText(text);
    QuicTextBox.CaretToEnd();
}

void QuickMsgFRM::QuicTextBox_GotFocus() {
    QuicTextBox.SelectAll();
}

void QuickMsgFRM::QuicTextBox_Change() {
    SendButt.setEnabled(!QuicTextBox.Text().empty() && !promptShows());
}

void QuickMsgFRM::SmiliesMenu_Click(int index) {
    clearPrompt();
    put(QuicTextBox.Text() + smilies[index].text);
}

void QuickMsgFRM::CannedMenu_Click(int index) {
    clearPrompt();
    put(canned.at(static_cast<std::size_t>(index)));
}

void QuickMsgFRM::EffectsMenu_Click(int index) {
    clearPrompt();
    put(QuicTextBox.Text() + effects.at(static_cast<std::size_t>(index)));
}

void QuickMsgFRM::SendButt_Click() {
    if (!IsReadingConversation || ReadingWindowHandle == 0 || QuicTextBox.Text().empty() || promptShows()) {
        return CloseMenu_Click();
    }
    const std::intptr_t window = ReadingWindowHandle;
    const std::intptr_t input = inputBox(window);
    if (!input) {
        platform::messageBox(
            u"Murmelix is unable to send your quick message. Try sending it manually!\r\nPlease report this to " +
                platform::supportAddress(),
            platform::mb_critical, u"Unable to send Quick message!");
    }
    const std::intptr_t send = platform::childWindow(window, "Button", "&Send");
    platform::sendText(input, toAnsi(QuicTextBox.Text()));
    platform::sendKey(send, space_key, true);
    platform::sendKey(send, space_key, false);
    CloseMenu_Click();
}

void QuickMsgFRM::CloseMenu_Click() {
    Unload();
}

} // namespace murmelix
