#include "companions/messenger/client/sign_in_page.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "common/text.h"
#include "companions/messenger/client/looks.h"
#include "ui/form.h"
#include "ui/screen.h"

namespace messenger_client {

SignInPage::SignInPage(ui::Control& parent, const Accounts& accounts, Hooks hooks)
    : Frame(parent, u"", Border::none), accounts_(accounts), hooks_(std::move(hooks)) {
    setBackColor(colour::face);
    for (ui::Label* label : {&NameLbl, &DisplayNameLbl, &StatusLbl, &NoteLbl}) {
        label->setForeColor(colour::soft_text);
    }
    FaultLbl.setForeColor(colour::fault);
    FaultLbl.setUseMnemonic(false);
    NoteLbl.setUseMnemonic(false);
    DisplayNameLbl.setEllipsis(ui::Label::Ellipsis::end);
    std::vector<std::u16string> statuses;
    for (const Status status : chosen_statuses) {
        statuses.emplace_back(nameOf(status));
    }
    StatusList.setItems(std::move(statuses));
    StatusList.setListIndex(0);
    ForgetButt.setEnabled(false);
    NameBox.Change = [this] { NameBox_Change(); };
    NameBox.Picked = [this] { NameBox_Picked(); };
    RememberCheck.Click = [this] { RememberCheck_Click(); };
    AutomaticCheck.Click = [this] { AutomaticCheck_Click(); };
    SignInButt.Click = [this] { SignInButt_Click(); };
    ForgetButt.Click = [this] { ForgetButt_Click(); };
}

ui::Layout SignInPage::layout() {
    using ui::item;
    const int line = FaultLbl.sizeFor(u"X").height;
    const auto field = [](ui::Label& label, ui::Control& control) {
        return ui::rows({item(label), item(control)}).gap(30);
    };
    return ui::rows({field(NameLbl, NameBox), field(DisplayNameLbl, DisplayNameTxt), field(StatusLbl, StatusList),
                     ui::rows({item(RememberCheck), item(AutomaticCheck)}).gap(60),
                     item(FaultLbl).wrapped().least(0, 2 * line),
                     ui::columns({item(SignInButt).least(1440, 390), ui::stretch(), item(ForgetButt).least(1260, 390)}),
                     item(NoteLbl).wrapped(), ui::stretch()})
        .gap(135)
        .pad(240, 150, 240, 150);
}

void SignInPage::focusFirst() {
    if (murmelix::trim(NameBox.Text()).empty()) {
        NameBox.SetFocus();
    } else {
        SignInButt.SetFocus();
    }
}

void SignInPage::propose(std::u16string_view signin) {
    if (!signin.empty() &&
        murmelix::sameText(completedSignin(murmelix::trim(NameBox.Text())), signin, murmelix::LetterCase::ignored)) {
        return; // what was filled in stays
    }
    const Account* last = accounts_.all().empty() ? nullptr : &accounts_.all().front();
    const Account* account = signin.empty() ? last : accounts_.find(signin);
    if (account) {
        fillIn(form_.propose(*account));
    } else if (signin.empty() && murmelix::trim(NameBox.Text()).empty()) {
        fillIn(form_.proposeLast());
    }
}

void SignInPage::proposeNobody() {
    fillIn(form_.proposeNobody());
}

void SignInPage::fillIn(const SignInRequest& fields) {
    filling_in_ = true;
    NameBox.setText(fields.signin);
    DisplayNameTxt.setText(fields.friendly);
    const auto status = std::find(chosen_statuses.begin(), chosen_statuses.end(), fields.status);
    StatusList.setListIndex(status == chosen_statuses.end() ? 0 : static_cast<int>(status - chosen_statuses.begin()));
    RememberCheck.setValue(fields.remember ? 1 : 0);
    AutomaticCheck.setValue(fields.automatic ? 1 : 0);
    filling_in_ = false;
    showWhetherKnown();
}

void SignInPage::accountsChanged() {
    std::vector<std::u16string> remembered;
    for (const Account& account : accounts_.all()) {
        if (account.remembered) {
            remembered.push_back(account.signin);
        }
    }
    NameBox.setItems(std::move(remembered));
    showWhetherKnown();
}

void SignInPage::tellFault(std::u16string_view fault) {
    if (fault != FaultLbl.Caption()) {
        FaultLbl.setCaption(std::u16string(fault));
        form().onSize(); // it may take more lines
    }
}

void SignInPage::showWhetherKnown() {
    const Account* known = accounts_.find(completedSignin(murmelix::trim(NameBox.Text())));
    ForgetButt.setEnabled(known && known->remembered);
}

void SignInPage::NameBox_Change() {
    if (filling_in_) {
        return;
    }
    showWhetherKnown();
    if (const auto friendly = form_.friendlyFor(NameBox.Text(), DisplayNameTxt.Text())) {
        DisplayNameTxt.setText(*friendly);
    }
}

void SignInPage::NameBox_Picked() {
    if (const Account* account = accounts_.find(NameBox.Text())) {
        fillIn(form_.propose(*account));
    }
}

// What signs in by itself has to be remembered.
void SignInPage::RememberCheck_Click() {
    if (!filling_in_ && RememberCheck.Value() == 0) {
        AutomaticCheck.setValue(0);
    }
}

void SignInPage::AutomaticCheck_Click() {
    if (!filling_in_ && AutomaticCheck.Value() != 0) {
        RememberCheck.setValue(1);
    }
}

void SignInPage::SignInButt_Click() {
    SignInRequest request = form_.completed({NameBox.Text(), DisplayNameTxt.Text(), Status::online,
                                             RememberCheck.Value() != 0, AutomaticCheck.Value() != 0});
    const std::u16string_view fault = faultOfSignin(request.signin);
    tellFault(fault);
    if (!fault.empty()) {
        ui::beep();
        NameBox.SetFocus();
        return;
    }
    if (const int row = StatusList.ListIndex(); row >= 0) {
        request.status = chosen_statuses[static_cast<std::size_t>(row)];
    }
    hooks_.sign_in(request);
}

void SignInPage::ForgetButt_Click() {
    hooks_.forget(completedSignin(murmelix::trim(NameBox.Text())));
    proposeNobody();
    NameBox.SetFocus();
}

} // namespace messenger_client
