// The main window: the conversations with the button that has one read, the options, the tray icon and the menus.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/about_frm.h"
#include "app/notices.h"
#include "controls/cool_list_box.h"
#include "languages/lang_frm.h"
#include "matchups/matchup_frm.h"
#include "messenger/msn_control.h"
#include "platform/agent_control.h"
#include "platform/kept_place.h"
#include "quickmsg/quick_msg_frm.h"
#include "ui/button.h"
#include "ui/check_box.h"
#include "ui/drop_down_list.h"
#include "ui/file_list.h"
#include "ui/form.h"
#include "ui/frame.h"
#include "ui/label.h"
#include "ui/layout.h"
#include "ui/picture_box.h"
#include "ui/text_box.h"
#include "ui/timer.h"
#include "ui/tray.h"

namespace murmelix {

class MainFrm : public ui::Form {
  public:
    // `main`: the start-up routine, entered again at every sign-in; `beginsAgain`: whether one in its middle makes it
    // begin again.
    MainFrm(std::function<void()> main, std::function<bool()> beginsAgain);

    // Run by the start-up routine, every time.
    void Form_Load() override;
    // The close box hides the window.
    void onClose() override;
    void onMove() override;
    void layOut() override;
    bool onActivate() override;

    void ShowSignOut(bool show = true);
    void StartReadingConversation();
    void AddSystemTrayIcon();
    void DeleteSystemTrayIcon();

    void SignInButt_Click();
    void HelpButt_Click();
    void StartConvButt_Click();
    void ReadOptnsButt_Click();
    void WindowResizeTimer_Timer();
    void ReadMoniter_Timer();
    void AutoMinimizeCheck_Click();
    void UpdatesCheck_Click();
    void CharMatchupButt_Click();
    void AutoAttachCheck_Click();
    void AutoHideBalloonCheck_Click();
    void HideIdleCheck_Click();
    void AutoCorrectTextCheck_Click();
    void IgnoreCharsCheck_Click();
    void IgnoreCharTxt_Change();
    void PlayReadEmoticonCheck_Click();
    void SoundSchemeList_Click();
    void SoundSchemeList_GotFocus();
    // The shell sends the icon's mouse messages as mouse moves, the message's number in `x` (twips).
    void SystemTrayPic_MouseMove(int button, int shift, float x, float y);

    void MurmelixMenuMinimize_Click();
    void MurmelixMenuExit_Click();
    void HelpMenuAbout_Click();
    void SystemMenuRestoreWindow_Click();

    ui::Frame SignOutFrame{*this, u"", ui::Frame::Border::none};
    ui::PictureBox SignOutIcon{SignOutFrame};
    ui::Label SignOutLbl{SignOutFrame,
                         u"You are not currently signed in to your MSN/Windows Messenger. Please sign in first"};
    ui::Button SignInButt{SignOutFrame, u"&Sign in"};
    ui::Button HelpButt{SignOutFrame, u"Help"};

    ui::Frame MainFrame{*this, u"Unknown - Offline"};
    CoolListBox ConversationsList{MainFrame};
    ui::Button StartConvButt{MainFrame, u"&Start Reading Conversation"};
    ui::Button ReadOptnsButt{MainFrame, u"Show &Options ->"};
    ui::PictureBox ConvIcon{MainFrame};

    ui::Frame MurmelixFrame{*this, u"Murmeli&x Options"};
    ui::CheckBox AutoMinimizeCheck{MurmelixFrame, u"&Minimize to System Tray on Startup"};
    ui::CheckBox UpdatesCheck{MurmelixFrame, u"A&uto Check for Updates"};

    ui::Frame CharFrame{*this, u"Characte&r Options"};
    ui::Button CharMatchupButt{CharFrame, u"Chara&cter Matchup..."};
    ui::CheckBox AutoAttachCheck{CharFrame, u"Auto Attach to Con&versation Window"};
    ui::CheckBox AutoHideBalloonCheck{CharFrame, u"&Auto Hide Balloon After Reading"};
    ui::CheckBox HideIdleCheck{CharFrame, u"Auto &Hide when Idle For a Short Time"};

    ui::Frame ReadTextFrame{*this, u"&Text Reading Options"};
    ui::CheckBox AutoCorrectTextCheck{ReadTextFrame, u"Auto Correct &Long Text (Recommended)"};
    ui::CheckBox IgnoreCharsCheck{ReadTextFrame, u"Ignore Reading The &Following Characters:"};
    ui::TextBox IgnoreCharTxt{ReadTextFrame, u"^#$/\\()"};

    ui::Frame EmotReadingFrame{*this, u"Emoticon Read&ing"};
    ui::CheckBox PlayReadEmoticonCheck{EmotReadingFrame, u"Enable Emotico&n Reading/Playing (Recommended)"};
    ui::Label SoundSchemeLbl{EmotReadingFrame, u"Sound Scheme:"};
    ui::DropDownList SoundSchemeList{EmotReadingFrame};

    ui::PictureBox SystemTrayPic{*this};
    ui::Timer WindowResizeTimer{1000};
    ui::Timer ReadMoniter{10};
    ui::FileList CharzList{u"*.acs"};

    ui::Menu MurmelixMenu{*this, u"&Murmelix"};
    ui::MenuItem MurmelixMenuMinimize{MurmelixMenu, u"&Minimize to System Tray"};
    ui::MenuItem MurmelixMenuSep1{MurmelixMenu, u"-"};
    ui::MenuItem MurmelixMenuGetMoreChars{MurmelixMenu, u"&Get More Characters"};
    ui::MenuItem MurmelixMenuGetMoreLangVoice{MurmelixMenu, u"Get More &Languages && Voices"};
    ui::MenuItem MurmelixMenuSep2{MurmelixMenu, u"-"};
    ui::MenuItem MurmelixMenuExit{MurmelixMenu, u"E&xit Murmelix"};

    ui::Menu HelpMenu{*this, u"&Help"};
    ui::MenuItem HelpMenuAbout{HelpMenu, u"&About Murmelix..."};
    ui::MenuItem HelpMenuSep2{HelpMenu, u"-"};
    ui::MenuItem HelpMenuTips{HelpMenu, u"&Learn Tips and Tricks"};
    ui::MenuItem HelpMenuHelp{HelpMenu, u"Find Hel&p on Website"};
    ui::MenuItem HelpMenuSep3{HelpMenu, u"-"};
    ui::MenuItem HelpMenuTellAFriend{HelpMenu, u"&Tell a Friend About Murmelix"};

    ui::Menu SystemMenu{*this, u"System"}; // the tray's popup menu
    ui::MenuItem SystemMenuRestoreWindow{SystemMenu, u"&Minimize Murmelix"};
    ui::MenuItem SystemMenuSep1{SystemMenu, u"-"};
    ui::MenuItem SystemMenuStopReadingConver{SystemMenu, u"&Stop Reading Conversation"};
    ui::MenuItem SystemMenuSep2{SystemMenu, u"-"};
    ui::MenuItem SystemMenuExitMurmelix{SystemMenu, u"E&xit Murmelix"};

    std::int16_t OptionsShown = 0;
    std::int16_t MinimizedToTray = 0;
    std::int16_t ReadingWindowTop = 0, ReadingWindowLeft = 0; // where the conversation window was last seen

    std::unique_ptr<platform::AgentControl> Agent;
    std::unique_ptr<murmelix::MSNControl> MSNControl;

    // The windows that come and go; null until they are needed first.
    std::unique_ptr<murmelix::MatchupFrm> MatchupFrm;
    std::unique_ptr<murmelix::AboutFRM> AboutFRM;
    std::unique_ptr<murmelix::MinimizeFrm> MinimizeFrm;
    std::unique_ptr<murmelix::TipFrm> TipFrm;
    std::unique_ptr<murmelix::TipEmotFrm> TipEmotFrm;
    std::unique_ptr<murmelix::QuickMsgFRM> QuickMsgFRM;
    std::unique_ptr<murmelix::LangFRM> LangFRM;

  private:
    void connectHandlers();
    void connectMenus();
    ui::Layout mainLayout();
    ui::Layout optionsLayout();
    ui::Layout signOutLayout();
    void layOutConversations();
    MonitorHost monitorHost();
    void connectCharacters();

    void followAccount();
    void loadFirstTime();
    void setMenuPictures();
    void loadOptions();
    void checkCharacterDirectory();
    void showFirstTime();
    void showAgain();
    void fillSoundSchemes();
    void stopReading();
    void showWhetherReading();
    void selectConversation(int rows_down);
    void takeLastPlace();
    ui::Rect placeWithoutOptions() const;
    // Both beside a character, whose contact's sign-in name is `key`; twips.
    void openQuickMessage(const std::u16string& key, std::int32_t left, std::int32_t top);
    void chooseLanguage(const std::u16string& key, std::int32_t left, std::int32_t top);
    void unloadWindowsOf(const std::u16string& key);
    void unloadSecondaryWindows();
    void showAlone(ui::Form& window);
    template <class Window>
    void showNotice(std::unique_ptr<Window>& notice);

    std::function<void()> main_;
    std::function<bool()> begins_again_;
    ui::TrayIconRecord tray_icon_{};
    platform::KeptPlace place_{u"Software\\MurmelixWindows", u"MainFrm"};
    // What showing the options made of the window's left side, where they had no room on the screen; pixels.
    struct MoveAside {
        int from, to;
    };
    std::optional<MoveAside> aside_;
};

} // namespace murmelix
