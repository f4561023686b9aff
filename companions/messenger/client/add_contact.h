// The small window that asks for a new contact: sign-in name and name.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "ui/button.h"
#include "ui/form.h"
#include "ui/label.h"
#include "ui/text_box.h"

namespace messenger_client {

namespace ui = murmelix::ui;

class AddContactFrm final : public ui::Form {
  public:
    // What keeps the contact from being added, for people; empty where it was.
    using Add = std::function<std::u16string_view(const std::u16string& signin, const std::u16string& friendly)>;

    AddContactFrm(ui::Form& owner, Add add);
    // Empty, beside its owner.
    void Ask();
    void onClose() override { Hide(); }
    void layOut() override;

    ui::Label NameLbl{*this, u"Sign-in &name"};
    ui::TextBox NameTxt{*this, u""};
    ui::Label FriendlyLbl{*this, u"N&ame in the list"};
    ui::TextBox FriendlyTxt{*this, u""};
    ui::Label FaultLbl{*this, u""};
    ui::Button AddButt{*this, u"A&dd"};
    ui::Button CancelButt{*this, u"Cancel"};

  private:
    void AddButt_Click();

    Add add_;
};

} // namespace messenger_client
