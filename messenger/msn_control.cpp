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
    messenger_ = platform::createMessengerApi(std::move(events));
}

std::shared_ptr<MessengerWindow> MSNControl::GetWindowAt(std::int32_t handle) const {
    const std::u16string key = windowKey(handle);
    return windows_.contains(key) ? windows_.Item(key) : nullptr;
}

std::shared_ptr<MessengerWindow> MSNControl::GetTheWindowAt(std::int16_t position) const {
    return windows_.Item(static_cast<std::size_t>(position));
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
    for (std::int32_t i = 0; i < count && ReadingWindowHandle == handle; ++i) {
        std::optional<std::u16string> signin_name;
        attempt([&] { signin_name = contacts->Item(i)->SigninName(); });
        if (signin_name && ReadingWindowHandle == handle) {
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
    attempt([&] { characterHost.agent->Unload(name); });
}

void MSNControl::RemoveMoniteredWindowContacts() {
    for (std::size_t i = LoadedCharacterKeys.Count(); i >= 1; --i) {
        i = std::min(i, LoadedCharacterKeys.Count()); // events can have removed some meanwhile
        if (i == 0) {
            return;
        }
        const std::u16string name = LoadedCharacterKeys.Item(i);
        RemoveMoniteredContact(name);
    }
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

void MSNControl::MSNAPI_OnAppShutdown() {
    host_.deleteSystemTrayIcon();
    platform::endProcess();
}

void MSNControl::MSNAPI_OnSignin(std::int32_t result) {
    host_.showSignOut(result < 0);
    RemoveMoniteredWindowContacts();
    IsReadingConversation = 0;
    ReadingWindowHandle = 0;
    host_.resetReadingWindow();
    host_.main();
}

void MSNControl::MSNAPI_OnSignout() {
    host_.unloadSecondaryWindows();
    host_.showSignOut(true);
    if (IsReadingConversation) { // nothing is read while nobody is signed in
        host_.startConvButtClick();
    }
}

void MSNControl::MSNAPI_OnMyStatusChange(std::int32_t, std::int32_t mMyStatus) {
    const bool shown = attempt([&] {
        const std::u16string name = displayName(messenger_->MyFriendlyName());
        host_.setUserCaption(name + std::u16string(statusSuffix(mMyStatus)));
        const std::int16_t count = GetUnreadEmailCount();
        if (count >= 0) {
            host_.setUserCaption(host_.userCaption() + unreadSuffix(count));
        }
    });
    if (!shown) {
        MSNAPI_OnSignout();
    }
}

void MSNControl::MSNAPI_OnMyFriendlyNameChange(std::int32_t, const std::u16string&) {
    attempt([&] { MSNAPI_OnMyStatusChange(0, messenger_->MyStatus()); });
}

void MSNControl::MSNAPI_OnUnreadEmailChange() {
    attempt([&] {
        const std::int16_t count = GetUnreadEmailCount();
        const std::u16string caption = RemoveBracketedText(host_.userCaption());
        host_.setUserCaption(count < 0 ? caption : caption + unreadSuffix(count));
    });
}

void MSNControl::MSNAPI_OnIMWindowCreated(std::shared_ptr<MessengerWindow> pIMWindow) {
    attempt([&] {
        const std::int32_t handle = pIMWindow->Handle();
        const std::u16string key = windowKey(handle);
        const bool known = windows_.contains(key);
        if (known) { // a handle used again, its end having gone unheard
            windows_.Item(key) = pIMWindow;
        } else {
            windows_.Add(pIMWindow, key);
        }

        const std::u16string participants = GetContactsText(handle);
        if (!windows_.contains(key)) { // closed meanwhile
            return;
        }
        if (known) {
            host_.editConversationText(rowKey(handle), participants);
        } else {
            host_.addConversation(u"Conversation with:", participants, rowKey(handle), !IsReadingConversation);
        }
        host_.enableStartConvButt(true);
    });
}

void MSNControl::MSNAPI_OnIMWindowDestroyed(std::shared_ptr<MessengerWindow> pIMWindow) {
    attempt([&] {
        const std::int32_t handle = pIMWindow->Handle();
        if (windows_.contains(windowKey(handle))) {
            windows_.Remove(windowKey(handle));
        }
        if (handle == ReadingWindowHandle) {
            RemoveMoniteredWindowContacts();
            if (IsReadingConversation) {
                host_.startConvButtClick();
            }
        }
        host_.removeConversation(rowKey(handle));
        if (host_.conversationCount() == 0) {
            host_.enableStartConvButt(false);
        }
    });
}

bool MSNControl::isBeingRead(std::int32_t handle) {
    if (!IsReadingConversation || ReadingWindowHandle == 0) {
        return false;
    }
    const auto window = GetWindowAt(ReadingWindowHandle);
    bool same = false;
    if (window) {
        attempt([&] { same = window->Handle() == handle; });
    }
    return same;
}

void MSNControl::MSNAPI_OnIMWindowContactAdded(std::shared_ptr<MessengerContact> pContact,
                                               std::shared_ptr<MessengerWindow> pIMWindow) {
    attempt([&] {
        const std::int32_t handle = pIMWindow->Handle();
        host_.editConversationText(rowKey(handle), GetContactsText(handle));
        const std::u16string signin_name = pContact->SigninName();
        if (isBeingRead(handle)) {
            LoadCharacterForContact(signin_name);
        }
    });
}

void MSNControl::MSNAPI_OnIMWindowContactRemoved(std::shared_ptr<MessengerContact> pContact,
                                                 std::shared_ptr<MessengerWindow> pIMWindow) {
    attempt([&] {
        const std::int32_t handle = pIMWindow->Handle();
        host_.editConversationText(rowKey(handle), GetContactsText(handle));
        if (!isBeingRead(handle)) {
            return;
        }
        RemoveMoniteredContact(pContact->SigninName());
        if (AutoAttachChar) {
            ReArrangeLoadedCharacterPositions();
        }
    });
}

} // namespace murmelix
