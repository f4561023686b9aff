#include "companions/messenger/client/add_contact.h"

#include <utility>

#include "common/text.h"
#include "companions/messenger/chat/contact.h"
#include "companions/messenger/client/looks.h"
#include "ui/layout.h"
#include "ui/screen.h"

namespace messenger_client {

AddContactFrm::AddContactFrm(ui::Form& owner, Add add)
    : Form(&owner, u"Add a contact", ui::FormStyle::dialog, u"MessengerClientAddContact"), add_(std::move(add)) {
    setBackColor(colour::face);
    NameLbl.setForeColor(colour::soft_text);
    FriendlyLbl.setForeColor(colour::soft_text);
    FaultLbl.setForeColor(colour::fault);
    FaultLbl.setTellsNews();
    FaultLbl.setUseMnemonic(false);
    DefaultButton = &AddButt;
    CancelButton = &CancelButt;
    AddButt.Click = [this] { AddButt_Click(); };
    CancelButt.Click = [this] { Hide(); };
    layOut();
}

void AddContactFrm::layOut() {
    using ui::item;
    const int line = FaultLbl.sizeFor(u"X").height;
    ui::fit(
        *this,
        ui::rows(
            {ui::rows({item(NameLbl), item(NameTxt)}).gap(30), ui::rows({item(FriendlyLbl), item(FriendlyTxt)}).gap(30),
             item(FaultLbl).wrapped().least(0, 2 * line),
             ui::columns({ui::stretch(), item(AddButt).least(1350, 390), item(CancelButt).least(1350, 390)}).gap(150)})
            .gap(150)
            .pad(210, 180, 210, 210),
        4800);
}

void AddContactFrm::Ask() {
    if (!Visible()) {
        NameTxt.setText(u"");
        FriendlyTxt.setText(u"");
        FaultLbl.setCaption(u"");
        Center();
    }
    Show();
    NameTxt.SetFocus();
}

void AddContactFrm::AddButt_Click() {
    const std::u16string signin = completedSignin(murmelix::trim(NameTxt.Text()));
    std::u16string friendly(murmelix::trim(FriendlyTxt.Text()));
    if (friendly.empty()) {
        friendly = nameTypedForSignin(NameTxt.Text());
    }
    std::u16string_view fault = faultOfSignin(signin);
    if (fault.empty()) {
        fault = add_(signin, friendly);
    }
    if (fault.empty()) {
        return Hide();
    }
    FaultLbl.setCaption(std::u16string(fault));
    layOut();
    ui::beep();
    NameTxt.SetFocus();
}

} // namespace messenger_client
