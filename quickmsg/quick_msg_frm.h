// A line of text below a character that goes to the conversation being read, through that window's own input box and
// button.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ui/button.h"
#include "ui/form.h"
#include "ui/menu.h"
#include "ui/text_box.h"

namespace murmelix {

class QuickMsgFRM : public ui::Form {
  public:
    QuickMsgFRM();

    void Form_Load() override;
    bool onEscape() override;
    void layOut() override;

    void QuicTextBox_GotFocus();
    void QuicTextBox_Change();
    void SmiliesMenu_Click(int index); // from 0
    void CannedMenu_Click(int index);
    void EffectsMenu_Click(int index); // without the heading
    void SendButt_Click();
    void CloseMenu_Click();

    // Below whose character it is, by the contact's sign-in name.
    std::u16string Contact;

    ui::TextBox QuicTextBox;
    ui::Button SendButt{*this, u"&Send"};
    ui::Menu SmiliesMenu{*this, u"&Smilies"};
    ui::Menu CannedMenu{*this, u"&Canned"};
    ui::Menu EffectsMenu{*this, u"&Effects"};
    ui::BarItem CloseMenu{*this, u"Cl&ose"};

  private:
    bool promptShows() const;
    void clearPrompt();
    void put(const std::u16string& text);
};

} // namespace murmelix
