#pragma once

#include "ui/form.h"
#include "ui/label.h"
#include "ui/line.h"
#include "ui/link_label.h"
#include "ui/picture_box.h"

namespace murmelix {

// Name, version, web page and support address; a click anywhere closes it.
class AboutFRM : public ui::Form {
  public:
    explicit AboutFRM(ui::Form* owner);
    void Form_Load() override;
    bool onEscape() override;
    void layOut() override;
    void Label3_Click();
    void Label9_Click();

    ui::PictureBox AboutPic{*this};
    ui::Label Label5{*this, u"Murmelix"};
    ui::Line Line1{*this};
    ui::Label Label6{*this, u"Version:"};
    ui::Label VersionText{*this, u""};
    ui::Label Label7{*this, u"Webpage:"};
    ui::LinkLabel Label3;
    ui::Line Line2{*this};
    ui::LinkLabel Label9;
};

} // namespace murmelix
