// The Messenger monitor: sign-in and status, conversation windows and their participants, and the capture of new text.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/keyed_collection.h"
#include "platform/messenger_api.h"

namespace murmelix {

// What the monitor needs of the main window above it; filled in by the shell before MSNControl is created.
struct MonitorHost {
    // The conversation list.
    std::function<void(const std::u16string& caption, const std::u16string& text, const std::u16string& key, bool sel)>
        addConversation; // with the conversation picture as icon
    std::function<void(const std::u16string& key, const std::u16string& text)> editConversationText;
    std::function<void(const std::u16string& key)> removeConversation;
    std::function<std::int32_t()> conversationCount;

    std::function<void()> startConvButtClick;
    std::function<void(bool enabled)> enableStartConvButt;
    std::function<void(bool show)> showSignOut; // false hides the signed-out panel
    std::function<void()> deleteSystemTrayIcon;
    std::function<std::u16string()> userCaption;
    std::function<void(const std::u16string& caption)> setUserCaption;
    // WindowResizeTimer off, the saved top and left 0.
    std::function<void()> resetReadingWindow;
    std::function<void(bool enabled)> enableReadMoniter; // the 10 ms timer, which calls ReadMoniter_Timer
    // Unloads MatchupFrm, LangFRM, AboutFRM, MinimizeFrm, TipFrm, TipEmotFrm, QuickMsgFRM, ImgDownFrm, those loaded.
    std::function<void()> unloadSecondaryWindows;
    std::function<void()> main; // Loader's Main
};

class MSNControl {
  public:
    explicit MSNControl(MonitorHost host);
    MSNControl(const MSNControl&) = delete;
    MSNControl& operator=(const MSNControl&) = delete;

    platform::MessengerApi& MSNAPI() { return *messenger_; }
    // A sign-out was the last that was told of the session, whatever the client's status was before.
    bool SignedOut() const { return signed_out_; }

    // From 1, of the first character not yet read; 0 while the history's length is not known.
    std::int32_t LastReadPosition = 0;
    std::u16string currentUser; // sign-in name of the writer read last; "" when unknown

    std::shared_ptr<platform::MessengerWindow> GetWindowAt(std::int32_t handle) const; // null when unknown
    std::shared_ptr<platform::MessengerWindow> GetTheWindowAt(std::int16_t position) const;
    void AddMoniteredWindowContacts();
    void RemoveMoniteredContact(const std::u16string& name);
    void RemoveMoniteredWindowContacts();
    void EnableMoniterTimer(bool enable);

    // A new reading begins at the end of the window's history: nothing that stands there is read. Where the history
    // cannot be read now, it begins at the end that the first successful tick finds.
    void StartAtEndOf(platform::MessengerWindow& window);
    void ReadMoniter_Timer();

    // One tick without its speech: what would be handed to SpeakMessage. Not to be called inside of itself.
    struct CapturedText {
        std::u16string key, text;
    };
    std::optional<CapturedText> CaptureNewText();

    // Signs in by the client's own means, in which it is started where it is not there.
    void SignIn();

    void MSNAPI_OnAppShutdown();
    void MSNAPI_OnSignin(std::int32_t result);
    void MSNAPI_OnSignout();
    void MSNAPI_OnMyStatusChange(std::int32_t result, std::int32_t mMyStatus);
    void MSNAPI_OnMyFriendlyNameChange(std::int32_t result, const std::u16string& bstrPrevFriendlyName);
    void MSNAPI_OnUnreadEmailChange();
    void MSNAPI_OnIMWindowCreated(std::shared_ptr<platform::MessengerWindow> pIMWindow);
    void MSNAPI_OnIMWindowDestroyed(std::shared_ptr<platform::MessengerWindow> pIMWindow);
    void MSNAPI_OnIMWindowContactAdded(std::shared_ptr<platform::MessengerContact> pContact,
                                       std::shared_ptr<platform::MessengerWindow> pIMWindow);
    void MSNAPI_OnIMWindowContactRemoved(std::shared_ptr<platform::MessengerContact> pContact,
                                         std::shared_ptr<platform::MessengerWindow> pIMWindow);

  private:
    struct Conversation {
        std::shared_ptr<platform::MessengerWindow> window;
        std::uint32_t changes = 0; // of its participants
    };

    void joinSession();
    std::u16string GetContactsText(std::int32_t handle);
    std::optional<std::int32_t> handleOfNew(platform::MessengerWindow& window);
    void refreshRow(std::int32_t handle);
    bool takesPart(const std::u16string& signin_name, platform::MessengerWindow& window);
    std::u16string FindMessageWriter(const std::u16string& head, platform::MessengerWindow& window);
    std::int16_t GetUnreadEmailCount();
    bool isBeingRead(std::int32_t handle) const;
    static std::int32_t positionBehind(std::size_t length);

    static constexpr std::int32_t position_unknown = 0;

    MonitorHost host_;
    KeyedCollection<Conversation> windows_; // "%" + handle + "%"
    int handles_asked_ = 0;
    std::vector<std::int32_t> ended_meanwhile_; // windows, while a new one's handle is asked
    std::uint32_t reading_ = 0;                 // number of the reading begun last
    bool ticking_ = false;
    // Events heard so far: one in the middle of another one's calls counts for more than it does.
    std::uint32_t session_ = 0, status_ = 0, mail_ = 0, departures_ = 0;
    bool signed_out_ = false;
    std::unique_ptr<platform::MessengerApi> messenger_; // last: its events use all above
};

} // namespace murmelix
