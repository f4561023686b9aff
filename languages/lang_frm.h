// The languages that a character can be given; one of them is chosen by "Change" alone.
#pragma once

#include <string>

#include "controls/cool_list_box.h"
#include "ui/button.h"
#include "ui/form.h"
#include "ui/frame.h"

namespace murmelix {

// Shown modally. LanguageToSwitch is preset by whoever opens it and set by "Change". It has no owner: it comes in front
// of the conversation whose character was asked, where a window manager would leave it with its owner behind that.
class LangFRM : public ui::Form {
  public:
    LangFRM();

    void Form_Load() override;
    void onClose() override {} // the close box is refused
    void layOut() override;

    void ChangeButt_Click();
    void CloseButt_Click();
    void GetLangButt_Click();

    // Its character, by the contact's sign-in name.
    std::u16string Contact;

    ui::Frame Frame1{*this, u"Change Language"};
    CoolListBox LanguageList{Frame1};
    ui::Button ChangeButt{*this, u"&Change"};
    ui::Button CloseButt{*this, u"&Close"};
    ui::Button GetLangButt{*this, u"Get More Languages"};

  private:
    bool rowSelected() const;
    bool LanguageList_KeyPress(const ui::Shortcut& key);
};

} // namespace murmelix
