#include "app/about_frm.h"

#include <algorithm>

#include "app/pages.h"
#include "app/version_text.h"
#include "platform/system.h"

namespace murmelix {

namespace {

constexpr int picture_size = 96;

} // namespace

AboutFRM::AboutFRM(ui::Form* owner)
    : Form(owner, u"About Murmelix", ui::FormStyle::dialog), Label3(*this, pageAddress(u"/Murmelix/")),
      Label9(*this, platform::supportAddress()) {
    setIcon({u"murmelix"});
    AboutPic.setPicture({u"picture_about", picture_size});
    Label5.setHeading();
    Label3.setUseMnemonic(false);
    Label9.setUseMnemonic(false);
    Click = [this] { Unload(); };
    AboutPic.Click = Click;
    Label3.Click = [this] { Label3_Click(); };
    Label9.Click = [this] { Label9_Click(); };
    layOut();
}

void AboutFRM::Form_Load() {
    VersionText.setCaption(versionText());
}

bool AboutFRM::onEscape() {
    Unload();
    return true;
}

void AboutFRM::layOut() {
    constexpr int margin = 240, gap = 120, picture = 15 * picture_size, left = margin + picture + margin, widest = 6000;
    const int line = Label6.neededSize().height;
    const int names = std::max(Label6.neededSize().width, Label7.neededSize().width) + gap;
    const int page = std::min(Label3.neededSize().width, widest), mail = std::min(Label9.neededSize().width, widest);
    const int width = std::max({names + page, mail, 3300});

    int y = margin;
    AboutPic.Move({margin, y, picture, picture});
    const int heading = Label5.neededSize().height;
    Label5.Move({left, y, width, heading});
    y += heading + gap;
    Line1.Move({left, y, width, 30});
    y += 30 + gap;
    Label6.Move({left, y, names, line});
    VersionText.Move({left + names, y, width - names, line});
    y += line + gap;
    Label7.Move({left, y, names, line});
    Label3.Move({left + names, y, page, line});
    y += line + gap;
    Line2.Move({left, y, width, 30});
    y += 30 + gap;
    Label9.Move({left, y, mail, line});
    setScale(left + width + margin, std::max(y + line, margin + picture) + margin);
}

void AboutFRM::Label3_Click() {
    openPage(u"/Murmelix/");
}

void AboutFRM::Label9_Click() {
    openAddress(u"mailto:" + platform::supportAddress());
}

} // namespace murmelix
