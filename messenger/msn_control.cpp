#include "messenger/msn_control.h"

#include <algorithm>
#include <utility>

#include "app/settings.h"
#include "app/shell_state.h"
#include "characters/character_loading.h"
#include "characters/character_state.h"
#include "characters/emoticons.h"
#include "characters/message_to_speech.h"
#include "characters/placement.h"
#include "common/text.h"
#include "platform/system.h"

namespace murmelix {

namespace {

using platform::attempt;
using platform::MessengerContact;
using platform::MessengerWindow;

constexpr std::u16string_view line_break = u"\r\n";
constexpr std::int32_t names_shown = 4;

std::u16string rowKey(std::int32_t handle) {
    return u"%" + toText(handle);
}

std::u16string windowKey(std::int32_t handle) {
    return rowKey(handle) + u"%";
}

std::u16string unreadSuffix(std::int16_t count) {
    return u" (" + toText(count) + u" Unread)";
}

std::u16string_view statusSuffix(std::int32_t status) {
    switch (status) {
    case 1:
        return u" - Offline";
    case 2:
        return u" - Online";
    case 6:
        return u" - Invisible";
    case 10:
        return u" - Busy";
    case 14:
        return u" - Be right back";
    case 34:
        return u" - Away";
    case 50:
        return u" -  On the Phone";
    case 66:
        return u" - Out to Lunch";
    default:
        return {};
    }
}

std::u16string displayName(const std::u16string& friendly_name) {
    return std::u16string(trim(MarkEmoticons(friendly_name, false)));
}

// Position (from 1) of a text, 0 where it is not found.
std::int32_t positionOf(std::u16string_view wanted, std::u16string_view text, std::int32_t from = 1) {
    return static_cast<std::int32_t>(find(text, wanted, static_cast<std::size_t>(from - 1), LetterCase::ignored) + 1);
}

// From a position (from 1), at most so many characters of the text.
std::u16string_view middle(std::u16string_view text, std::int32_t from, std::int32_t length) {
    const auto start = static_cast<std::size_t>(from - 1);
    return start < text.size() ? text.substr(start, static_cast<std::size_t>(length)) : std::u16string_view{};
}

// The whole name anywhere else than at the start keeps its form without emoticons from being looked for.
bool opensWith(std::u16string_view head, const std::u16string& friendly_name) {
    std::int32_t position = positionOf(friendly_name, head);
    if (position == 0) {
        position = positionOf(MarkEmoticons(friendly_name, false), head);
    }
    return position == 1 || position == 2;
}

} // namespace

MSNControl::MSNControl(MonitorHost host) : host_(std::move(host)) {
    platform::MessengerEvents events;
    events.OnAppShutdown = [this] { MSNAPI_OnAppShutdown(); };
    events.OnSignin = [this](std::int32_t result) { MSNAPI_OnSignin(result); };
    events.OnSignout = [this] { MSNAPI_OnSignout(); };
    events.OnMyStatusChange = [this](std::int32_t result, std::int32_t status) {
        MSNAPI_OnMyStatusChange(result, status);
    };
    events.OnMyFriendlyNameChange = [this](std::int32_t result, const std::u16string& previous) {
        MSNAPI_OnMyFriendlyNameChange(result, previous);
    };
    events.OnUnreadEmailChange = [this] { MSNAPI_OnUnreadEmailChange(); };
    events.OnIMWindowCreated = [this](std::shared_ptr<MessengerWindow> window) {
        MSNAPI_OnIMWindowCreated(std::move(window));
    };
    events.OnIMWindowDestroyed = [this](std::shared_ptr<MessengerWindow> window) {
        MSNAPI_OnIMWindowDestroyed(std::move(window));
    };
    events.OnIMWindowContactAdded = [this](std::shared_ptr<MessengerContact> contact,
                                           std::shared_ptr<MessengerWindow> window) {
        MSNAPI_OnIMWindowContactAdded(std::move(contact), std::move(window));
    };
    events.OnIMWindowContactRemoved = [this](std::shared_ptr<MessengerContact> contact,
                                             std::shared_ptr<MessengerWindow> window) {
        MSNAPI_OnIMWindowContactRemoved(std::move(contact), std::move(window));
    };
    events.Returned = [this] { joinSession(); };
    messenger_ = platform::createMessengerApi(std::move(events));
}

std::shared_ptr<MessengerWindow> MSNControl::GetWindowAt(std::int32_t handle) const {
    const std::u16string key = windowKey(handle);
    return windows_.contains(key) ? windows_.Item(key).window : nullptr;
}

std::shared_ptr<MessengerWindow> MSNControl::GetTheWindowAt(std::int16_t position) const {
    return windows_.Item(static_cast<std::size_t>(position)).window;
}

std::u16string MSNControl::GetContactsText(std::int32_t handle) {
    std::u16string text;
    attempt([&] {
        const auto window = GetWindowAt(handle);
        if (!window) {
            return;
        }
        const auto contacts = window->Contacts();
        const std::int32_t count = contacts->Count();
        for (std::int32_t i = 0; i < count; ++i) {
            if (i >= names_shown) {
                text += u",...";
                return;
            }
            const std::u16string name = displayName(contacts->Item(i)->FriendlyName());
            text += (text.empty() ? u"" : u", ") + name;
        }
    });
    return text;
}

void MSNControl::AddMoniteredWindowContacts() {
    const std::int32_t handle = ReadingWindowHandle;
    const std::uint32_t reading = ReadingNumber;
    const auto window = GetWindowAt(handle);
    if (!window) {
        return;
    }
    std::shared_ptr<platform::MessengerContacts> contacts;
    std::int32_t count = 0;
    attempt([&] {
        contacts = window->Contacts();
        count = contacts->Count();
    });
    const auto goes_on = [handle, reading] { return reading == ReadingNumber && handle == ReadingWindowHandle; };
    for (std::int32_t i = 0; i < count && goes_on(); ++i) {
        std::optional<std::u16string> signin_name;
        attempt([&] { signin_name = contacts->Item(i)->SigninName(); });
        if (signin_name && goes_on()) {
            LoadCharacterForContact(*signin_name);
        }
    }
}

void MSNControl::RemoveMoniteredContact(const std::u16string& name) {
    if (LoadedCharacterKeys.contains(name)) {
        LoadedCharacterKeys.Remove(name);
    }
    if (LoadedCharacters.contains(name)) {
        LoadedCharacters.Remove(name);
    }
    if (LastRequests.contains(name)) {
        LastRequests.Remove(name);
    }
    UnloadCharacters({name});
}

void MSNControl::RemoveMoniteredWindowContacts() {
    // Those who come up in the middle of it stay: the collections are empty before the first call.
    std::vector<std::u16string> names;
    for (std::size_t i = LoadedCharacterKeys.Count(); i >= 1; --i) {
        names.push_back(LoadedCharacterKeys.Item(i));
    }
    LoadedCharacterKeys.Clear();
    LoadedCharacters.Clear();
    LastRequests.Clear();
    UnloadCharacters(names);
}

void MSNControl::EnableMoniterTimer(bool enable) {
    host_.enableReadMoniter(enable);
}

void MSNControl::StartAtEndOf(MessengerWindow& window) {
    const std::uint32_t reading = ++reading_;
    currentUser.clear();
    LastReadPosition = position_unknown;
    attempt([&] {
        const std::size_t length = window.History().size();
        if (reading == reading_) {
            LastReadPosition = positionBehind(length);
        }
    });
}

std::int32_t MSNControl::positionBehind(std::size_t length) {
    return static_cast<std::int32_t>(length + line_break.size());
}

void MSNControl::ReadMoniter_Timer() {
    if (ticking_) {
        return;
    }
    const struct Tick {
        explicit Tick(bool& flag) : ticking(flag) { ticking = true; }
        ~Tick() { ticking = false; }
        bool& ticking;
    } tick(ticking_);
    if (const auto captured = CaptureNewText()) {
        SpeakMessage(captured->key, captured->text);
    }
}

std::optional<MSNControl::CapturedText> MSNControl::CaptureNewText() {
    if (!IsReadingConversation) {
        currentUser.clear();
        EnableMoniterTimer(false);
        return {};
    }
    // Every call below lets events in, which can stop this reading or begin another one.
    const auto goes_on = [this, reading = reading_, handle = ReadingWindowHandle] {
        return IsReadingConversation && reading == reading_ && handle == ReadingWindowHandle;
    };

    const auto window = GetWindowAt(ReadingWindowHandle);
    std::u16string history;
    // Where the history cannot be read, nothing is known to be new or not: the writer stays.
    if (window && !attempt([&] { history = window->History(); })) {
        return {};
    }
    if (!goes_on()) {
        return {};
    }
    if (LastReadPosition == position_unknown) {
        LastReadPosition = positionBehind(history.size());
    }
    const auto length = static_cast<std::int32_t>(history.size());
    if (!window || length <= LastReadPosition) {
        currentUser.clear();
        return {};
    }

    std::int32_t end = positionOf(line_break, history, LastReadPosition);
    if (end != 0) {
        end = positionOf(line_break, history, end + 2);
    }
    if (end == 0) {
        end = length;
    }
    const std::u16string_view chunk = middle(history, LastReadPosition, end - LastReadPosition + 2);
    LastReadPosition = end + 2;

    std::int32_t head_length = positionOf(u"\r", chunk);
    if (head_length == 0) {
        head_length = 4;
    }
    const std::u16string writer = FindMessageWriter(std::u16string(middle(chunk, 1, head_length)), *window);
    if (!goes_on()) {
        return {};
    }
    if (writer.empty()) {
        return CapturedText{currentUser, std::u16string(chunk)};
    }
    currentUser = writer;
    return CapturedText{writer, std::u16string(middle(chunk, head_length + 2, length))};
}

std::u16string MSNControl::FindMessageWriter(const std::u16string& head, MessengerWindow& window) {
    std::u16string writer;
    attempt([&] {
        const auto contacts = window.Contacts();
        const std::int32_t count = contacts->Count();
        for (std::int32_t i = 0; i < count; ++i) {
            const auto contact = contacts->Item(i);
            if (opensWith(head, contact->FriendlyName())) {
                writer = contact->SigninName();
                return;
            }
        }
        if (opensWith(head, messenger_->MyFriendlyName())) {
            writer = messenger_->MySigninName();
        }
    });
    return writer;
}

std::int16_t MSNControl::GetUnreadEmailCount() {
    constexpr std::int32_t inbox = 0;
    return toInt16(messenger_->UnreadEmailCount(inbox));
}

void MSNControl::SignIn() {
    attempt([this] { messenger_->Signin(0, u"", u""); });
    joinSession();
}

// A client that was found signed in has not told of it.
void MSNControl::joinSession() {
    const std::uint32_t session = session_;
    if (!SettingsKeyPath.empty()) {
        return;
    }
    if (!SettingsKeyPathFor(*messenger_).empty() && session == session_) {
        MSNAPI_OnSignin(0);
    }
}

void MSNControl::MSNAPI_OnAppShutdown() {
    host_.deleteSystemTrayIcon();
    platform::endProcess();
}

void MSNControl::MSNAPI_OnSignin(std::int32_t result) {
    const std::uint32_t session = ++session_, reading = ReadingNumber;
    signed_out_ = false;
    host_.showSignOut(result < 0);
    RemoveMoniteredWindowContacts();
    if (session != session_) { // another sign-in, or a sign-out, has done the rest its own way
        return;
    }
    if (reading == ReadingNumber || !IsReadingConversation) { // else one has begun since
        IsReadingConversation = 0;
        ReadingWindowHandle = 0;
        host_.resetReadingWindow();
    }
    host_.main();
}

void MSNControl::MSNAPI_OnSignout() {
    ++session_;
    signed_out_ = true;
    host_.unloadSecondaryWindows();
    host_.showSignOut(true);
    if (IsReadingConversation) { // nothing is read while nobody is signed in
        host_.startConvButtClick();
    }
}

void MSNControl::MSNAPI_OnMyStatusChange(std::int32_t, std::int32_t mMyStatus) {
    const std::uint32_t status = ++status_, session = session_;
    const auto is_last = [&] { return status == status_ && session == session_; };
    const bool shown = attempt([&] {
        const std::u16string name = displayName(messenger_->MyFriendlyName());
        if (!is_last()) {
            return;
        }
        host_.setUserCaption(name + std::u16string(statusSuffix(mMyStatus)));
        const std::uint32_t mail = mail_;
        const std::int16_t count = GetUnreadEmailCount();
        if (count >= 0 && mail == mail_ && is_last()) {
            host_.setUserCaption(host_.userCaption() + unreadSuffix(count));
        }
    });
    if (!shown && is_last()) {
        MSNAPI_OnSignout();
    }
}

void MSNControl::MSNAPI_OnMyFriendlyNameChange(std::int32_t, const std::u16string&) {
    const std::uint32_t status_before = status_;
    std::int32_t status = 0; // of no meaning: the name alone
    attempt([&] { status = messenger_->MyStatus(); });
    if (status_before == status_) {
        MSNAPI_OnMyStatusChange(0, status);
    }
}

void MSNControl::MSNAPI_OnUnreadEmailChange() {
    const std::uint32_t mail = ++mail_;
    std::int16_t count = -1; // where it cannot be had, the old one is not shown any longer
    attempt([&] { count = GetUnreadEmailCount(); });
    if (mail == mail_) {
        const std::u16string caption = RemoveBracketedText(host_.userCaption());
        host_.setUserCaption(count < 0 ? caption : caption + unreadSuffix(count));
    }
}

void MSNControl::refreshRow(std::int32_t handle) {
    const std::u16string key = windowKey(handle);
    if (!windows_.contains(key)) {
        return;
    }
    const std::uint32_t change = ++windows_.Item(key).changes;
    const std::u16string participants = GetContactsText(handle);
    if (windows_.contains(key) && windows_.Item(key).changes == change) {
        host_.editConversationText(rowKey(handle), participants);
    }
}

bool MSNControl::takesPart(const std::u16string& signin_name, MessengerWindow& window) {
    bool found = false;
    attempt([&] {
        const auto contacts = window.Contacts();
        const std::int32_t count = contacts->Count();
        for (std::int32_t i = 0; i < count && !found; ++i) {
            found = contacts->Item(i)->SigninName() == signin_name;
        }
    });
    return found;
}

// Nothing for one that ends while it is being asked.
std::optional<std::int32_t> MSNControl::handleOfNew(MessengerWindow& window) {
    struct Asking {
        explicit Asking(MSNControl& of) : control(of) { ++control.handles_asked_; }
        ~Asking() {
            if (--control.handles_asked_ == 0) {
                control.ended_meanwhile_.clear();
            }
        }
        MSNControl& control;
    } const asking(*this);
    const std::size_t before = ended_meanwhile_.size();
    const std::int32_t handle = window.Handle();
    const auto first = ended_meanwhile_.begin() + static_cast<std::ptrdiff_t>(before);
    const bool ended = std::find(first, ended_meanwhile_.end(), handle) != ended_meanwhile_.end();
    return ended ? std::nullopt : std::optional(handle);
}

void MSNControl::MSNAPI_OnIMWindowCreated(std::shared_ptr<MessengerWindow> pIMWindow) {
    attempt([&] {
        const std::uint32_t session = session_;
        const auto handle = handleOfNew(*pIMWindow);
        if (!handle) {
            return;
        }
        const std::u16string key = windowKey(*handle);
        if (windows_.contains(key)) { // a handle used again, its end having gone unheard, or a window told of anew
            windows_.Item(key).window = pIMWindow;
        } else {
            windows_.Add({pIMWindow}, key);
        }

        const std::uint32_t change = ++windows_.Item(key).changes;
        const std::u16string participants = GetContactsText(*handle);
        const bool signed_out = session != session_ && signed_out_;
        if (signed_out || GetWindowAt(*handle) != pIMWindow) { // closed meanwhile, or told of anew
            return;
        }
        // A row that is there stays, with its new text; one that went at a sign-out comes back.
        host_.addConversation(u"Conversation with:", participants, rowKey(*handle), !IsReadingConversation);
        if (windows_.Item(key).changes == change) {
            host_.editConversationText(rowKey(*handle), participants);
        }
        host_.enableStartConvButt(true);
    });
}

void MSNControl::MSNAPI_OnIMWindowDestroyed(std::shared_ptr<MessengerWindow> pIMWindow) {
    attempt([&] {
        const std::int32_t handle = pIMWindow->Handle();
        if (handles_asked_ > 0) {
            ended_meanwhile_.push_back(handle);
        }
        if (windows_.contains(windowKey(handle))) {
            windows_.Remove(windowKey(handle));
        }
        if (handle == ReadingWindowHandle) {
            RemoveMoniteredWindowContacts();
            if (IsReadingConversation && handle == ReadingWindowHandle) { // else another one has begun since
                host_.startConvButtClick();
            }
        }
        if (!windows_.contains(windowKey(handle))) { // else the handle is in use again
            host_.removeConversation(rowKey(handle));
        }
        if (host_.conversationCount() == 0) {
            host_.enableStartConvButt(false);
        }
    });
}

bool MSNControl::isBeingRead(std::int32_t handle) const {
    return IsReadingConversation && ReadingWindowHandle != 0 && handle == ReadingWindowHandle && GetWindowAt(handle);
}

void MSNControl::MSNAPI_OnIMWindowContactAdded(std::shared_ptr<MessengerContact> pContact,
                                               std::shared_ptr<MessengerWindow> pIMWindow) {
    attempt([&] {
        const std::uint32_t departures = departures_;
        const std::int32_t handle = pIMWindow->Handle();
        refreshRow(handle);
        const std::u16string signin_name = pContact->SigninName();
        const bool left = isBeingRead(handle) && departures != departures_ && !takesPart(signin_name, *pIMWindow);
        if (!left && isBeingRead(handle)) {
            LoadCharacterForContact(signin_name);
        }
    });
}

void MSNControl::MSNAPI_OnIMWindowContactRemoved(std::shared_ptr<MessengerContact> pContact,
                                                 std::shared_ptr<MessengerWindow> pIMWindow) {
    attempt([&] {
        ++departures_;
        const std::int32_t handle = pIMWindow->Handle();
        refreshRow(handle);
        const std::u16string signin_name = pContact->SigninName();
        if (!isBeingRead(handle)) {
            return;
        }
        RemoveMoniteredContact(signin_name);
        if (AutoAttachChar) {
            ReArrangeLoadedCharacterPositions();
        }
    });
}

} // namespace murmelix
