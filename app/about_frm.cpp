#include "app/about_frm.h"

#include "app/pages.h"
#include "app/version_text.h"
#include "platform/system.h"

namespace murmelix {

AboutFRM::AboutFRM(ui::Form* owner)
    : Form(owner, u"About Murmelix", ui::FormStyle::dialog), Label3(*this, pageAddress(u"/Murmelix/")),
      Label9(*this, platform::supportAddress()) {
    setIcon({u"murmelix"});
    AboutIcon.setPicture({u"murmelix", 64});
    Label5.setHeading();
    Click = [this] { Unload(); };
    AboutIcon.Click = Click;
    Label3.Click = [this] { Label3_Click(); };
    Label9.Click = [this] { Label9_Click(); };

    AboutIcon.Move({240, 240, 1020, 1020});
    Label5.Move({1500, 240, 3000, 330});
    Label6.Move({1500, 660, 900, 240});
    VersionText.Move({2400, 660, 2100, 240});
    Label7.Move({1500, 960, 900, 240});
    Label3.Move({2400, 960, 3300, 240});
    Label9.Move({2400, 1260, 3300, 240});
    setScale(5910, 1740);
}

void AboutFRM::Form_Load() {
    VersionText.setCaption(versionText());
}

void AboutFRM::Label3_Click() {
    openPage(u"/Murmelix/");
}

void AboutFRM::Label9_Click() {
    openAddress(u"mailto:" + platform::supportAddress());
}

} // namespace murmelix
