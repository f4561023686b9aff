#include "companions/agent/automation/server.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <random>
#include <utility>

#include "common/text.h"
#include "companions/agent/automation/local_file.h"
#include "companions/agent/automation/objects.h"
#include "companions/agent/settings/languages.h"
#include "companions/agent/settings/settings_store.h"
#include "companions/agent/stage/windows/popup_menu.h"
#include "companions/agent/stage/windows/system.h"
#include "platform/files.h"
#include "ui/screen.h"

namespace agent::automation {
namespace {

using murmelix::com::Error;

using namespace std::chrono_literals;

constexpr DISPID property_change = 31; // the event AgentPropertyChange

constexpr unsigned tick_period = 10;     // ms
constexpr auto first_client = 30s;       // that a started server waits for its first client
constexpr auto grace = 3s;               // after the last one, in case another follows
constexpr auto flush_period = 500ms;     // between two saves of the recording
constexpr std::size_t most_loaded = 200; // characters of a client: more than fit on a screen, each with its windows

// Of one client. What a program queues in a second is spoken in an hour; more is a mistake, and would fill the memory.
constexpr std::size_t most_waiting = 10'000;                                // requests
constexpr std::size_t most_waiting_text = 16 * murmelix::com::longest_text; // units of their texts

bool isAbsolute(std::u16string_view path) {
    return path.size() > 2 && path[1] == u':' && (path[2] == u'\\' || path[2] == u'/');
}

bool isFile(const std::u16string& path) {
    std::error_code none;
    return std::filesystem::is_regular_file(std::filesystem::path(path), none);
}

std::size_t textIn(const stage::Request& request) {
    return request.text.size() + request.url.size();
}

std::u16string charactersDirectory() {
    return stage::windowsDirectory() + u"\\msagent\\chars";
}

// The file that Load means: an absolute path, or a name in the characters' directory.
std::u16string characterPath(std::u16string_view named) {
    std::u16string name = localPath(named);
    if (!isAbsolute(name)) {
        if (name.empty() || name.find_first_of(u"\\/:*?\"<>|") != std::u16string::npos) {
            throw Error(E_INVALIDARG, u"\"" + name + u"\" is no name of a character file.");
        }
        name = charactersDirectory() + u"\\" + name;
    }
    const bool suffixed = name.size() > 4 && sameName(std::u16string_view(name).substr(name.size() - 4), u".acs");
    if (!suffixed && !isFile(name)) {
        name += u".acs";
    }
    return name;
}

std::shared_ptr<const acs::CharacterFile> openCharacter(const std::u16string& name) {
    const std::u16string path = characterPath(name);
    if (path.find(u'\0') != std::u16string::npos || !isFile(path)) {
        throw Error(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), u"There is no character file \"" + path + u"\".");
    }
    std::string error;
    auto file = acs::CharacterFile::load(std::filesystem::path(path), error);
    if (!file) {
        throw Error(HRESULT_FROM_WIN32(ERROR_FILE_CORRUPT),
                    u"The character file \"" + path + u"\" cannot be used: " + murmelix::fromUtf8(error));
    }
    return std::make_shared<const acs::CharacterFile>(std::move(*file));
}

// As the character was made, where its language can be spoken here.
void giveVoice(voice::Manner& manner, const acs::Character& character, const voice::Service& service) {
    if (!character.voice) {
        return;
    }
    manner.speed = character.voice->speed == 0xFFFFFFFF ? 0 : character.voice->speed;
    manner.pitch = character.voice->pitch == 0xFFFF ? std::uint16_t{0} : character.voice->pitch;
    if (character.voice->choice) {
        manner.gender = character.voice->choice->gender;
        if (service.speaks(character.voice->choice->language_id)) {
            manner.language_id = character.voice->choice->language_id;
        }
    }
}

std::uint32_t balloonStyle(const acs::Character& character) {
    if (!character.balloon) {
        return 0;
    }
    const acs::Balloon& balloon = *character.balloon;
    return stage::balloon_on | stage::balloon_size_to_text | stage::balloon_auto_hide | stage::balloon_auto_pace |
           std::uint32_t{balloon.characters_a_line} << 16 | std::uint32_t{balloon.lines} << 24;
}

} // namespace

const murmelix::com::ServerClass& serverClass() {
    static const murmelix::com::ServerClass served{
        {0x6d1f5c02, 0x3b7e, 0x4a86, {0x9c, 0x41, 0xe8, 0x2a, 0x57, 0xb0, 0xd3, 0x19}},
        u"Murmelix AgentServer Control",
        {u"Agent.Control", u"Agent.Control.1", u"Agent.Control.2"}};
    return served;
}

std::u16string textOf(const acs::Guid& guid) {
    const auto at = [&](std::size_t i) { return static_cast<unsigned>(guid[i]); };
    std::array<char, 40> result{};
    std::snprintf(result.data(), result.size(),
                  "{%02X%02X%02X%02X-%02X%02X-%02X%02X-%02X%02X-%02X%02X%02X%02X%02X%02X}", at(3), at(2), at(1), at(0),
                  at(5), at(4), at(7), at(6), at(8), at(9), at(10), at(11), at(12), at(13), at(14), at(15));
    return murmelix::fromUtf8(result.data());
}

MenuCommand* CommandList::find(std::u16string_view name) {
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const MenuCommand& command) { return sameName(command.name, name); });
    return found == commands.end() ? nullptr : &*found;
}

Client::~Client() {
    unloadAll();
    server_.clientGone(*this);
}

Loaded& Client::load(const std::u16string& id, const std::u16string& file) {
    if (id.empty()) {
        throw Error(E_INVALIDARG, u"A character needs an id.");
    }
    if (find(id)) {
        throw Error(HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), u"The id \"" + id + u"\" is in use already.");
    }
    if (loaded_.size() >= most_loaded) {
        refuse(u"A program has at most " + murmelix::toText(most_loaded) + u" characters.");
    }
    auto added = std::make_shared<Loaded>();
    added->id = id;
    added->file = openCharacter(file);
    const acs::Character& character = added->file->character();
    stage::Actor& actor = server_.stage().enter(std::make_shared<stage::FileRepertoire>(added->file), troupe_);
    added->actor = actor.id();
    actor.balloon_style = balloonStyle(character);
    giveVoice(actor.manner, character, server_.service());
    takeNames(*added);
    actor.setSilenced(server_.listener().silenced(textOf(character.guid)));
    try {
        loaded_.push_back(added);
        server_.theatre().admit(actor.id(), added->file);
        server_.claimUnclaimed(*added);
        server_.showTray();
    } catch (...) {
        dismiss(*added);
        throw;
    }
    return *added;
}

void Client::dismiss(const Loaded& gone) {
    // Told while it can still be found.
    server_.stage().leave(gone.actor);
    server_.theatre().dismiss(gone.actor);
    const auto held = find(gone.actor);
    std::erase(loaded_, held);
    if (held) {
        server_.giveUp(*held);
    }
}

void Client::takeNames(Loaded& loaded) {
    stage::Actor& actor = *server_.stage().find(loaded.actor);
    const acs::LocalizedName* const name = loaded.file->character().nameFor(actor.manner.language_id);
    if (!name) {
        return;
    }
    if (!loaded.renamed) {
        actor.name = name->name;
    }
    loaded.description = name->description;
    loaded.extra_data = name->extra_data;
}

void Client::unload(const std::u16string& id) {
    const auto gone = find(id);
    if (!gone) {
        throw Error(E_INVALIDARG, u"There is no character \"" + id + u"\".");
    }
    dismiss(*gone);
}

void Client::unloadAll() {
    while (!loaded_.empty()) {
        unload(loaded_.back()->id);
    }
}

std::shared_ptr<Loaded> Client::find(std::u16string_view id) const {
    const auto found =
        std::find_if(loaded_.begin(), loaded_.end(), [&](const auto& loaded) { return sameName(loaded->id, id); });
    return found == loaded_.end() ? nullptr : *found;
}

std::shared_ptr<Loaded> Client::find(stage::ActorId actor) const {
    const auto found =
        std::find_if(loaded_.begin(), loaded_.end(), [&](const auto& loaded) { return loaded->actor == actor; });
    return found == loaded_.end() ? nullptr : *found;
}

void Client::admit(const stage::RequestRef& request) {
    const auto full = [&] {
        return waiting_.size() >= most_waiting || waiting_text_ + textIn(*request) > most_waiting_text;
    };
    if (full()) {
        waiting_text_ = 0;
        std::erase_if(waiting_, [&](const auto& weak) {
            const auto waiting = weak.lock();
            const bool over = !waiting || waiting->over();
            waiting_text_ += over ? 0 : textIn(*waiting);
            return over;
        });
        if (full()) {
            refuse(u"Too many requests wait.");
        }
    }
    waiting_.push_back(request);
    waiting_text_ += textIn(*request);
}

Ptr<RequestObject> Client::object(const stage::RequestRef& request) {
    const auto found = requests_.find(request->number);
    if (found != requests_.end()) {
        return Ptr<RequestObject>(found->second);
    }
    auto made = murmelix::com::make<RequestObject>(shared_from_this(), request);
    requests_[request->number] = made.get();
    return made;
}

void Client::cutOff() {
    const auto self = shared_from_this();
    unloadAll();
    // Held while they are cut off: cutting one off may end others.
    std::vector<Ptr<IUnknown>> objects(objects_.begin(), objects_.end());
    if (hang_up) {
        hang_up();
    }
    for (const auto& object : objects) {
        CoDisconnectObject(object.get(), 0);
    }
}

Server::Server(const Options& options)
    : options_(options), transcript_(options.transcript), clock_(options.speed), service_(voice::makeEngine()),
      output_(options.speed == 1.0 ? voice::Output(options.recording)
                                   : voice::Output(options.recording, [this] { return clock_.microseconds(); })),
      theatre_(std::make_unique<stage::Theatre>(
          messages_, service_, output_,
          stage::Hand{[this](auto actor, const auto& pointer) { clicked(actor, pointer); },
                      [this](auto actor, const auto& pointer) { doubleClicked(actor, pointer); },
                      [this](auto actor, const auto& pointer) { tellOfPointer(actor, 5, pointer); },
                      [this](auto actor, const auto& pointer) {
                          tellOfPointer(actor, 6, pointer);
                          if (stage::Actor* dropped = stage_.find(actor)) {
                              dropped->drop();
                          }
                      },
                      [this](auto actor, int left, int top) {
                          if (stage::Actor* dragged = stage_.find(actor)) {
                              dragged->drag(left, top);
                              theatre_->present(stage_);
                          }
                      },
                      [this](auto actor) { return tipOf(actor); },
                      [this](auto actor) {
                          if (stage::Actor* read = stage_.find(actor)) {
                              read->dismissBalloon();
                          }
                      },
                      [this](auto actor) {
                          const stage::Actor* named = stage_.find(actor);
                          return named ? named->name : std::u16string();
                      }})),
      stage_(*theatre_, *this,
             [random = std::mt19937(std::random_device()())](int below) mutable {
                 return std::uniform_int_distribution<int>(0, below - 1)(random);
             }),
      settings_frm_(listener_, keys_,
                    [this] {
                        return settings::SettingsFrm::Facts{service_.available(), stage_.keepsOnScreen(), size_};
                    },
                    {[this](bool keep) {
                         stage_.setKeepOnScreen(keep);
                         settings::writeKeepOnScreen(keep);
                         tellAll(property_change);
                     },
                     [this](int percent) {
                         settings::writeSize(percent);
                         setSize(percent);
                         tellAll(property_change);
                     }},
                    {[this] { return knownCharacters(); },
                     [this](std::uint16_t language) { return service_.speaks(language); },
                     [this](std::uint16_t language) { return service_.voices(language); },
                     [this](const settings::KnownCharacter& character) { sayHowItSounds(character); }}),
      empty_since_(std::chrono::steady_clock::now()) {
    theatre_->setManners([this](const stage::Actor& actor) { return mannerOf(actor); });
    listener_.Skip = [this] { stage_.skip(); };
    listener_.VoicesChanged = [this] {
        stage_.voicesChanged();
        tellAll(property_change);
    };
    listener_.Changed = [this] {
        listen();
        tellAll(property_change);
    };
    listen();
    stage_.setKeepOnScreen(settings::readKeepOnScreen());
    setSize(settings::readSize());
    theatre_->present(stage_); // the stage knows its size before the first client asks for it
    messages_.every(tick_period, [this] { tick(); });
    messages_.onClose([this] { shutDown(); });
    messages_.onRestart([this] { restart(); });
    messages_.onSettingsChanged([this] { listen(); });
    if (options_.stay) {
        showTray();
    }
}

void Server::showTray() {
    if (!tray_) {
        tray_ = std::make_unique<settings::Tray>(
            settings_frm_, listener_, keys_, [this] { return loadedCharacters(); }, [this] { restart(); },
            [this] { shutDown(); });
        tray_->CharactersOnScreen = [this] { return charactersOnScreen(); };
    }
}

std::vector<settings::Tray::OnScreen> Server::charactersOnScreen() {
    std::vector<settings::Tray::OnScreen> all;
    for (const stage::Actor* actor : stage_.actors()) {
        if (actor->visible()) {
            all.push_back({actor->name, [this, id = actor->id()] {
                               if (const stage::Actor* still = stage_.find(id)) {
                                   const stage::Rect area = still->area();
                                   clicked(id, {2, 0, area.left + area.width() / 2, area.top + area.height() / 2});
                               }
                           }});
        }
    }
    return all;
}

Server::~Server() {
    const auto clients = clients_;
    for (const auto& client : clients) {
        if (const auto left = client.lock()) {
            left->cutOff();
        }
    }
    watches_.clear();
    murmelix::com::waitForSinksToEnd(murmelix::com::last_sinks_time);
}

void Server::beginEnding(DISPID event) {
    ending_since_ = std::chrono::steady_clock::now();
    tellAll(event);
}

void Server::shutDown() {
    if (!ending_since_) {
        beginEnding(12);
    }
}

void Server::restart() {
    if (!ending_since_) {
        restarts_ = true;
        beginEnding(21);
    }
}

bool Server::run() {
    transcript_.ready();
    murmelix::ui::runMessageLoop();
    return restarts_;
}

std::shared_ptr<Client> Server::newClient() {
    auto client = std::make_shared<Client>(*this, ++last_troupe_);
    std::erase_if(clients_, [](const auto& gone) { return gone.expired(); });
    clients_.push_back(client);
    had_client_ = true;
    return client;
}

void Server::clientGone(Client&) {
    messages_.post([this] {
        std::erase_if(clients_, [](const auto& client) { return client.expired(); });
        std::erase_if(watches_, [](const Watch& watch) { return watch.client.expired(); });
    });
}

void Server::watch(const std::shared_ptr<Client>& client, murmelix::com::ProcessId process) {
    const std::weak_ptr<Client> weak = client;
    auto watched = murmelix::com::ProcessWatch::begin(process, [this, weak] {
        messages_.post([weak] {
            if (const auto gone = weak.lock()) {
                gone->cutOff();
            }
        });
    });
    if (watched) {
        watches_.push_back({weak, std::move(watched)});
    }
}

// What the user wants of all that is said takes effect.
void Server::listen() {
    theatre_->setVolume(listener_.audible() ? listener_.volume() / 100.0 : 0);
    const int reading = listener_.reading();
    stage_.setListening({.tempo = listener_.speed() / 100.0,
                         .longest = listener_.longest() * 1000,
                         .most_waiting = listener_.mostWaiting() * 1000,
                         .balloon_stays = reading == settings::reading_bounds.most ? stage::Listening::until_read
                                                                                   : stage::Time{1000} * reading,
                         .words_at_once = !listener_.wordByWord(),
                         .calm = listener_.calm() || !murmelix::ui::animates()});
    theatre_->setLetters(listener_.letters() / 100.0);
    if (stage_.paused() != listener_.paused()) {
        stage_.setPaused(listener_.paused());
    }
    for (stage::Actor* actor : stage_.actors()) {
        if (const Owner owner = ownerOf(actor->id()); owner.loaded) {
            actor->setSilenced(listener_.silenced(textOf(owner.loaded->file->character().guid)));
        }
    }
    settings_frm_.refresh();
    if (tray_) {
        tray_->showState();
    }
}

// As its client has set it, but for what the user wants of its voice.
voice::Manner Server::mannerOf(const stage::Actor& actor) {
    const Owner owner = ownerOf(actor.id());
    return owner.loaded ? asListenerWants(actor.manner, textOf(owner.loaded->file->character().guid)) : actor.manner;
}

voice::Manner Server::asListenerWants(voice::Manner manner, const std::u16string& character) const {
    const settings::OwnVoice own = listener_.ownVoice(character);
    if (own.language != 0 && service_.speaks(own.language)) {
        manner.language_id = own.language;
    }
    manner.voice = listener_.voiceOf(character, manner.language_id);
    if (own.pitch != 0) {
        manner.pitch = static_cast<std::uint16_t>(own.pitch);
    }
    if (own.speed != 0) {
        manner.speed = static_cast<std::uint32_t>(own.speed);
    }
    return manner;
}

std::optional<voice::Manner> Server::mannerOf(const settings::KnownCharacter& character) {
    for (const stage::Actor* actor : stage_.actors()) {
        const Owner owner = ownerOf(actor->id());
        if (owner.loaded && textOf(owner.loaded->file->character().guid) == character.key) {
            return mannerOf(*actor);
        }
    }
    for (const auto& installed : installedCharacters()) {
        if (textOf(installed->guid) == character.key) {
            voice::Manner manner;
            giveVoice(manner, *installed, service_);
            return asListenerWants(manner, character.key);
        }
    }
    return std::nullopt;
}

// At once, over what others say. Each time anew: what is under way is broken off.
void Server::sayHowItSounds(const settings::KnownCharacter& character) {
    std::optional<voice::Manner> manner = mannerOf(character);
    if (!manner || stage_.paused()) {
        murmelix::ui::beep();
        return;
    }
    manner->speaker = UINT32_MAX; // it is no text of the character's
    const settings::Language* const language = settings::languageOf(manner->language_id);
    service_.cancel(std::exchange(sample_order_, 0));
    output_.stop(std::exchange(sample_, 0));
    sample_order_ = service_.order(
        std::u16string(language ? language->sample : u"This is how I sound."), *manner, [this](voice::Speech speech) {
            messages_.post([this, sound = std::make_shared<voice::Wave>(std::move(speech.sound))]() mutable {
                output_.stop(sample_);
                sample_ = output_.play(std::move(*sound), {});
                output_.setTempo(sample_, stage_.tempo());
            });
        });
}

namespace {

// Each once, the first of those that are the same, in the order of the names.
std::vector<settings::KnownCharacter> eachOnce(std::vector<settings::KnownCharacter> all) {
    std::ranges::stable_sort(all, {}, &settings::KnownCharacter::key);
    const auto repeated = std::ranges::unique(all, {}, &settings::KnownCharacter::key);
    all.erase(repeated.begin(), repeated.end());
    std::ranges::stable_sort(all, {}, &settings::KnownCharacter::name);
    return all;
}

} // namespace

std::vector<settings::KnownCharacter> Server::loadedCharacters() {
    std::vector<settings::KnownCharacter> all;
    for (const auto& weak : clients_) {
        if (const auto client = weak.lock()) {
            for (const auto& loaded : client->loaded()) {
                const stage::Actor* actor = stage_.find(loaded->actor);
                const acs::Character& character = loaded->file->character();
                all.push_back({textOf(character.guid), actor ? actor->name : std::u16string(),
                               actor ? actor->manner.language_id : std::uint16_t{0}});
            }
        }
    }
    return eachOnce(std::move(all));
}

std::vector<std::shared_ptr<const acs::Character>> Server::installedCharacters() {
    const std::u16string directory = charactersDirectory();
    std::vector<std::filesystem::path> files;
    for (const std::u16string& name : murmelix::platform::filesIn(directory, u".acs")) {
        files.emplace_back(directory + u"\\" + name);
    }
    return installed_.all(std::move(files));
}

std::vector<settings::KnownCharacter> Server::knownCharacters() {
    std::vector<settings::KnownCharacter> all = loadedCharacters();
    for (const auto& installed : installedCharacters()) {
        voice::Manner manner;
        giveVoice(manner, *installed, service_);
        const acs::LocalizedName* const name = installed->nameFor(manner.language_id);
        all.push_back({textOf(installed->guid), name ? name->name : std::u16string(), manner.language_id, false});
    }
    return eachOnce(std::move(all));
}

void Server::setSize(int percent) {
    size_ = percent;
    theatre_->setSize(percent / 100.0);
}

void Server::tick() {
    output_.tick();
    stage_.advance(clock_.milliseconds());
    theatre_->present(stage_);
    const auto now = std::chrono::steady_clock::now();
    if (!options_.recording.empty() && now - flushed_at_ >= flush_period) {
        flushed_at_ = now;
        output_.flush();
    }
    if (ending_since_) {
        if (murmelix::com::allEventsDelivered() || now - *ending_since_ >= murmelix::com::last_events_time) {
            murmelix::ui::quitMessageLoop();
        }
    } else if (murmelix::com::Served::alive() > 0) {
        empty_since_ = now;
    } else if (!options_.stay && now - empty_since_ >= (had_client_ ? grace : first_client)) {
        murmelix::ui::quitMessageLoop();
    }
}

Server::Owner Server::ownerOf(stage::ActorId actor) const {
    for (const auto& weak : clients_) {
        if (auto client = weak.lock()) {
            if (auto loaded = client->find(actor)) {
                return {std::move(client), std::move(loaded)};
            }
        }
    }
    return {};
}

void Server::tell(const Client& client, DISPID event, const std::vector<Variant>& arguments) {
    if (!client.fire) {
        return;
    }
    try {
        client.fire(event, arguments);
    } catch (const std::exception&) {
        // An event that cannot be told for want of memory is lost; the next may get through.
        return;
    }
}

void Server::tellAll(DISPID event) {
    for (const auto& weak : clients_) {
        if (const auto client = weak.lock()) {
            tell(*client, event, {});
        }
    }
}

void Server::tellOfCharacter(stage::ActorId actor, DISPID event, std::vector<Variant> more) {
    const Owner owner = ownerOf(actor);
    if (owner.client) {
        more.insert(more.begin(), Variant(owner.loaded->id));
        tell(*owner.client, event, more);
    }
}

void Server::tellOfPointer(stage::ActorId actor, DISPID event, const stage::PointerEvent& pointer) {
    const auto small = [](int value) { return static_cast<std::int16_t>(std::clamp(value, -32768, 32767)); };
    tellOfCharacter(actor, event, {small(pointer.button), small(pointer.shift), small(pointer.x), small(pointer.y)});
}

void Server::tellOfDone(const std::shared_ptr<Client>& client, const stage::RequestRef& request) {
    messages_.post([client, request] {
        if (client->fire) {
            tell(*client, 9, {Variant(client->object(request))});
            tell(*client, 11, {Variant(client->object(request))});
        }
    });
}

std::vector<Server::Owner> Server::sharersOf(const acs::Guid& character) const {
    std::vector<Owner> found;
    for (const auto& weak : clients_) {
        if (auto client = weak.lock()) {
            for (const auto& loaded : client->loaded()) {
                if (loaded->file->character().guid == character) {
                    found.push_back({client, loaded});
                }
            }
        }
    }
    return found;
}

bool Server::hasOtherClients(const Loaded& loaded) const {
    const Owner own = ownerOf(loaded.actor);
    return std::ranges::any_of(sharersOf(loaded.file->character().guid),
                               [&](const Owner& other) { return other.client != own.client; });
}

bool Server::isActiveClient(const Loaded& loaded) const {
    const auto found = active_clients_.find(loaded.file->character().guid);
    return found != active_clients_.end() && found->second == loaded.actor;
}

void Server::passTo(const acs::Guid& character, stage::ActorId actor) {
    const stage::ActorId before = std::exchange(active_clients_[character], actor);
    if (before != 0 && before != actor) {
        tellOfCharacter(before, 32, {false});
        tellOfCharacter(actor, 32, {true});
    }
}

void Server::claimUnclaimed(const Loaded& loaded) {
    active_clients_.try_emplace(loaded.file->character().guid, loaded.actor);
}

void Server::claim(const Loaded& loaded) {
    passTo(loaded.file->character().guid, loaded.actor);
}

void Server::giveUp(const Loaded& loaded) {
    const acs::Guid& character = loaded.file->character().guid;
    if (!isActiveClient(loaded)) {
        return;
    }
    const auto sharers = sharersOf(character);
    const auto next =
        std::ranges::find_if(sharers, [&](const Owner& other) { return other.loaded->actor != loaded.actor; });
    if (next != sharers.end()) {
        passTo(character, next->loaded->actor);
    } else if (sharers.empty()) {
        active_clients_.erase(character);
    }
}

void Server::tellOfRequest(stage::Actor& actor, DISPID event, const stage::RequestRef& request) {
    if (const Owner owner = ownerOf(actor.id()); owner.client && owner.client->fire) {
        tell(*owner.client, event, {Variant(owner.client->object(request))});
    }
}

void Server::requestStarted(stage::Actor& actor, const stage::RequestRef& request) {
    if (const Owner owner = ownerOf(actor.id()); owner.loaded) {
        transcript_.start(owner.loaded->id, actor.name, *request);
    }
    tellOfRequest(actor, 9, request);
}

void Server::requestCompleted(stage::Actor& actor, const stage::RequestRef& request) {
    if (const Owner owner = ownerOf(actor.id()); owner.loaded) {
        transcript_.end(owner.loaded->id, actor.name, *request);
    }
    tellOfRequest(actor, 11, request);
}

void Server::bookmark(stage::Actor& actor, std::int32_t id) {
    if (const Owner owner = ownerOf(actor.id()); owner.client) {
        tell(*owner.client, 16, {Variant(id)});
    }
}

void Server::shown(stage::Actor& actor, stage::VisibilityCause cause) {
    tellOfCharacter(actor.id(), 15, {static_cast<std::int16_t>(cause)});
}

void Server::hidden(stage::Actor& actor, stage::VisibilityCause cause) {
    if (active_ == actor.id()) {
        active_ = 0;
        tellOfCharacter(actor.id(), 3);
    }
    tellOfCharacter(actor.id(), 7, {static_cast<std::int16_t>(cause)});
}

void Server::moved(stage::Actor& actor, stage::MoveCause cause) {
    tellOfCharacter(actor.id(), 22,
                    {static_cast<std::int16_t>(actor.left()), static_cast<std::int16_t>(actor.top()),
                     static_cast<std::int16_t>(cause)});
}

void Server::resized(stage::Actor& actor) {
    tellOfCharacter(actor.id(), 23,
                    {static_cast<std::int16_t>(actor.width()), static_cast<std::int16_t>(actor.height())});
}

void Server::idleStarted(stage::Actor& actor) {
    tellOfCharacter(actor.id(), 19);
}

void Server::idleCompleted(stage::Actor& actor) {
    tellOfCharacter(actor.id(), 20);
}

void Server::balloonShown(stage::Actor& actor) {
    tellOfCharacter(actor.id(), 24);
}

void Server::balloonHidden(stage::Actor& actor) {
    tellOfCharacter(actor.id(), 25);
}

void Server::activate(stage::ActorId actor) {
    theatre_->toFront(actor);
    if (const Owner owner = ownerOf(actor); owner.loaded) {
        claim(*owner.loaded);
    }
    if (active_ == actor) {
        return;
    }
    if (active_ != 0) {
        tellOfCharacter(active_, 3);
    }
    active_ = actor;
    tellOfCharacter(actor, 1);
}

// Clients load a character by the id of whom it speaks for. No tip covers an open menu.
std::u16string Server::tipOf(stage::ActorId id) {
    const Owner owner = ownerOf(id);
    const stage::Actor* actor = stage_.find(id);
    if (!owner.loaded || !actor || menu_open_) {
        return {};
    }
    const std::u16string& whom = owner.loaded->id;
    return sameName(whom, actor->name) ? actor->name : actor->name + u" speaks for " + whom;
}

void Server::clicked(stage::ActorId actor, const stage::PointerEvent& pointer) {
    activate(actor);
    tellOfPointer(actor, 2, pointer);
    if (pointer.button == 2) {
        const Owner owner = ownerOf(actor);
        if (owner.loaded && owner.loaded->auto_popup_menu) {
            popUpMenu(actor, pointer.x, pointer.y);
        }
    }
}

void Server::doubleClicked(stage::ActorId actor, const stage::PointerEvent& pointer) {
    tellOfPointer(actor, 4, pointer);
    const Owner owner = ownerOf(actor);
    if (!owner.loaded) {
        return;
    }
    CommandList& list = owner.loaded->commands;
    const MenuCommand* command = list.find(list.default_command);
    if (command && command->enabled) {
        tell(*owner.client, 17, {Variant(makeUserInput(owner.client, owner.loaded->id, command->name))});
    }
}

void Server::popUpMenu(stage::ActorId actor, int x, int y) {
    messages_.post([this, actor, x, y] { runMenu(actor, x, y); });
}

void Server::runMenu(stage::ActorId actor, int x, int y) {
    const Owner owner = ownerOf(actor);
    if (!owner.loaded || std::exchange(menu_open_, true)) {
        return;
    }
    constexpr int hide_id = 0, first_id = 1;
    std::vector<stage::MenuEntry> entries{{.caption = u"&Open Voice Commands Window", .enabled = false},
                                          {.caption = u"&Hide", .id = hide_id}};
    std::vector<std::u16string> names;
    CommandList& list = owner.loaded->commands;
    for (const MenuCommand& command : list.commands) {
        if (!list.visible || !command.visible || command.caption.empty()) {
            continue;
        }
        // Clients part their commands by disabled ones without a word.
        const bool spacer = !command.enabled && murmelix::trim(command.caption).empty();
        if ((spacer || names.empty()) && !entries.back().is_line) {
            entries.push_back({.is_line = true});
        }
        if (spacer) {
            continue;
        }
        entries.push_back({.caption = command.caption,
                           .id = first_id + static_cast<int>(names.size()),
                           .enabled = command.enabled,
                           .is_default = sameName(command.name, list.default_command)});
        names.push_back(command.name);
    }
    // The other clients that have this character are chosen by what their commands are called.
    const int first_other = first_id + static_cast<int>(names.size());
    std::vector<stage::ActorId> others;
    for (const Owner& other : sharersOf(owner.loaded->file->character().guid)) {
        const CommandList& commands = other.loaded->commands;
        if (other.client == owner.client || !commands.visible || murmelix::trim(commands.caption).empty()) {
            continue;
        }
        if (others.empty() && !entries.back().is_line) {
            entries.push_back({.is_line = true});
        }
        entries.push_back({.caption = commands.caption, .id = first_other + static_cast<int>(others.size())});
        others.push_back(other.loaded->actor);
    }
    if (entries.back().is_line) {
        entries.pop_back();
    }
    theatre_->hideTips();
    const std::optional<int> chosen = stage::runPopupMenu(messages_.handle(), entries, x, y);
    menu_open_ = false;
    // The menu ran the message loop: the character may have gone.
    stage::Actor* still = stage_.find(actor);
    if (!still || !chosen) {
        return;
    }
    if (*chosen == hide_id) {
        still->hideByUser();
    } else if (*chosen >= first_other) {
        if (const stage::ActorId other = others.at(static_cast<std::size_t>(*chosen - first_other));
            stage_.find(other)) {
            activate(other);
        }
    } else {
        const std::u16string& name = names.at(static_cast<std::size_t>(*chosen - first_id));
        tell(*owner.client, 17, {Variant(makeUserInput(owner.client, owner.loaded->id, name))});
    }
}

} // namespace agent::automation
