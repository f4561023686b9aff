// A small window that asks for one line of text.
#pragma once

#include <functional>
#include <string>

#include "ui/button.h"
#include "ui/form.h"
#include "ui/label.h"
#include "ui/text_box.h"

namespace messenger_client {

namespace ui = murmelix::ui;

class AskFrm final : public ui::Form {
  public:
    // What is wrong with the text, as a sentence for people; empty where it was taken.
    using Take = std::function<std::u16string(const std::u16string& text)>;

    AskFrm(ui::Form& owner, const std::u16string& caption, const std::u16string& label, const std::u16string& button,
           Take take);
    // With the text to begin with, beside its owner.
    void Ask(const std::u16string& text);
    void onClose() override { Hide(); }
    void layOut() override;

    ui::Label TextLbl;
    ui::TextBox TextTxt{*this, u""};
    ui::Label FaultLbl{*this, u""};
    ui::Button TakeButt;
    ui::Button CancelButt{*this, u"Cancel"};

  private:
    void TakeButt_Click();

    Take take_;
};

} // namespace messenger_client
