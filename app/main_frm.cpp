#include "app/main_frm.h"

#include <algorithm>
#include <array>
#include <utility>

#include "app/pages.h"
#include "app/settings.h"
#include "app/shell_state.h"
#include "app/version_text.h"
#include "characters/agent_events.h"
#include "characters/character_state.h"
#include "characters/placement.h"
#include "common/ansi.h"
#include "common/text.h"
#include "platform/message_box.h"
#include "platform/system.h"
#include "ui/screen.h"

namespace murmelix {

namespace {

using platform::attempt;

constexpr int border_room = 270, options_gap = 135; // of the width arithmetic
// Around the frames and between them; inside them at either side.
constexpr int margin = 120, indent = 180;

const ui::Picture conversation_picture{u"picture_conversation", 32};
const ui::Picture program_picture{u"murmelix"};

void store(const std::u16string& name, const ui::CheckBox& box, std::int16_t& flag) {
    WriteRegistryValue(platform::Hive::current_user, SettingsKeyPath, name, box.Value() != 0 ? u"1" : u"0");
    flag = box.Value();
}

// The window's handle in a row's key: "%1234".
std::int32_t handleOf(const std::u16string& row_key) {
    return row_key.empty() ? 0 : static_cast<std::int32_t>(leadingNumber(std::u16string_view(row_key).substr(1)));
}

std::int16_t to16Bit(std::int32_t value) {
    return static_cast<std::int16_t>(std::clamp(value, -32768, 32767));
}

// A frame with what is in it, which stands below its caption.
ui::Layout titled(ui::Frame& frame, ui::Layout inside) {
    const ui::Size caption = frame.neededSize();
    return ui::within(frame, ui::rows({std::move(inside).growing()})
                                 .pad(indent, caption.height + 75, indent, 135)
                                 .least(caption.width + 2 * indent));
}

// On the screen, where the place is not.
void putBeside(ui::Form& form, std::int32_t left, std::int32_t top) {
    const ui::Rect size = form.Place();
    form.setPlace(ui::onScreen({ui::toPixels(left), ui::toPixels(top), size.width, size.height}));
}

} // namespace

MainFrm::MainFrm(std::function<void()> main, std::function<bool()> beginsAgain)
    : Form(nullptr, u"Murmelix", ui::FormStyle::window), main_(std::move(main)), begins_again_(std::move(beginsAgain)) {
    setIcon(program_picture);
    connectHandlers();
    connectMenus();
    layOut();
    Center();
    takeLastPlace();
    connectCharacters();
    Agent = platform::createAgentControl(agentEvents());
    characterHost.agent = Agent.get();
    MSNControl = std::make_unique<murmelix::MSNControl>(monitorHost());
}

void MainFrm::connectHandlers() {
    SignInButt.setToolTipText(u"Sign in Messenger");
    SignInButt.Click = [this] { SignInButt_Click(); };
    HelpButt.setToolTipText(u"Get online help");
    HelpButt.Click = [this] { HelpButt_Click(); };
    StartConvButt.setToolTipText(u"Start/Stop reading the selected conversation");
    StartConvButt.Click = [this] { StartConvButt_Click(); };
    ReadOptnsButt.setToolTipText(u"Show/hide options");
    ReadOptnsButt.Click = [this] { ReadOptnsButt_Click(); };
    AutoMinimizeCheck.setToolTipText(u"Automatically minimize Murmelix to the system tray on startup");
    AutoMinimizeCheck.Click = [this] { AutoMinimizeCheck_Click(); };
    UpdatesCheck.setToolTipText(u"Automatically check for updates on start up");
    UpdatesCheck.Click = [this] { UpdatesCheck_Click(); };
    CharMatchupButt.setToolTipText(u"Open Matchup window to matchup characters with users");
    CharMatchupButt.Click = [this] { CharMatchupButt_Click(); };
    AutoAttachCheck.setToolTipText(u"Automatically attaches all characters to the sides of the chat window");
    AutoAttachCheck.Click = [this] { AutoAttachCheck_Click(); };
    AutoHideBalloonCheck.setToolTipText(u"Automatically hide the characters' balloon after reading");
    AutoHideBalloonCheck.Click = [this] { AutoHideBalloonCheck_Click(); };
    HideIdleCheck.setToolTipText(u"Hide idel characters for a long time");
    HideIdleCheck.Click = [this] { HideIdleCheck_Click(); };
    AutoCorrectTextCheck.setToolTipText(u"Automatically have long text corrected - recommended");
    AutoCorrectTextCheck.Click = [this] { AutoCorrectTextCheck_Click(); };
    IgnoreCharsCheck.setToolTipText(u"Ignore the characters below");
    IgnoreCharsCheck.Click = [this] { IgnoreCharsCheck_Click(); };
    IgnoreCharTxt.setToolTipText(u"Characters to ignore");
    IgnoreCharTxt.Change = [this] { IgnoreCharTxt_Change(); };
    PlayReadEmoticonCheck.setToolTipText(u"Enable reading of emoticons when used in conversation - recommended");
    PlayReadEmoticonCheck.Click = [this] { PlayReadEmoticonCheck_Click(); };
    SoundSchemeList.setToolTipText(u"Select a sound scheme to use for reading emoticons");
    SoundSchemeList.Click = [this] { SoundSchemeList_Click(); };
    SoundSchemeList.GotFocus = [this] { SoundSchemeList_GotFocus(); };
    WindowResizeTimer.Tick = [this] { WindowResizeTimer_Timer(); };
    ReadMoniter.Tick = [this] { ReadMoniter_Timer(); };
    SystemTrayPic.MouseMove = [this](int button, int shift, double x, double y) {
        const double twips = ui::twipsPerPixel();
        SystemTrayPic_MouseMove(button, shift, static_cast<float>(x * twips), static_cast<float>(y * twips));
    };

    SignOutFrame.setAccessibleName(u"Signed out");
    SignOutIcon.setAccessibleName(u"Murmelix");
    ConversationsList.P.setAccessibleName(u"Conversations");
    IgnoreCharTxt.setAccessibleName(u"Characters that are not read");
    StartConvButt.setEnabled(false); // until there is a conversation
    ConversationsList.setNoItemCaption(u"Open a conversation in your Messenger[ENTER]and it appears here");

    // The list's own keys scroll it.
    addAccelerator({ui::Key::up, ui::control_key}, [this] { selectConversation(-1); });
    addAccelerator({ui::Key::down, ui::control_key}, [this] { selectConversation(1); });
    // Its letter is heard behind the panel as well: what is clicked there counts for the time after it.
    addAccelerator({u'O', ui::alt_key}, [this] {
        if (SignOutFrame.Visible()) {
            ReadOptnsButt_Click();
        } else {
            ReadOptnsButt.onMnemonic();
        }
    });

    // The boxes are clear at first, and what they enable is disabled.
    IgnoreCharTxt.setEnabled(false);
    SoundSchemeList.setEnabled(false);
    MainFrame.setUseMnemonic(false); // people have all kinds of names
    for (ui::Frame* frame : {&MurmelixFrame, &CharFrame, &ReadTextFrame, &EmotReadingFrame}) {
        frame->setEnabled(false);
    }
    showWhetherReading();
    SignOutFrame.setVisible(false);
    SystemTrayPic.setVisible(false);
    SystemTrayPic.setPicture(program_picture);
    ConvIcon.setVisible(false);
    ConvIcon.setPicture(conversation_picture);
    SignOutLbl.setCentered();
    SignOutIcon.setPicture({program_picture.name, 64});
}

void MainFrm::connectMenus() {
    const auto opens = [](ui::MenuItem& item, const char16_t* path) { item.Click = [path] { openPage(path); }; };
    MurmelixMenuMinimize.Click = [this] { MurmelixMenuMinimize_Click(); };
    opens(MurmelixMenuGetMoreChars, u"/Murmelix/download/d_characters.html");
    opens(MurmelixMenuGetMoreLangVoice, u"/Murmelix/download/langauges.html");
    MurmelixMenuExit.Click = [this] { MurmelixMenuExit_Click(); };
    HelpMenuAbout.Click = [this] { HelpMenuAbout_Click(); };
    opens(HelpMenuTips, u"/Murmelix/help/tips.html");
    opens(HelpMenuHelp, u"/Murmelix/help/");
    opens(HelpMenuTellAFriend, u"/Murmelix/sendmail/");
    SystemMenuRestoreWindow.Click = [this] { SystemMenuRestoreWindow_Click(); };
    SystemMenuStopReadingConver.Click = [this] { StartConvButt_Click(); };
    SystemMenuExitMurmelix.Click = [this] { MurmelixMenuExit_Click(); };
}

void MainFrm::layOut() {
    const ui::Layout main = mainLayout(), options = optionsLayout();
    const int main_width = main.needed().width;
    const int height = std::max({main.needed().height, options.needed().height, 5100});

    setScale(main_width + border_room, height + 2 * margin);
    setWidth(main_width + border_room);
    // What the window's border leaves of its room is shared out on both sides.
    const int left = (ScaleWidth() - main_width) / 2;
    main.place({left, margin, main_width, height});
    layOutConversations();
    options.place({left + main_width + options_gap, margin, options.needed().width, height});
    signOutLayout().place({0, 0, 2 * left + main_width, height + 2 * margin});
    if (MurmelixFrame.Enabled()) {
        setWidth(MurmelixFrame.Width() + main_width + options_gap + border_room);
    }
}

ui::Layout MainFrm::mainLayout() {
    const auto button = [](ui::Button& of, std::initializer_list<const char16_t*> captions) {
        int widest = 0;
        for (const char16_t* caption : captions) {
            widest = std::max(widest, of.sizeFor(caption).width);
        }
        return ui::item(of).least(widest + 90, 390);
    };
    return titled(MainFrame, ui::rows({ui::item(ConversationsList).growing(),
                                       ui::columns({button(StartConvButt, {u"&Start Reading Conversation",
                                                                           u"&Start Reading Selected Conversation",
                                                                           u"&Stop Reading Conversation"})
                                                        .growing(),
                                                    button(ReadOptnsButt, {u"Show &Options ->", u"<- Hide &Options"})})
                                           .gap(margin)})
                                 .gap(150))
        .least(4950);
}

ui::Layout MainFrm::optionsLayout() {
    const auto check = [](ui::CheckBox& box) { return ui::item(box).least(0, 255); };
    const auto lines = [](std::vector<ui::Layout> parts) { return ui::rows(std::move(parts)).gap(45); };
    return ui::rows(
               {titled(MurmelixFrame, lines({check(AutoMinimizeCheck), check(UpdatesCheck)})),
                titled(CharFrame, lines({ui::item(CharMatchupButt).least(2400, 390).atStart(), ui::space(),
                                         check(AutoAttachCheck), check(AutoHideBalloonCheck), check(HideIdleCheck)})),
                titled(ReadTextFrame, lines({check(AutoCorrectTextCheck), check(IgnoreCharsCheck),
                                             ui::columns({ui::space(270), ui::item(IgnoreCharTxt).growing()})})),
                titled(EmotReadingFrame, lines({check(PlayReadEmoticonCheck), ui::space(),
                                                ui::columns({ui::item(SoundSchemeLbl).centered(),
                                                             ui::item(SoundSchemeList).least(2400).growing()})
                                                    .gap(90)}))
                    .growing()})
        .gap(margin);
}

ui::Layout MainFrm::signOutLayout() {
    const int button = std::max({SignInButt.neededSize().width, HelpButt.neededSize().width, 1260});
    return ui::within(
        SignOutFrame,
        ui::rows({ui::space().growing(2), ui::item(SignOutIcon).centered(),
                  ui::item(SignOutLbl).wrapped().widest(3600).centered(),
                  ui::columns({ui::item(SignInButt).least(button, 390), ui::item(HelpButt).least(button, 390)})
                      .gap(margin)
                      .centered(),
                  ui::space().growing(3)})
            .gap(300));
}

// Whole rows fill the list, so that none hides below its edge.
void MainFrm::layOutConversations() {
    const int line = ui::toTwips(ConversationsList.P.surface().TextHeight());
    const int row = std::max(2 * line + 150, 600), picture = 15 * conversation_picture.size;
    const int caption = (row - 2 * line - 30) / 2, left = 90 + picture + 90;
    const auto inside = [this] { return ConversationsList.P.surface().Height(); };
    const int rows = std::max(inside() / std::max(ui::toPixels(row), 1), 1), item_height = std::max(inside() / rows, 1);
    ConversationsList.setItemHeight(to16Bit(item_height));
    for (int height = ConversationsList.Height(); inside() > rows * item_height;) {
        height -= std::max(ui::toTwips(inside() - rows * item_height), 1);
        ConversationsList.Move({ConversationsList.Left(), ConversationsList.Top(), ConversationsList.Width(), height});
    }
    ConversationsList.SetPos(ui::toPixels(left), ui::toPixels(caption), ui::toPixels(left),
                             ui::toPixels(caption + line + 30), ui::toPixels(90), ui::toPixels((row - picture) / 2));
}

MonitorHost MainFrm::monitorHost() {
    MonitorHost host;
    host.addConversation = [this](const auto& caption, const auto& text, const auto& key, bool sel) {
        ConversationsList.AddItem(caption, text, key, sel, ConvIcon.picture());
    };
    host.editConversationText = [this](const auto& key, const auto& text) {
        ConversationsList.EditItemText(key, text);
    };
    host.removeConversation = [this](const auto& key) { ConversationsList.RemoveItem(key); };
    host.conversationCount = [this] { return std::int32_t{ConversationsList.GetItemCount()}; };
    host.startConvButtClick = [this] { StartConvButt_Click(); };
    host.enableStartConvButt = [this](bool enabled) { StartConvButt.setEnabled(enabled); };
    host.showSignOut = [this](bool show) { ShowSignOut(show); };
    host.deleteSystemTrayIcon = [this] { DeleteSystemTrayIcon(); };
    host.userCaption = [this] { return MainFrame.Caption(); };
    host.setUserCaption = [this](const auto& caption) { MainFrame.setCaption(caption); };
    host.resetReadingWindow = [this] {
        ++ReadingNumber;
        WindowResizeTimer.setEnabled(false);
        ReadingWindowTop = ReadingWindowLeft = 0;
        ConversationsList.setEnabledIt(true);
        showWhetherReading();
    };
    host.enableReadMoniter = [this](bool enabled) { ReadMoniter.setEnabled(enabled); };
    host.unloadSecondaryWindows = [this] { unloadSecondaryWindows(); };
    host.main = main_;
    return host;
}

void MainFrm::connectCharacters() {
    characterHost = {};
    characterHost.characterFiles = [this] {
        CharzList.Refresh();
        return CharzList.names();
    };
    characterHost.conversationWindow = [this] { return MSNControl->GetWindowAt(ReadingWindowHandle); };
    characterHost.messenger = [this] { return &MSNControl->MSNAPI(); };
    characterHost.removeMoniteredContact = [this](const auto& key) { MSNControl->RemoveMoniteredContact(key); };
    characterHost.openQuickMessage = [this](const auto& key, auto left, auto top) { openQuickMessage(key, left, top); };
    characterHost.chooseLanguage = [this](const auto& key, auto left, auto top) { chooseLanguage(key, left, top); };
    characterHost.characterGone = [this](const auto& key) { unloadWindowsOf(key); };
    characterHost.deleteSystemTrayIcon = [this] { DeleteSystemTrayIcon(); };
}

void MainFrm::Form_Load() {
    loaded_ = true;
    if (!MainFormLoaded) {
        loadFirstTime();
    }
    if (SettingsKeyPath.empty()) {
        ShowSignOut();
    }
    attempt([this] { MSNControl->MSNAPI_OnMyStatusChange(0, MSNControl->MSNAPI().MyStatus()); });
    if (begins_again_()) {
        return;
    }
    followAccount();
    loadOptions();
    checkCharacterDirectory();
    if (MainFormLoaded) {
        showAgain();
    } else {
        showFirstTime();
    }
    if (ShowTipFrm) {
        showNotice(TipFrm);
    }
}

// The matchup window shows those of the account that it was opened for.
void MainFrm::followAccount() {
    if (MatchupFrm && SettingsKeyPath.empty()) {
        MatchupFrm->Unload();
    } else if (MatchupFrm) {
        MatchupFrm->Refill();
    }
}

void MainFrm::loadFirstTime() {
    setMenuPictures();
    SystemMenu.setCaption(u"");
    SystemMenu.setEnabled(false);
    setCaption(u"Murmelix v" + versionText());
    SignOutFrame.ZOrder();
}

void MainFrm::setMenuPictures() {
    // In the order of the menus' items; a separator's has no picture.
    static const std::array<const char16_t*, 17> MenuImgs{
        u"menu_minimize", nullptr, u"menu_characters", u"menu_voices", nullptr,     u"menu_exit",
        u"menu_about",    nullptr, u"menu_tips",       u"menu_help",   nullptr,     u"menu_friend",
        u"menu_restore",  nullptr, u"menu_stop",       nullptr,        u"menu_exit"};
    std::size_t element = 0;
    for (const ui::Menu* menu : menus()) {
        for (ui::MenuItem* item : menu->items()) {
            if (const char16_t* picture = MenuImgs.at(element++)) {
                item->setPicture({picture});
            }
        }
    }
}

void MainFrm::loadOptions() {
    UpdatesCheck.setValue(AutoUpdate);
    AutoMinimizeCheck.setValue(AutoMinimize);
    HideIdleCheck.setValue(AutoHideIdleChar);
    AutoHideBalloonCheck.setValue(AutoHideBalloon);
    PlayReadEmoticonCheck.setValue(PlayReadEmoticon);
    AutoAttachCheck.setValue(AutoAttachChar);
    AutoCorrectTextCheck.setValue(AutoCorrectText);
    IgnoreCharsCheck.setValue(AutoIgnoreChars);
    IgnoreCharTxt.setText(IgnoredChars);
    if (!IsReadingConversation) { // a reading may have begun while the calls before were answered
        StartConvButt.setCaption(u"&Start Reading Selected Conversation");
    }
    fillSoundSchemes();
}

void MainFrm::checkCharacterDirectory() {
    const std::u16string directory = WindowsDir + u"msagent\\chars\\";
    if (!platform::directoryExists(directory)) {
        platform::messageBox(
            u"The character directory is not avaiable! Please reinstall Murmelix to fix this problem!\r\n"
            u"Please restart your computer after the installation",
            platform::mb_critical, u"Character Directory not found!");
        DeleteSystemTrayIcon();
        platform::endProcess();
    }
    CharzList.setPath(directory);
    CharzList.setListIndex(0);
}

void MainFrm::showFirstTime() {
    AddSystemTrayIcon();
    MainFormLoaded = on;
    if (AutoMinimize) {
        SystemMenuRestoreWindow.setCaption(u"&Restore Murmelix");
        Hide();
        MinimizedToTray = on;
    } else {
        Show();
    }
    if (AutoUpdate) {
        const std::u16string directory = platform::programDirectory();
        platform::shellExecute(u"", directory + u"\\updater.exe", pageAddress(u"/Murmelix/download/"), directory);
    }
}

void MainFrm::showAgain() {
    if (AutoMinimize) {
        Hide();
        MinimizedToTray = on;
        SystemMenuRestoreWindow.setCaption(u"&Restore Murmelix");
    } else {
        MinimizedToTray = 0;
        Show();
        SystemMenuRestoreWindow.setCaption(u"&Minimize Murmelix");
    }
}

void MainFrm::onClose() {
    MurmelixMenuMinimize_Click();
}

void MainFrm::ShowSignOut(bool show) {
    if (!show) {
        return SignOutFrame.setVisible(false);
    }
    SettingsKeyPath.clear();
    ShowMinimizeFrm = 0;
    ShowTipFrm = 0;
    ShowEmotTipFrm = 0;
    ConversationsList.ClearList();
    StartConvButt.setEnabled(false);
    OptionsShown = on;
    ReadOptnsButt_Click();
    SignOutFrame.setVisible(true);
}

void MainFrm::SignInButt_Click() {
    MSNControl->SignIn();
}

void MainFrm::HelpButt_Click() {
    openPage(u"/Murmelix/help/signin.html");
}

void MainFrm::StartConvButt_Click() {
    StartConvButt.setCaption(IsReadingConversation ? u"&Start Reading Conversation" : u"&Stop Reading Conversation");
    IsReadingConversation = IsReadingConversation ? std::int16_t{0} : on;
    ++ReadingNumber;
    if (IsReadingConversation) {
        ConversationsList.setEnabledIt(false);
        StartReadingConversation();
    } else {
        stopReading();
    }
    showWhetherReading();
}

void MainFrm::selectConversation(int rows_down) {
    const int count = ConversationsList.GetItemCount();
    if (!ConversationsList.EnabledIt() || SignOutFrame.Visible() || count == 0) {
        return;
    }
    const int position = std::clamp(ConversationsList.Selected() + rows_down, 1, count);
    ConversationsList.SelectKey(ConversationsList.Item(to16Bit(position)).Key, true);
}

void MainFrm::showWhetherReading() {
    SystemMenuStopReadingConver.setEnabled(IsReadingConversation != 0);
    if (!IsReadingConversation && QuickMsgFRM) {
        QuickMsgFRM->Unload();
    }
}

void MainFrm::StartReadingConversation() {
    const std::int32_t handle = handleOf(ConversationsList.GetSelectedKey());
    const auto window = MSNControl->GetWindowAt(handle);
    if (!window) {
        return StartConvButt_Click();
    }
    ReadingWindowHandle = handle;
    // In the middle of a call the reading can be ended or another one begun.
    const auto goes_on = [reading = ReadingNumber] { return reading == ReadingNumber; };
    std::int16_t top = 0, left = 0;
    attempt([&] { top = to16Bit(window->Top()); });
    attempt([&] { left = to16Bit(window->Left()); });
    if (!goes_on()) {
        return;
    }
    ReadingWindowTop = top;
    ReadingWindowLeft = left;
    MSNControl->AddMoniteredWindowContacts();
    if (!goes_on()) {
        return;
    }
    if (AutoAttachChar) {
        WindowResizeTimer.setEnabled(true);
    }
    MSNControl->StartAtEndOf(*window);
    if (!goes_on()) {
        return;
    }
    if (ShowEmotTipFrm) {
        showNotice(TipEmotFrm);
    }
    MSNControl->EnableMoniterTimer(true);
}

void MainFrm::stopReading() {
    ConversationsList.setEnabledIt(true);
    MSNControl->EnableMoniterTimer(false);
    ReadingWindowHandle = 0;
    ReadingWindowTop = ReadingWindowLeft = 0;
    WindowResizeTimer.setEnabled(false);
    MSNControl->RemoveMoniteredWindowContacts(); // last: in the middle of its calls another reading can begin
}

void MainFrm::ReadOptnsButt_Click() {
    const std::array<ui::Frame*, 4> frames{&MurmelixFrame, &CharFrame, &ReadTextFrame, &EmotReadingFrame};
    if (OptionsShown) {
        const ui::Rect home = placeWithoutOptions();
        aside_.reset();
        setWidth(MainFrame.Width() + border_room);
        setPlace({home.left, home.top, Place().width, home.height});
        ReadOptnsButt.setCaption(u"Show &Options ->");
        for (ui::Frame* frame : frames) {
            frame->setEnabled(false);
        }
    } else if (!SignOutFrame.Visible()) {
        const int left = Place().left;
        setWidth(MurmelixFrame.Width() + MainFrame.Width() + options_gap + border_room);
        if (const int pushed_to = Place().left; pushed_to != left) {
            aside_ = MoveAside{left, pushed_to};
            onMove(); // of which was told before it was known
        }
        ReadOptnsButt.setCaption(u"<- Hide &Options");
        for (ui::Frame* frame : frames) {
            frame->setEnabled(true);
        }
    }
    OptionsShown = OptionsShown ? std::int16_t{0} : on;
}

void MainFrm::takeLastPlace() {
    if (const auto last = place_.last()) {
        const ui::Rect own = Place();
        const ui::Rect there = ui::onScreen({last->left, last->top, own.width, own.height});
        setPlace({there.left, there.top, own.width, own.height});
    }
}

// Unless the user has moved it since, it goes back to where it stood before they were shown.
ui::Rect MainFrm::placeWithoutOptions() const {
    ui::Rect place = Place();
    if (aside_ && place.left == aside_->to) {
        place.left = aside_->from;
    }
    return place;
}

void MainFrm::onMove() {
    place_.keep(placeWithoutOptions());
}

void MainFrm::WindowResizeTimer_Timer() {
    if (!IsReadingConversation || platform::neighbourCallPending()) {
        return;
    }
    attempt([this] {
        const auto window = MSNControl->GetWindowAt(ReadingWindowHandle);
        if (!window) {
            return StartConvButt_Click();
        }
        const std::uint32_t reading = ReadingNumber;
        const std::int16_t top = to16Bit(window->Top()), left = to16Bit(window->Left());
        if (reading != ReadingNumber || (top == ReadingWindowTop && left == ReadingWindowLeft)) {
            return;
        }
        ReadingWindowTop = top;
        ReadingWindowLeft = left;
        ReArrangeLoadedCharacterPositions();
    });
}

void MainFrm::ReadMoniter_Timer() {
    if (!platform::neighbourCallPending()) {
        MSNControl->ReadMoniter_Timer();
    }
}

void MainFrm::AutoMinimizeCheck_Click() {
    store(u"AutoMinimize", AutoMinimizeCheck, AutoMinimize);
}

void MainFrm::UpdatesCheck_Click() {
    store(u"AutoUpdate", UpdatesCheck, AutoUpdate);
}

void MainFrm::CharMatchupButt_Click() {
    if (IsReadingConversation) {
        platform::messageBox(u"There is a conversation currently being monitered for reading!\r\n"
                             u"You can't add/edit any matchups until you stop reading the current conversation!",
                             platform::mb_critical, u"Can't Add/Edit Matchup While In Conversation!");
        return;
    }
    if (!MatchupFrm) {
        MatchupFrm = std::make_unique<murmelix::MatchupFrm>(this, MSNControl->MSNAPI());
    }
    showAlone(*MatchupFrm);
}

void MainFrm::AutoAttachCheck_Click() {
    store(u"AutoAttachChar", AutoAttachCheck, AutoAttachChar);
    WindowResizeTimer.setEnabled(AutoAttachChar && IsReadingConversation);
}

void MainFrm::AutoHideBalloonCheck_Click() {
    store(u"AutoHideBalloon", AutoHideBalloonCheck, AutoHideBalloon);
    AddAutoHideBalloonFeatureToAllLoadedChars(AutoHideBalloon != 0);
}

void MainFrm::HideIdleCheck_Click() {
    store(u"AutoHideIdleChar", HideIdleCheck, AutoHideIdleChar);
}

void MainFrm::AutoCorrectTextCheck_Click() {
    store(u"AutoCorrectText", AutoCorrectTextCheck, AutoCorrectText);
}

void MainFrm::IgnoreCharsCheck_Click() {
    store(u"AutoIgnoreChars", IgnoreCharsCheck, AutoIgnoreChars);
    IgnoreCharTxt.setEnabled(AutoIgnoreChars != 0);
}

void MainFrm::IgnoreCharTxt_Change() {
    WriteRegistryValue(platform::Hive::current_user, SettingsKeyPath, u"IgnoredChars", IgnoreCharTxt.Text());
    IgnoredChars = IgnoreCharTxt.Text();
}

void MainFrm::PlayReadEmoticonCheck_Click() {
    store(u"PlayReadEmoticon", PlayReadEmoticonCheck, PlayReadEmoticon);
    SoundSchemeList.setEnabled(PlayReadEmoticon != 0);
}

void MainFrm::SoundSchemeList_Click() {
    if (SoundSchemeList.ListIndex() < 0) {
        return;
    }
    WriteRegistryValue(platform::Hive::current_user, SettingsKeyPath, u"CurrentSoundScheme", SoundSchemeList.Text());
    CurrentSoundScheme = SoundSchemeList.Text();
}

// Schemes may have come or gone while other windows were in front.
bool MainFrm::onActivate() {
    if (focused() == &SoundSchemeList) {
        SoundSchemeList_GotFocus();
    }
    return false;
}

void MainFrm::SoundSchemeList_GotFocus() {
    fillSoundSchemes();
}

void MainFrm::fillSoundSchemes() {
    auto names = platform::subdirectories(SoundsDir);
    const auto current = std::find(names.begin(), names.end(), CurrentSoundScheme);
    const auto selected = current == names.end() ? 0 : current - names.begin();
    SoundSchemeList.setItems(std::move(names));
    if (SoundSchemeList.ListCount() > 0) {
        SoundSchemeList.setListIndex(static_cast<int>(selected));
    }
}

void MainFrm::AddSystemTrayIcon() {
    constexpr std::uint32_t message_icon_and_tip = 7, mouse_move = 512;
    tray_icon_ = {88, &SystemTrayPic, 1, message_icon_and_tip, mouse_move, SystemTrayPic.picture(), {}};
    const std::string tip = toAnsi(u"Double click here to restore Murmelix's window");
    std::copy_n(tip.begin(), std::min(tip.size(), tray_icon_.tip.size() - 1), tray_icon_.tip.begin());
    ui::shellNotifyIcon(ui::TrayMessage::add, tray_icon_);
}

void MainFrm::DeleteSystemTrayIcon() {
    ui::shellNotifyIcon(ui::TrayMessage::remove, tray_icon_);
}

void MainFrm::SystemTrayPic_MouseMove(int, int, float x, float) {
    constexpr int right_button_down = 516, left_button_double_click = 515;
    const int message = static_cast<int>(x / ui::twipsPerPixel() + 0.5);
    if (message == right_button_down) {
        PopupMenu(SystemMenu);
    } else if (message == left_button_double_click) {
        SystemMenuRestoreWindow_Click();
    }
}

void MainFrm::MurmelixMenuMinimize_Click() {
    // First, so that the keyboard passes to the notice: else the system gives it to another program, whose window comes
    // to the front.
    if (!SettingsKeyPath.empty() && ShowMinimizeFrm) {
        showNotice(MinimizeFrm);
    }
    Hide();
    MinimizedToTray = on;
    SystemMenuRestoreWindow.setCaption(u"&Restore Murmelix");
}

void MainFrm::SystemMenuRestoreWindow_Click() {
    if (!SystemMenuRestoreWindow.Enabled()) {
        return;
    }
    if (MinimizedToTray) {
        Show();
        SystemMenuRestoreWindow.setCaption(u"&Minimize Murmelix");
        MinimizedToTray = 0;
    } else {
        if (ShowMinimizeFrm) {
            showNotice(MinimizeFrm);
        }
        Hide();
        SystemMenuRestoreWindow.setCaption(u"&Restore Murmelix");
        MinimizedToTray = on;
    }
}

void MainFrm::MurmelixMenuExit_Click() {
    if (IsReadingConversation &&
        platform::messageBox(u"There is a conversation currently being monitered for reading. Close Murmelix anyway?",
                             platform::mb_yes_no | platform::mb_critical,
                             u"Closing Murmelix") != platform::answer_yes) {
        return;
    }
    DeleteSystemTrayIcon();
    platform::endProcess();
}

void MainFrm::HelpMenuAbout_Click() {
    if (!AboutFRM) {
        AboutFRM = std::make_unique<murmelix::AboutFRM>(this);
    }
    showAlone(*AboutFRM);
}

// The main window is neither hidden nor restored under a modal one.
void MainFrm::showAlone(ui::Form& window) {
    SystemMenuRestoreWindow.setEnabled(false);
    window.ShowModal();
    SystemMenuRestoreWindow.setEnabled(true);
}

template <class Window>
void MainFrm::showNotice(std::unique_ptr<Window>& notice) {
    if (!notice) {
        notice = std::make_unique<Window>(this);
    }
    notice->Show();
}

void MainFrm::openQuickMessage(const std::u16string& key, std::int32_t left, std::int32_t top) {
    if (!QuickMsgFRM) {
        QuickMsgFRM = std::make_unique<murmelix::QuickMsgFRM>();
    }
    if (QuickMsgFRM->Loaded()) {
        return QuickMsgFRM->Activate();
    }
    QuickMsgFRM->Contact = key;
    putBeside(*QuickMsgFRM, left, top);
    QuickMsgFRM->Show();
}

void MainFrm::chooseLanguage(const std::u16string& key, std::int32_t left, std::int32_t top) {
    if (!LangFRM) {
        LangFRM = std::make_unique<murmelix::LangFRM>();
    }
    LangFRM->Contact = key;
    putBeside(*LangFRM, left, top);
    setEnabled(false);
    showAlone(*LangFRM);
    setEnabled(true);
}

void MainFrm::unloadWindowsOf(const std::u16string& key) {
    if (QuickMsgFRM && QuickMsgFRM->Contact == key) {
        QuickMsgFRM->Unload();
    }
    if (LangFRM && LangFRM->Contact == key) {
        LangFRM->Unload();
    }
}

void MainFrm::unloadSecondaryWindows() {
    for (ui::Form* window : std::array<ui::Form*, 7>{MatchupFrm.get(), LangFRM.get(), AboutFRM.get(), MinimizeFrm.get(),
                                                     TipFrm.get(), TipEmotFrm.get(), QuickMsgFRM.get()}) {
        if (window) {
            window->Unload();
        }
    }
}

} // namespace murmelix
