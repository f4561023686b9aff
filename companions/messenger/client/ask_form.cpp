#include "companions/messenger/client/ask_form.h"

#include <utility>

#include "common/text.h"
#include "companions/messenger/client/looks.h"
#include "ui/layout.h"
#include "ui/screen.h"

namespace messenger_client {

AskFrm::AskFrm(ui::Form& owner, const std::u16string& caption, const std::u16string& label,
               const std::u16string& button, Take take)
    : Form(&owner, caption, ui::FormStyle::dialog, u"MessengerClientAsk"), TextLbl(*this, label),
      TakeButt(*this, button), take_(std::move(take)) {
    setBackColor(colour::face);
    TextLbl.setForeColor(colour::soft_text);
    FaultLbl.setForeColor(colour::fault);
    FaultLbl.setTellsNews();
    FaultLbl.setUseMnemonic(false);
    DefaultButton = &TakeButt;
    CancelButton = &CancelButt;
    TakeButt.Click = [this] { TakeButt_Click(); };
    CancelButt.Click = [this] { Hide(); };
    layOut();
}

void AskFrm::layOut() {
    using ui::item;
    const int line = FaultLbl.sizeFor(u"X").height;
    ui::fit(
        *this,
        ui::rows(
            {ui::rows({item(TextLbl), item(TextTxt)}).gap(30), item(FaultLbl).wrapped().least(0, 2 * line),
             ui::columns({ui::stretch(), item(TakeButt).least(1350, 390), item(CancelButt).least(1350, 390)}).gap(150)})
            .gap(150)
            .pad(210, 180, 210, 210),
        5400);
}

void AskFrm::Ask(const std::u16string& text) {
    if (!Visible()) {
        TextTxt.setText(text);
        FaultLbl.setCaption(u"");
        Center();
    }
    Show();
    TextTxt.SetFocus();
}

void AskFrm::TakeButt_Click() {
    const std::u16string fault = take_(std::u16string(murmelix::trim(TextTxt.Text())));
    if (fault.empty()) {
        return Hide();
    }
    FaultLbl.setCaption(fault);
    layOut();
    ui::beep();
    TextTxt.SetFocus();
}

} // namespace messenger_client
