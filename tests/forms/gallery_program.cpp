#include "tests/forms/gallery.h"

#include "app/main_frm.h"
#include "app/settings.h"
#include "app/shell_state.h"
#include "download/img_down_frm.h"
#include "languages/language_table.h"
#include "matchups/matchup_store.h"

namespace murmelix::test {

namespace {

struct Contact final : platform::MessengerContact {
    Contact(std::u16string signin, std::u16string friendly)
        : signin_name(std::move(signin)), friendly_name(std::move(friendly)) {}
    std::u16string FriendlyName() override { return friendly_name; }
    std::u16string SigninName() override { return signin_name; }
    std::u16string signin_name, friendly_name;
};

// A client with a list of contacts, and nothing else.
struct Messenger final : platform::MessengerApi {
    struct List final : platform::MessengerContacts {
        std::int32_t Count() override { return 3; }
        std::shared_ptr<platform::MessengerContact> Item(std::int32_t index) override {
            static constexpr const char16_t* names[] = {u"Ann", u"Bob", u"Zoe"};
            const std::u16string name = names[index];
            return std::make_shared<Contact>(name + u"@x", name);
        }
    };
    std::int32_t MyStatus() override { return 2; }
    std::u16string MySigninName() override { return u"me@x"; }
    std::u16string MyFriendlyName() override { return u"Me"; }
    std::int32_t UnreadEmailCount(std::int32_t) override { return 0; }
    std::shared_ptr<platform::MessengerContacts> MyContacts() override { return std::make_shared<List>(); }
    void Signin(std::int32_t, const std::u16string&, const std::u16string&) override {}
};

void prepare() {
    WindowsDir = galleryFolder();
    SoundsDir = WindowsDir + u"sounds\\";
    CharPicsDir = WindowsDir + u"CharPics";
    for (const char16_t* name : {u"Anna", u"Bert", u"Max"}) {
        putCharacter(name);
    }
    putSoundScheme(u"default");
    SettingsKeyPath.clear();
    MainFormLoaded = IsReadingConversation = 0;
    CurrentSoundScheme = u"default";
    IgnoredChars = u"^#$/\\()";
    AutoIgnoreChars = PlayReadEmoticon = AutoCorrectText = AutoHideBalloon = AutoAttachChar = 1;
    AutoUpdate = AutoMinimize = AutoHideIdleChar = ShowTipFrm = ShowMinimizeFrm = ShowEmotTipFrm = 0;
    Matchups.Clear();
    InitLanguageTable();
}

template <class Window>
void visitNotice(ui::Form& owner, const Visit& visit, const std::string& name) {
    Window window(&owner);
    window.Show();
    settle();
    visit(window, name);
}

} // namespace

void visitProgram(const Visit& visit) {
    prepare();
    MainFrm main([] {}, [] { return false; });
    main.Form_Load();
    main.Show();
    main.ShowSignOut();
    settle();
    visit(main, "main-signed-out");
    main.ShowSignOut(false);
    main.MainFrame.setCaption(u"Ann - Online (2 Unread)");
    main.ConversationsList.AddItem(u"Conversation with:", u"Bob, Cy", u"%1", true, main.ConvIcon.picture());
    main.ConversationsList.AddItem(u"Conversation with:", u"Di, Ed, Flo, Gus,...", u"%2", false,
                                   main.ConvIcon.picture());
    main.StartConvButt.setEnabled(true);
    settle();
    visit(main, "main");
    main.ReadOptnsButt_Click();
    settle();
    visit(main, "main-options");
    visitNotice<MinimizeFrm>(main, visit, "notice-minimize");
    visitNotice<TipFrm>(main, visit, "notice-tip");
    visitNotice<TipEmotFrm>(main, visit, "notice-emoticons");
    visitNotice<AboutFRM>(main, visit, "about");
    {
        QuickMsgFRM window;
        window.Show();
        window.QuicTextBox.setText(u"Back in a minute");
        settle();
        visit(window, "quick-message");
    }
    {
        LanguageToSwitch = 1031;
        LangFRM window;
        window.Show();
        settle();
        visit(window, "language");
    }
    {
        Messenger messenger;
        murmelix::MatchupFrm window(&main, messenger);
        window.Show();
        for (int i = 0; i < 100 && window.ContactTimer.Enabled(); ++i) {
            window.ContactTimer_Timer();
        }
        window.MatchUpList.GiveContact(u"Bob@x", 1);
        settle();
        visit(window, "matchups");
    }
    {
        ImgDownFrm window(&main);
        window.CharacterName = u"Anna";
        window.Show();
        window.socket.Close(); // nobody answers: it stays as it began
        visit(window, "download");
        window.CancelDoldButt_Click();
    }
    main.Unload();
    main.DeleteSystemTrayIcon();
    Matchups.Clear();
}

} // namespace murmelix::test
