#include "app/notices.h"

#include <algorithm>
#include <utility>

#include "app/pages.h"
#include "app/settings.h"
#include "app/shell_state.h"
#include "ui/layout.h"

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
    NoticeIcon.setAccessibleName(u"Murmelix");
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

void NoticeFrm::setTexts(std::vector<ui::Control*> texts) {
    texts_ = std::move(texts);
    layOut();
}

void NoticeFrm::layOut() {
    constexpr int margin = 210, gap = 150, text_width = 4650;
    std::vector<ui::Layout> texts;
    for (ui::Control* text : texts_) {
        const bool link = dynamic_cast<ui::LinkLabel*>(text) != nullptr;
        texts.push_back(link ? ui::item(*text).atStart() : ui::item(*text).wrapped());
    }
    const ui::Layout above = ui::columns({ui::item(NoticeIcon).atStart(),
                                          ui::rows(std::move(texts)).gap(gap).wrapped().growing().least(text_width)})
                                 .gap(margin);
    const ui::Layout below = ui::columns({ui::item(NeverShowMessAgainCheck).least(0, 255).centered(), ui::stretch(),
                                          ui::item(OkButt).least(1200, 375)})
                                 .gap(gap);
    const int icon_and_texts = NoticeIcon.neededSize().width + margin + text_width;
    ui::fit(*this, ui::rows({above, ui::item(parting_), below}).gap(gap).pad(margin, margin, margin, gap),
            std::max(icon_and_texts, below.needed().width) + 2 * margin);
}

MinimizeFrm::MinimizeFrm(ui::Form* owner)
    : NoticeFrm(owner, u"Minimize Murmelix alert", u"ShowMinimizeFrm", ShowMinimizeFrm,
                u"&Never show this message again", u"Disable showing this window the next time you minimize Murmelix"),
      Label1(*this, u"Murmelix will be minimized to your system tray and will still read your conversations."),
      Label2(*this,
             u"To restore Murmelix, simply double click it's icon in your system tray (beside your system clock).") {
    setTexts({&Label1, &Label2});
}

TipFrm::TipFrm(ui::Form* owner)
    : NoticeFrm(owner, u"Getting Started", u"ShowTipFrm", ShowTipFrm, u"&Never show this tip again", never_tip_text),
      WelcomeLbl(*this, u"Welcome to Murmelix."),
      TipInfoLbl(*this, u"To use Murmelix, simply select the conversation you would like Murmelix to read to you and "
                        u"click on the 'Start Reading Conversation' button. It's that easy!"),
      LiveDemoLbl(*this, u"Click here to see a live demo") {
    WelcomeLbl.setHeading();
    LiveDemoLbl.Click = [this] { LiveDemoLbl_Click(); };
    setTexts({&WelcomeLbl, &TipInfoLbl, &LiveDemoLbl});
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
    setTexts({&WelcomeLbl, &TipInfoLbl, &LiveDemoLbl});
}

void TipEmotFrm::LiveDemoLbl_Click() {
    openPage(u"/Murmelix/help/emoticons.html");
}

} // namespace murmelix
