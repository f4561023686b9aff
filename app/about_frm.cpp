#include "app/about_frm.h"

#include <algorithm>

#include "app/pages.h"
#include "app/version_text.h"
#include "platform/system.h"
#include "ui/layout.h"

namespace murmelix {

namespace {

constexpr int picture_size = 96;

} // namespace

AboutFRM::AboutFRM(ui::Form* owner)
    : Form(owner, u"About Murmelix", ui::FormStyle::dialog), Label3(*this, pageAddress(u"/Murmelix/")),
      Label9(*this, platform::supportAddress()) {
    setIcon({u"murmelix"});
    AboutPic.setPicture({u"picture_about", picture_size});
    AboutPic.setAccessibleName(u"A character of Murmelix");
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
    constexpr int margin = 240, gap = 120, widest = 6000;
    const int names = std::max(Label6.neededSize().width, Label7.neededSize().width) + gap;
    ui::fit(*this, ui::columns({ui::item(AboutPic).atStart(),
                                ui::rows({ui::item(Label5), ui::item(Line1),
                                          ui::columns({ui::item(Label6).least(names), ui::item(VersionText).growing()}),
                                          ui::columns({ui::item(Label7).least(names), ui::item(Label3).widest(widest)}),
                                          ui::item(Line2), ui::item(Label9).widest(widest).atStart()})
                                    .gap(gap)
                                    .least(3300)
                                    .growing()})
                       .gap(margin)
                       .pad(margin));
}

void AboutFRM::Label3_Click() {
    openPage(u"/Murmelix/");
}

void AboutFRM::Label9_Click() {
    openAddress(u"mailto:" + platform::supportAddress());
}

} // namespace murmelix
