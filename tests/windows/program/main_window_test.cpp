// The program's own windows as they stand on the screen.
#include <gmock/gmock.h>

#include "app/main_frm.h"
#include "app/settings.h"
#include "app/shell_state.h"
#include "common/com/handles.h"
#include "common/text.h"
#include "platform/ui/screen.h"
#include "platform/win32/ui/gdi.h"
#include "tests/windows/program/window_test.h"
#include "tests/windows/support/picture.h"

namespace murmelix {
namespace {

using namespace test;
using testing::IsEmpty;

// The main window of a program whose Messenger is not there, with nothing of its settings stored.
class MainWindow : public testing::Test {
  protected:
    MainWindow() {
        wchar_t temporary[MAX_PATH] = L"";
        GetTempPathW(MAX_PATH, temporary);
        WindowsDir = std::u16string(com::narrow(temporary, wcslen(temporary)));
        for (const char16_t* folder : {u"msagent", u"msagent\\chars", u"sounds", u"sounds\\bells", u"sounds\\default"})
            CreateDirectoryW(com::wide(WindowsDir + folder), nullptr);
        SoundsDir = WindowsDir + u"sounds\\";
        SettingsKeyPath.clear();
        MainFormLoaded = IsReadingConversation = 0;
        CurrentSoundScheme = u"default";
        IgnoredChars = u"^#$/\\()";
        AutoIgnoreChars = PlayReadEmoticon = AutoCorrectText = AutoHideBalloon = AutoAttachChar = 1;
        AutoUpdate = AutoMinimize = AutoHideIdleChar = ShowTipFrm = ShowMinimizeFrm = ShowEmotTipFrm = 0;
        form.Form_Load();
    }
    ~MainWindow() override {
        sendDpi(system_dpi);
        form.DeleteSystemTrayIcon();
    }

    // As when the window comes to a screen of another resolution.
    void sendDpi(int dpi) {
        RECT place{};
        GetWindowRect(windowOf(form), &place);
        SendMessageW(windowOf(form), WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
        serveAll();
    }

    void signIn() {
        form.ShowSignOut(false);
        form.MainFrame.setCaption(u"Ann - Online (2 Unread)");
        form.ConversationsList.AddItem(u"Conversation with:", u"Bob, Cy", u"%1", true, form.ConvIcon.picture());
        form.ConversationsList.AddItem(u"Conversation with:", u"Di, Ed, Flo, Gus,...", u"%2", false,
                                       form.ConvIcon.picture());
    }

    int outerWidth() {
        RECT outer{};
        GetWindowRect(windowOf(form), &outer);
        return outer.right - outer.left;
    }

    // Every window of the program in every state.
    void checkAll(const std::string& name) {
        const auto well = [&](const ui::Control& window, const std::string& state) {
            show(window, state + "-" + name);
            EXPECT_THAT(layoutMistakes(window), IsEmpty()) << state << " " << name;
        };
        form.ShowSignOut();
        well(form, "main-signed-out");
        signIn();
        well(form, "main-signed-in");
        form.ReadOptnsButt_Click();
        ASSERT_TRUE(form.MurmelixFrame.Enabled());
        well(form, "main-options");
        EXPECT_EQ(outerWidth(), ui::toPixels(form.MainFrame.Width() + form.MurmelixFrame.Width() + 405));
        form.ReadOptnsButt_Click();
        EXPECT_EQ(outerWidth(), ui::toPixels(form.MainFrame.Width() + 270));
        well(*minimize, "notice-minimize");
        well(*tip, "notice-tip");
        well(*emoticons, "notice-emoticons");
        well(*about, "about");
    }

    // All that the main window owns.
    void openAll() {
        minimize = std::make_unique<MinimizeFrm>(&form);
        tip = std::make_unique<TipFrm>(&form);
        emoticons = std::make_unique<TipEmotFrm>(&form);
        about = std::make_unique<AboutFRM>(&form);
        for (ui::Form* window :
             std::initializer_list<ui::Form*>{minimize.get(), tip.get(), emoticons.get(), about.get()})
            window->Show();
    }

    const com::Apartment apartment;
    const int system_dpi = ui::win32::screenDpi();
    MainFrm form{[] {}};
    std::unique_ptr<MinimizeFrm> minimize;
    std::unique_ptr<TipFrm> tip;
    std::unique_ptr<TipEmotFrm> emoticons;
    std::unique_ptr<AboutFRM> about;
};

TEST_F(MainWindow, EveryWindowKeepsItsLayoutAtEveryResolution) {
    openAll();
    for (const int dpi : {96, 120, 144, 192}) {
        sendDpi(dpi);
        EXPECT_EQ(ui::twipsPerPixel(), 1440.0 / dpi);
        checkAll(std::to_string(dpi));
    }
}

TEST_F(MainWindow, EveryWindowKeepsItsLayoutInAWiderFont) {
    openAll();
    NONCLIENTMETRICSW before{};
    before.cbSize = sizeof before;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof before, &before, 0);
    NONCLIENTMETRICSW wide = before;
    wide.lfMessageFont.lfHeight = MulDiv(-14, system_dpi, 96);
    wcscpy(wide.lfMessageFont.lfFaceName, L"DejaVu Sans");
    SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof wide, &wide, 0);
    SendMessageW(windowOf(form), WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
    LOGFONTW used{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(windowOf(form.StartConvButt), WM_GETFONT, 0, 0)), sizeof used,
               &used);
    EXPECT_STREQ(used.lfFaceName, L"DejaVu Sans");
    checkAll("wide-font");
    sendDpi(144);
    checkAll("wide-font-144");
    SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof before, &before, 0);
}

} // namespace
} // namespace murmelix
