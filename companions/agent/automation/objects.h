// The objects that clients hold: one file each, members as published. What a property or a method does is the member
// function in its row.
#pragma once

#include <memory>

#include "companions/agent/automation/server.h"

// The interfaces that agent.idl describes.
namespace type_library {

using murmelix::com::Interface;
extern const Interface IAgent, IAnimationNames, IAudioOutput, IBalloon, ICharacter, ICharacters, ICommand, ICommands,
    ICommandsWindow, IPropertySheet, IRequest, ISpeechInput, IUserInput;

} // namespace type_library

namespace agent::automation {

using murmelix::com::Error;
using murmelix::com::Interface;
using murmelix::com::make;
using murmelix::com::Member;
using murmelix::com::Members;
using murmelix::com::method;
using murmelix::com::property;

// UTF-16 units of a name, a caption or a path: wider than any menu or file system takes. They come back with every
// event, and each entry of a menu shows one.
inline constexpr std::size_t longest_label = 1000;

// An argument that is a name, a caption or a path. Error for one that is longer.
struct Label {
    static Label of(const Variant& given);
    std::u16string text;
};

// Base of the objects of a client.
class ClientObject : public murmelix::com::Served {
  public:
    const std::shared_ptr<Client>& client() const { return client_; }

  protected:
    explicit ClientObject(std::shared_ptr<Client> client);
    ~ClientObject() override;
    Server& server() const { return client_->server(); }

  private:
    std::shared_ptr<Client> client_;
};

// Something that the characters of a client have; a client may keep it longer than the character is loaded, and is then
// refused all members.
class CharacterPart : public ClientObject {
  protected:
    CharacterPart(std::shared_ptr<Client> client, std::shared_ptr<Loaded> loaded)
        : ClientObject(std::move(client)), loaded_(std::move(loaded)) {}
    Loaded& loaded() const { return *loaded_; }
    const std::shared_ptr<Loaded>& shared() const { return loaded_; }
    stage::Actor& actor() const;
    void entering(const Member&) override { actor(); }

  private:
    std::shared_ptr<Loaded> loaded_;
};

class RequestObject final : public ClientObject {
  public:
    RequestObject(std::shared_ptr<Client> client, stage::RequestRef request);
    const stage::RequestRef& request() const { return request_; }

    // How an object that a client hands in is recognised as one of ours.
    static const IID own_interface;

  protected:
    ~RequestObject() override;
    const Interface* published() const override { return &type_library::IRequest; }
    std::span<const Member> members() const override;
    void* interfaceFor(REFIID iid) override;

  private:
    stage::Failure failure() const;
    std::u16string description() const;
    std::int32_t number() const;

    stage::RequestRef request_;
};

// An argument that is a request; anything else is a type error.
struct GivenRequest {
    static constexpr bool refuses_empty = true;
    static GivenRequest of(const Variant& given);
    stage::RequestRef request;
};

Ptr<IDispatch> makeAudioOutput(const std::shared_ptr<Client>& client);
Ptr<IDispatch> makeCharacters(const std::shared_ptr<Client>& client);
Ptr<IDispatch> makeCommandsWindow(const std::shared_ptr<Client>& client);
Ptr<IDispatch> makePropertySheet(const std::shared_ptr<Client>& client);
Ptr<IDispatch> makeSpeechInput(const std::shared_ptr<Client>& client);
Ptr<IDispatch> makeAnimationNames(const std::shared_ptr<Client>& client, const std::shared_ptr<Loaded>& loaded);
Ptr<IDispatch> makeBalloon(const std::shared_ptr<Client>& client, const std::shared_ptr<Loaded>& loaded);
Ptr<IDispatch> makeCharacter(const std::shared_ptr<Client>& client, const std::shared_ptr<Loaded>& loaded);
Ptr<IDispatch> makeCommands(const std::shared_ptr<Client>& client, const std::shared_ptr<Loaded>& loaded);
Ptr<IDispatch> makeCommand(const std::shared_ptr<Client>& client, const std::shared_ptr<Loaded>& loaded,
                           const std::u16string& name);
// Error where the client has no character of that id, or the character no command of that name.
Ptr<IDispatch> characterOf(const std::shared_ptr<Client>& client, const std::u16string& id);
Ptr<IDispatch> commandOf(const std::shared_ptr<Client>& client, const std::shared_ptr<Loaded>& loaded,
                         const std::u16string& name);

// A control for a new client.
Ptr<IDispatch> makeControl(Server& server, murmelix::com::ProcessId process);
// The argument of the Command event.
Ptr<IDispatch> makeUserInput(const std::shared_ptr<Client>& client, std::u16string character, std::u16string command);

// The object of a request that is over when it is made: complete, or failed.
Ptr<IDispatch> finished(const std::shared_ptr<Client>& client, stage::Request request,
                        stage::Failure failure = stage::Failure::none);

// A call that is right but cannot be carried out here.
[[noreturn]] void refuse(const std::u16string& reason);
// Where no recognition is installed.
[[noreturn]] void refuseSpeechInput();

// As the published 16-bit values hold it.
std::int16_t small(int value);
bool sameName(std::u16string_view a, std::u16string_view b);

} // namespace agent::automation
