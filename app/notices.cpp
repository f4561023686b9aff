#include "app/notices.h"

#include "app/pages.h"
#include "app/settings.h"
#include "app/shell_state.h"

namespace murmelix {

namespace {

const std::u16string never_tip_text = u"Disable showing this tip everytime you are logged in to this account";

} // namespace

NoticeFrm::NoticeFrm(ui::Form* owner, const std::u16string& caption, const std::u16string& setting, std::int16_t& flag,
                     const std::u16string& never, const std::u16string& never_tip)
    : Form(owner, caption, ui::FormStyle::dialog), NeverShowMessAgainCheck(*this, never), setting_(setting),
      flag_(flag) {
    setIcon({u"murmelix"});
    NoticeIcon.setPicture({u"murmelix", 32});
    NeverShowMessAgainCheck.setToolTipText(never_tip);
    OkButt.Click = [this] { OkButt_Click(); };
    DefaultButton = &OkButt;
}

void NoticeFrm::Form_Load() {
    NeverShowMessAgainCheck.setValue(0);
}

void NoticeFrm::OkButt_Click() {
    const bool never = NeverShowMessAgainCheck.Value() != 0;
    WriteRegistryValue(platform::Hive::current_user, SettingsKeyPath, setting_, never ? u"0" : u"1");
    flag_ = never ? 0 : 1;
    Unload();
}

void NoticeFrm::layOut(ui::Control& first, int first_height, ui::Control& second, int second_height,
                       ui::Control* link) {
    constexpr int left = 945, width = 4500, gap = 120;
    int y = 210;
    NoticeIcon.Move({210, y, 495, 495});
    first.Move({left, y, width, first_height});
    y += first_height + gap;
    second.Move({left, y, width, second_height});
    y += second_height + gap;
    if (link) {
        link->Move({left, y, 2700, 240});
        y += 240 + gap;
    }
    y += gap;
    NeverShowMessAgainCheck.Move({left, y + 60, 3150, 270});
    OkButt.Move({left + width - 1200, y, 1200, 375});
    setScale(left + width + 210, y + 375 + 180);
}

MinimizeFrm::MinimizeFrm(ui::Form* owner)
    : NoticeFrm(owner, u"Minimize Murmelix alert", u"ShowMinimizeFrm", ShowMinimizeFrm,
                u"&Never show this message again", u"Disable showing this window the next time you minimize Murmelix"),
      Label1(*this, u"Murmelix will be minimized to your system tray and will still read your conversations."),
      Label2(*this,
             u"To restore Murmelix, simply double click it's icon in your system tray (beside your system clock).") {
    layOut(Label1, 450, Label2, 450, nullptr);
}

TipFrm::TipFrm(ui::Form* owner)
    : NoticeFrm(owner, u"Getting Started", u"ShowTipFrm", ShowTipFrm, u"&Never show this tip again", never_tip_text),
      WelcomeLbl(*this, u"Welcome to Murmelix."),
      TipInfoLbl(*this, u"To use Murmelix, simply select the conversation you would like Murmelix to read to you and "
                        u"click on the 'Start Reading Conversation' button. It's that easy!"),
      LiveDemoLbl(*this, u"Click here to see a live demo") {
    WelcomeLbl.setHeading();
    LiveDemoLbl.Click = [this] { LiveDemoLbl_Click(); };
    layOut(WelcomeLbl, 300, TipInfoLbl, 660, &LiveDemoLbl);
}

void TipFrm::LiveDemoLbl_Click() {
    openPage(u"/Murmelix/help/livedemo.html");
}

TipEmotFrm::TipEmotFrm(ui::Form* owner)
    : NoticeFrm(owner, u"Emoticons into Voice", u"ShowEmotTipFrm", ShowEmotTipFrm, u"&Never show this tip again",
                never_tip_text),
      WelcomeLbl(*this, u"Translate Emoticons Into Fun Sounds"),
      TipInfoLbl(*this, u"Translate the emoticons you receive from your friends into fun sounds. This is the best part "
                        u"about Murmelix. It's easy to do. Click the link below to learn how to do that."),
      LiveDemoLbl(*this, u"Click here to hear fun sounds") {
    WelcomeLbl.setHeading();
    LiveDemoLbl.Click = [this] { LiveDemoLbl_Click(); };
    layOut(WelcomeLbl, 300, TipInfoLbl, 660, &LiveDemoLbl);
}

void TipEmotFrm::LiveDemoLbl_Click() {
    openPage(u"/Murmelix/help/emoticons.html");
}

} // namespace murmelix
