#include "app/loader.h"

#include "app/pages.h"
#include "app/settings.h"
#include "app/shell_state.h"
#include "common/ansi.h"
#include "common/text.h"
#include "languages/language_table.h"
#include "matchups/matchup_store.h"
#include "platform/message_box.h"
#include "platform/system.h"

namespace murmelix {

namespace {

using platform::attempt;
using platform::messageBox;

void startInstaller(const std::u16string& program) {
    const std::u16string directory = platform::programDirectory();
    platform::shellExecute(u"", directory + u"\\" + program, u"", directory);
}

} // namespace

murmelix::MainFrm& Loader::MainFrm() {
    if (!main_frm_) {
        main_frm_ = std::make_unique<murmelix::MainFrm>([this] { Main(); }, [this] { return beginsAgain(); });
    }
    return *main_frm_;
}

void Loader::Main() {
    if (in_main_) {
        again_ = true;
        return;
    }
    struct Run {
        explicit Run(bool& flag) : in_main(flag) { in_main = true; }
        ~Run() { in_main = false; }
        bool& in_main;
    } const run(in_main_);
    beginnings_ = 0;
    do {
        again_ = false;
        ++beginnings_;
        enterMain();
    } while (beginsAgain());
}

bool Loader::beginsAgain() const {
    return again_ && beginnings_ < most_beginnings;
}

void Loader::enterMain() {
    if (platform::isPreviousInstance()) {
        messageBox(
            u"Another copy of Murmelix is currently running.\r\n"
            u"Murmelix could be minimized to your system tray (beside your Windows' clock icon). Double click on "
            u"the Murmelix icon there to restore it",
            platform::mb_information, u"Murmelix already running!");
        platform::endProcess();
    }
    GetWindowsDir();
    const MSNControl& monitor = *MainFrm().MSNControl;
    const std::u16string path = SettingsKeyPathFor(MainFrm().MSNControl->MSNAPI());
    if (beginsAgain()) {
        return;
    }
    SettingsKeyPath = monitor.SignedOut() ? u"" : path;
    SoundsDir = platform::programDirectory() + u"\\sounds\\";
    CharPicsDir = platform::programDirectory() + u"\\CharPics";
    LoadSettings();
    LoadMatchups();
    if (!MainFormLoaded) {
        InitLanguageTable();
        if (platform::commandLine() == u"/Min" && SettingsKeyPath.empty()) {
            AutoMinimize = on;
        }
    }
    CheckSpeechEngine();
    if (beginsAgain()) {
        return;
    }
    MainFrm().Form_Load();
}

void Loader::GetWindowsDir() {
    constexpr std::size_t buffer_size = 50;
    std::string buffer;
    WindowsDir.clear();
    if (platform::windowsDirectory(buffer_size, buffer) == 0) {
        return;
    }
    buffer.erase(buffer.find_last_not_of(' ') + 1);
    WindowsDir = fromAnsi(buffer.substr(0, buffer.find('\0')));
    if (!WindowsDir.ends_with(u'\\')) {
        WindowsDir += u'\\';
    }
}

void Loader::EnableAgentRequestErrors() {
    if (attempt([this] { MainFrm().Agent->setRaiseRequestErrors(true); })) {
        return;
    }
    messageBox(
        u"Agent is not installed. Murmelix will now install it after you press the 'Ok' button. Please follow the "
        u"setup.",
        platform::mb_critical, u"Agent NOT installed");
    startInstaller(u"MSAGENT.exe");
    messageBox(u"Speech Input will now be installed. Murmelix will install it after you press the 'Ok' button. Please "
               u"follow the setup.",
               platform::mb_critical, u"Speech Engine NOT installed");
    startInstaller(u"tv_enua.exe");
    messageBox(u"Please make sure you restart your computer after both files are installed.", platform::mb_critical,
               u"Please Restart");
    MainFrm().DeleteSystemTrayIcon();
    platform::endProcess();
}

void Loader::CheckSpeechEngine() {
    EnableAgentRequestErrors();
    platform::AgentControl& agent = *MainFrm().Agent;
    bool enabled = false;
    attempt([&] { enabled = agent.AudioOutputEnabled(); });
    if (enabled) {
        return;
    }
    SpeechCheckAnswer = messageBox(
        u"Speech Input is not installed or has been disabled. Please go to '" + pageAddress(u"/Murmelix/download/") +
            u"'. If you have the speech engine installed, check the 'Play Spoken Audio' checkbox in the 'Character "
            u"Options' window. Would you like to view the 'Character Options' window now?",
        platform::mb_yes_no | platform::mb_information, u"Speech Engine NOT Installed Or Disabled");
    if (SpeechCheckAnswer == platform::answer_yes) {
        attempt([&] { agent.setPropertySheetPage(u"Output"); });
        attempt([&] { agent.setPropertySheetVisible(true); });
        messageBox(u"Please check the 'Play Spoken Audio' checkbox and Press the 'Ok' button. After pressing the 'Ok' "
                   u"button, Murmelix will close itself. Please restart your computer and then run Murmelix again.",
                   platform::mb_information, u"Play Spoken Audio");
    }
    MainFrm().DeleteSystemTrayIcon();
    platform::endProcess();
}

} // namespace murmelix
