#include "matchups/matchup_frm.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "app/shell_state.h"
#include "common/text.h"
#include "matchups/matchup_store.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/system.h"
#include "ui/screen.h"

namespace murmelix {

namespace {

using platform::attempt;

constexpr int margin = 180, gap = 120;
constexpr int width = 9600, height = 9000, contacts_width = 3000; // where the screen has room
constexpr int window_border = 120, window_title = 600;            // more than a window takes beside its inside
constexpr int extension_length = 4;                               // ".acs"
// Milliseconds that contacts are listed without a break: each takes some calls, and the window answers in between.
constexpr long long listing_time = 30;
constexpr std::int32_t most_contacts = std::numeric_limits<std::int16_t>::max(); // a list's positions

constexpr ui::Shortcut take_along{u'X', ui::control_key}, put_here{u'V', ui::control_key}, take_back{ui::Key::del},
    row_up{ui::Key::up, ui::control_key}, row_down{ui::Key::down, ui::control_key};

const std::u16string nobody_left =
    u"Every contact has a character[ENTER] [ENTER]Drag contacts back here to take them back";

} // namespace

MatchupFrm::MatchupFrm(ui::Form* owner, platform::MessengerApi& messenger)
    : Form(owner, u"Character Matchup", ui::FormStyle::dialog), messenger_(messenger) {
    setIcon({u"murmelix"});
    connectHandlers();
    layOut();
}

void MatchupFrm::connectHandlers() {
    StatusLbl.setTellsNews();
    StatusLbl.setUseMnemonic(false); // people have all kinds of names
    StatusLbl.setEllipsis(ui::Label::Ellipsis::end);
    ContactList.setDragDropZone(1);
    ContactList.P.setOLEDropMode(ui::DropMode::manual);
    ContactList.P.setToolTipText(u"Drag a contact onto a character. By keyboard: Ctrl+Up and Ctrl+Down choose a "
                                 u"contact, Ctrl+X takes it along, Tab goes to the characters, and Ctrl+V gives it to "
                                 u"the one there.");
    MatchUpList.ListToolTipText =
        u"Drag a contact back to the left to take it back. By keyboard: Page Up and Page Down "
        u"go from one character to the next, Ctrl+Up and Ctrl+Down choose a contact, Delete "
        u"takes it back, Ctrl+X takes it along, and Ctrl+V gives what was taken along.";
    // Rows have no text of their own to be dragged.
    ContactList.P.OLEStartDrag = [this, start = ContactList.P.OLEStartDrag](ui::DataObject& data,
                                                                            ui::DropEffect& allowed) {
        start(data, allowed);
        if (data.HasText()) {
            data.SetText(ContactList.GetSelectedKey());
        }
    };
    ContactList.DragDropAlert = [this](ui::DataObject& Data, ui::DropEffect& Effect, std::int16_t, std::int16_t, float,
                                       float) { ContactList_DragDropAlert(Data, Effect); };
    ContactList.OnSelect = [this] {
        if (const std::u16string contact = ContactList.GetSelectedKey(); !contact.empty() && !ContactTimer.Enabled()) {
            tell(contact);
        }
    };
    ContactList.P.KeyPress = [this](const ui::Shortcut& key) { return ContactList_KeyPress(key); };
    MatchUpList.CaptionOf = [this](const std::u16string& contact) { return captionOf(contact); };
    MatchUpList.ContactGiven = [this](const std::u16string& contact) {
        ContactList.RemoveItem(contact);
        if (contact == taken_along_) {
            taken_along_.clear();
        }
        tell(GetMatchupCharacter(contact) + u" speaks for " + captionOf(contact) + u" from now on.");
    };
    MatchUpList.PanelKey = [this](const ui::Shortcut& key, std::int16_t position) {
        return MatchUpList_PanelKey(key, position);
    };
    HelpButt.setToolTipText(u"Get online help");
    HelpButt.Click = [this] { HelpButt_Click(); };
    DoneButt.setToolTipText(u"Close this window; every change is stored already");
    DoneButt.Click = [this] { DoneButt_Click(); };
    ContactTimer.Tick = [this] { ContactTimer_Timer(); };
}

void MatchupFrm::Form_Load() {
    layOut();
    tell(u"");
    FillMatchupLists();
}

void MatchupFrm::Form_Unload() {
    ContactTimer.setEnabled(false);
    contacts_.reset();
    MatchUpList.ClearItems(); // a download ends with them
}

void MatchupFrm::Refill() {
    if (Loaded()) {
        FillMatchupLists();
    }
}

void MatchupFrm::DoneButt_Click() {
    Unload();
}

void MatchupFrm::HelpButt_Click() {
    platform::shellExecute(u"Open", u"http://" + platform::siteHost() + u"/Murmelix/help/matchup.html", u"0", u"0");
}

bool MatchupFrm::onEscape() {
    tellHowToLeave();
    return true;
}

void MatchupFrm::tellHowToLeave() {
    tell(u"Press Done to close this window. Every change is stored already.");
}

void MatchupFrm::tell(const std::u16string& text) {
    StatusLbl.setCaption(text);
}

// Places.

ui::Layout MatchupFrm::contents() {
    const int button = std::max({HelpButt.neededSize().width, DoneButt.neededSize().width, 1200});
    return ui::rows(
               {ui::item(HintLbl).wrapped(),
                ui::columns({ui::rows({ui::item(ContactsLbl), ui::item(ContactList).growing()})
                                 .gap(45)
                                 .least(std::max(contacts_width, ContactsLbl.neededSize().width)),
                             ui::rows({ui::item(CharactersLbl), ui::item(MatchUpList).growing()}).gap(45).growing()})
                    .gap(margin)
                    .growing(),
                ui::columns({ui::item(StatusLbl).centered().widest(1).growing(), ui::item(HelpButt).least(button, 390),
                             ui::item(DoneButt).least(button, 390)})
                    .gap(gap)})
        .gap(gap)
        .pad(margin);
}

void MatchupFrm::layOut() {
    const ui::Rect screen = ui::workArea();
    setScale(std::min(width, ui::toTwips(screen.width) - window_border),
             std::min(height, ui::toTwips(screen.height) - window_title));
    ui::fill(*this, contents());
    layOutContacts();
}

// Whole rows fill the list, so that none hides below its edge.
void MatchupFrm::layOutContacts() {
    const int line = ContactList.P.surface().TextHeight(), row = line + ui::toPixels(90);
    const auto inside = [this] { return ContactList.P.surface().Height(); };
    // A row may be a little higher where that leaves less room behind the last one.
    int item_height = row;
    for (int higher = row; higher <= row + row / 3; ++higher) {
        item_height = inside() % higher < inside() % item_height ? higher : item_height;
    }
    const int rows = std::max(inside() / item_height, 1);
    ContactList.setItemHeight(static_cast<std::int16_t>(item_height));
    for (int tall = ContactList.Height(); inside() > rows * item_height;) {
        tall -= std::max(ui::toTwips(inside() - rows * item_height), 1);
        ContactList.Move({ContactList.Left(), ContactList.Top(), ContactList.Width(), tall});
    }
    const int left = ui::toPixels(90), top = (item_height - line) / 2;
    ContactList.SetPos(left, top, left, top, 0, 0);
}

// Filling.

void MatchupFrm::FillMatchupLists() {
    ++filling_;
    contacts_.reset();
    captions_.clear();
    taken_along_.clear();
    ContactList.ClearList();
    ContactList.setNoItemCaption(u"Your contacts are being looked up");
    MatchUpList.ClearItems();
    listCharacters();
    listMatchups();
    // The contacts come in when the window is there.
    ContactTimer.setEnabled(true);
}

void MatchupFrm::listCharacters() {
    CharzList.setPath(WindowsDir + u"msagent\\chars\\");
    for (const std::u16string& file : CharzList.names()) {
        if (file.size() <= extension_length) {
            continue;
        }
        const std::u16string name = file.substr(0, file.size() - extension_length);
        const std::u16string picture = CharPicsDir + u"\\" + name + u".gif";
        MatchUpList.AddItem(FileExists(picture) ? picture : u"", name);
    }
}

bool MatchupFrm::FileExists(const std::u16string& path) {
    return platform::fileExists(path);
}

void MatchupFrm::ContactTimer_Timer() {
    if (platform::neighbourCallPending()) {
        return;
    }
    // Every call lets events in, which can close the window, and open it again.
    const auto goes_on = [this, filling = filling_] { return Loaded() && filling == filling_; };
    if (!contacts_) {
        std::shared_ptr<platform::MessengerContacts> contacts;
        std::int32_t count = 0;
        attempt([&] {
            contacts = messenger_.MyContacts();
            count = contacts->Count();
        });
        if (!goes_on()) {
            return;
        }
        contacts_ = std::move(contacts);
        next_ = 0;
        count_ = std::clamp(count, 0, most_contacts);
    }
    for (const long long begun = platform::milliseconds();
         next_ < count_ && platform::milliseconds() - begun < listing_time;) {
        listContact(next_++, contacts_);
        if (!goes_on()) {
            return;
        }
    }
    if (next_ == count_) {
        ContactTimer.setEnabled(false);
        contacts_.reset();
        ContactList.setNoItemCaption(captions_.empty() ? u"Your Messenger lists no contacts" : nobody_left);
        nameMatchedContacts();
    }
}

void MatchupFrm::listContact(std::int32_t index, const std::shared_ptr<platform::MessengerContacts>& contacts) {
    const std::uint32_t filling = filling_;
    attempt([&, contacts] {
        const auto contact = contacts->Item(index);
        const std::u16string signin_name = contact->SigninName(),
                             caption = RemoveBracketedText(contact->FriendlyName());
        if (!Loaded() || filling != filling_ || signin_name.empty()) {
            return;
        }
        captions_[signin_name] = caption;
        if (!MatchupExists(signin_name)) {
            addToContactList(signin_name);
        }
    });
}

void MatchupFrm::addToContactList(const std::u16string& contact) {
    ContactList.AddItem(captionOf(contact), u"", contact, ContactList.GetItemCount() == 0);
}

void MatchupFrm::listMatchups() {
    MatchUpList.FillListsWithMatchupsFromRegistry();
    if (MatchUpList.GetListCount() == 0) {
        MatchUpList.AddItem(u"MoreChars", u"Empty1");
        MatchUpList.AddItem(u"MoreChars", u"Empty2");
    } else if (MatchUpList.GetListCount() == 1) {
        MatchUpList.AddItem(u"MoreChars", u"");
    }
}

void MatchupFrm::nameMatchedContacts() {
    for (std::size_t i = 1; i <= Matchups.Count(); ++i) {
        if (captions_.contains(Matchups.KeyAt(i))) {
            MatchUpList.RemoveContact(Matchups.KeyAt(i));
        }
    }
    MatchUpList.FillListsWithMatchupsFromRegistry(); // those that are missing
}

std::u16string MatchupFrm::captionOf(const std::u16string& contact) const {
    const auto found = captions_.find(contact);
    return found == captions_.end() ? contact : found->second;
}

// Taking back.

bool MatchupFrm::isContact(const std::u16string& text) const {
    return MatchupExists(text) || captions_.contains(text);
}

void MatchupFrm::ContactList_DragDropAlert(ui::DataObject& Data, ui::DropEffect& Effect) {
    const std::u16string contact = Data.Text();
    if (contact.empty() || !isContact(contact)) {
        Effect = ui::drop_none;
        return;
    }
    takeBack(contact);
}

void MatchupFrm::takeBack(const std::u16string& contact) {
    const bool matched = MatchupExists(contact);
    if (matched) {
        MatchUpList.RemoveContact(contact);
    }
    RemoveMatchup(contact);
    addToContactList(contact);
    if (matched) {
        tell(captionOf(contact) + u" has no character of its own any more.");
    }
}

// The keyboard.

void MatchupFrm::takeAlong(const std::u16string& contact) {
    taken_along_ = contact;
    if (!contact.empty()) {
        tell(captionOf(contact) + u" is taken along: Tab goes to the characters, Ctrl+V gives it to the one there.");
    }
}

bool MatchupFrm::selectByKey(CoolListBox& list, const ui::Shortcut& key) {
    if (key != row_up && key != row_down) {
        return false;
    }
    if (const int count = list.GetItemCount(); count > 0) {
        const int position = std::clamp(list.Selected() + (key == row_up ? -1 : 1), 1, count);
        list.SelectKey(list.Item(static_cast<std::int16_t>(position)).Key, true);
    }
    return true;
}

bool MatchupFrm::ContactList_KeyPress(const ui::Shortcut& key) {
    if (key == take_along) {
        takeAlong(ContactList.GetSelectedKey());
        return true;
    }
    if (key == put_here) {
        if (!taken_along_.empty()) {
            takeBack(std::exchange(taken_along_, {}));
        }
        return true;
    }
    return selectByKey(ContactList, key);
}

bool MatchupFrm::MatchUpList_PanelKey(const ui::Shortcut& key, std::int16_t position) {
    if (key == put_here) {
        MatchUpList.GiveContact(std::u16string(taken_along_), position);
        return true;
    }
    if (key != take_along && key != take_back) {
        return selectByKey(MatchUpList.ListItems(position), key);
    }
    const std::u16string contact = MatchUpList.ListItems(position).GetSelectedKey();
    if (contact.empty()) {
        return true;
    }
    if (key == take_along) {
        takeAlong(contact);
    } else {
        takeBack(contact);
    }
    return true;
}

} // namespace murmelix
