// The character server: the stage, the voices and the clients of one process.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/com/caller.h"
#include "common/com/server.h"
#include "companions/agent/acs/installed_characters.h"
#include "companions/agent/acs/reader.h"
#include "companions/agent/automation/transcript.h"
#include "companions/agent/settings/listener.h"
#include "companions/agent/settings/settings_frm.h"
#include "companions/agent/settings/tray.h"
#include "companions/agent/stage/sequencer.h"
#include "companions/agent/stage/windows/theatre.h"

namespace agent::automation {

using murmelix::com::Ptr;
using murmelix::com::Variant;

class RequestObject;
class Server;

struct MenuCommand {
    std::u16string name, caption, voice, confidence_text;
    bool enabled = true, visible = true;
    std::int32_t confidence = 0;
};

// "{01234567-89AB-CDEF-0123-456789ABCDEF}".
std::u16string textOf(const acs::Guid& guid);

// A client's command list of one character.
struct CommandList {
    std::u16string caption, voice, default_command, voice_caption;
    bool visible = true, global_voice_commands = true;
    std::vector<MenuCommand> commands;

    MenuCommand* find(std::u16string_view name);
};

// A character that a client has loaded.
struct Loaded {
    std::u16string id;
    std::shared_ptr<const acs::CharacterFile> file;
    stage::ActorId actor = 0;
    std::u16string description, extra_data, help_file;
    CommandList commands;
    bool auto_popup_menu = true, help_mode = false;
    std::int32_t help_context = 0;
    bool renamed = false; // by a program: the name is no longer the file's
};

// What one connected control has: its characters and who hears its events. The objects given to the client share it.
class Client : public murmelix::com::Holder, public std::enable_shared_from_this<Client> {
  public:
    Client(Server& server, stage::TroupeId troupe) : server_(server), troupe_(troupe) {}
    ~Client() override;
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    Server& server() const { return server_; }
    bool raise_request_errors = true;
    bool connected = true;
    std::function<void(DISPID, const std::vector<Variant>&)> fire; // empty once the control is gone
    std::function<void()> hang_up;                                 // no event leaves any more; empty likewise

    // Ids compare without letter case.
    Loaded& load(const std::u16string& id, const std::u16string& file);
    // Name, description and extra data are the file's in the character's language, from now on.
    void takeNames(Loaded& loaded);
    void unload(const std::u16string& id);
    std::shared_ptr<Loaded> find(std::u16string_view id) const;
    std::shared_ptr<Loaded> find(stage::ActorId actor) const;
    const std::vector<std::shared_ptr<Loaded>>& loaded() const { return loaded_; }
    void unloadAll();

    // Counts a request among those that wait. Error where there are too many, or too much text among them.
    void admit(const stage::RequestRef& request);
    // One object for each request, for as long as somebody holds it.
    Ptr<RequestObject> object(const stage::RequestRef& request);
    void forget(std::int32_t request) { requests_.erase(request); }
    // All objects of this client, so that they can be cut off from one that died.
    void joined(IUnknown* object) override { objects_.push_back(object); }
    void left(IUnknown* object) override { std::erase(objects_, object); }
    void cutOff();

  private:
    void dismiss(const Loaded& gone);

    Server& server_;
    const stage::TroupeId troupe_;
    std::vector<std::shared_ptr<Loaded>> loaded_;
    std::map<std::int32_t, RequestObject*> requests_;
    std::vector<std::weak_ptr<stage::Request>> waiting_; // and some that are over
    std::size_t waiting_text_ = 0;                       // units of it, of all in waiting_
    std::vector<IUnknown*> objects_;
};

struct Options {
    std::u16string recording, transcript;
    double speed = 1;
    bool stay = true; // false: end with the last client
};

class Server final : public stage::Audience {
  public:
    explicit Server(const Options& options);
    ~Server() override;
    // Until its end; true where it is to be started again.
    bool run();

    std::shared_ptr<Client> newClient();
    void clientGone(Client& client);
    // The process of the client: when it ends, its characters leave.
    void watch(const std::shared_ptr<Client>& client, murmelix::com::ProcessId process);

    stage::Stage& stage() { return stage_; }
    stage::Theatre& theatre() { return *theatre_; }
    voice::Service& service() { return service_; }
    Transcript& transcript() { return transcript_; }
    stage::MessageWindow& messages() { return messages_; }
    const voice::Output& output() const { return output_; }
    const settings::Listener& listener() const { return listener_; }
    // The icon beside the clock, where the user gets at what is said.
    void showTray();
    settings::SettingsFrm& settingsFrm() { return settings_frm_; }

    // Tells the clients, and ends the message loop when they have heard it, or do not answer.
    void shutDown();
    // The same; then another server of the same kind is started.
    void restart();

    // Shows a character's menu at a place on the screen, later, so that the call returns at once.
    void popUpMenu(stage::ActorId actor, int x, int y);
    void activate(stage::ActorId actor);
    stage::ActorId active() const { return active_; }

    // Of the clients that have the same character loaded, one is its active client: the first, until another claims it
    // or it gives it up.
    bool hasOtherClients(const Loaded& loaded) const;
    bool isActiveClient(const Loaded& loaded) const;
    void claimUnclaimed(const Loaded& loaded);
    void claim(const Loaded& loaded);
    void giveUp(const Loaded& loaded);

    void requestStarted(stage::Actor& actor, const stage::RequestRef& request) override;
    void requestCompleted(stage::Actor& actor, const stage::RequestRef& request) override;
    void bookmark(stage::Actor& actor, std::int32_t id) override;
    void shown(stage::Actor& actor, stage::VisibilityCause cause) override;
    void hidden(stage::Actor& actor, stage::VisibilityCause cause) override;
    void moved(stage::Actor& actor, stage::MoveCause cause) override;
    void resized(stage::Actor& actor) override;
    void idleStarted(stage::Actor& actor) override;
    void idleCompleted(stage::Actor& actor) override;
    void balloonShown(stage::Actor& actor) override;
    void balloonHidden(stage::Actor& actor) override;

    // Tells a client of an event; it hears of it later.
    static void tell(const Client& client, DISPID event, const std::vector<Variant>& arguments);
    void tellAll(DISPID event);
    // Tells of a request that was over when it was made, after the call that made it.
    void tellOfDone(const std::shared_ptr<Client>& client, const stage::RequestRef& request);

  private:
    using Moment = std::chrono::steady_clock::time_point;
    struct Owner {
        std::shared_ptr<Client> client;
        std::shared_ptr<Loaded> loaded;
    };
    struct Watch {
        std::weak_ptr<Client> client;
        std::unique_ptr<murmelix::com::ProcessWatch> process;
    };
    void tick();
    void beginEnding(DISPID event);
    void setSize(int percent);
    void listen();
    voice::Manner mannerOf(const stage::Actor& actor);
    std::optional<voice::Manner> mannerOf(const settings::KnownCharacter& character);
    voice::Manner asListenerWants(voice::Manner manner, const std::u16string& character) const;
    void sayHowItSounds(const settings::KnownCharacter& character);
    std::vector<settings::Tray::OnScreen> charactersOnScreen();
    std::vector<settings::KnownCharacter> loadedCharacters();
    std::vector<std::shared_ptr<const acs::Character>> installedCharacters();
    std::vector<settings::KnownCharacter> knownCharacters(); // and those that are installed
    Owner ownerOf(stage::ActorId actor) const;
    std::vector<Owner> sharersOf(const acs::Guid& character) const;
    void passTo(const acs::Guid& character, stage::ActorId actor);
    void doubleClicked(stage::ActorId actor, const stage::PointerEvent& pointer);
    void tellOfCharacter(stage::ActorId actor, DISPID event, std::vector<Variant> more = {});
    void tellOfPointer(stage::ActorId actor, DISPID event, const stage::PointerEvent& pointer);
    void tellOfRequest(stage::Actor& actor, DISPID event, const stage::RequestRef& request);
    std::u16string tipOf(stage::ActorId id);
    void clicked(stage::ActorId actor, const stage::PointerEvent& pointer);
    void runMenu(stage::ActorId actor, int x, int y);

    Options options_;
    Transcript transcript_;
    stage::MessageWindow messages_;
    stage::Clock clock_;
    voice::Service service_;
    voice::Output output_;
    std::unique_ptr<stage::Theatre> theatre_;
    stage::Stage stage_;
    settings::Listener listener_;
    acs::InstalledCharacters installed_;
    settings::Keys keys_{listener_};
    settings::SettingsFrm settings_frm_;
    std::unique_ptr<settings::Tray> tray_; // of a server that stays, or has had a character
    std::vector<std::weak_ptr<Client>> clients_;
    stage::TroupeId last_troupe_ = 0;
    std::vector<Watch> watches_;
    bool menu_open_ = false;
    std::optional<Moment> ending_since_;
    bool restarts_ = false;
    int size_ = settings::usual_size;        // percent
    voice::Service::Order sample_order_ = 0; // of how a voice sounds
    voice::Output::Playing sample_ = 0;
    stage::ActorId active_ = 0;
    std::map<acs::Guid, stage::ActorId> active_clients_;
    Moment empty_since_;
    bool had_client_ = false;
    Moment flushed_at_;
};

// The class that the server serves.
const murmelix::com::ServerClass& serverClass();

} // namespace agent::automation
