// The notices: each shows a text until its never-show-again box is ticked, for each account.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ui/button.h"
#include "ui/check_box.h"
#include "ui/form.h"
#include "ui/label.h"
#include "ui/line.h"
#include "ui/link_label.h"
#include "ui/picture_box.h"

namespace murmelix {

// What they share. Only OK closes a notice; it stores the box in the notice's setting.
class NoticeFrm : public ui::Form {
  public:
    void Form_Load() override;
    void onClose() override {} // the close box is refused
    void OkButt_Click();

    ui::PictureBox NoticeIcon{*this};
    ui::CheckBox NeverShowMessAgainCheck;
    ui::Button OkButt{*this, u"OK"};

  protected:
    NoticeFrm(ui::Form* owner, const std::u16string& caption, const std::u16string& setting, std::int16_t& flag,
              const std::u16string& never, const std::u16string& never_tip);
    // From the top; a link is the last of them.
    void setTexts(std::vector<ui::Control*> texts);
    void layOut() override;

  private:
    ui::Line parting_{*this};
    std::vector<ui::Control*> texts_;
    std::u16string setting_;
    std::int16_t& flag_;
};

// The main window went to the tray.
class MinimizeFrm : public NoticeFrm {
  public:
    explicit MinimizeFrm(ui::Form* owner);

    ui::Label Label1, Label2;
};

// How to begin.
class TipFrm : public NoticeFrm {
  public:
    explicit TipFrm(ui::Form* owner);
    void LiveDemoLbl_Click();

    ui::Label WelcomeLbl, TipInfoLbl;
    ui::LinkLabel LiveDemoLbl;
};

// What emoticons sound like.
class TipEmotFrm : public NoticeFrm {
  public:
    explicit TipEmotFrm(ui::Form* owner);
    void LiveDemoLbl_Click();

    ui::Label WelcomeLbl, TipInfoLbl;
    ui::LinkLabel LiveDemoLbl;
};

} // namespace murmelix
