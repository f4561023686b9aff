#include "companions/agent/automation/objects.h"

namespace agent::automation {
namespace {

class Characters final : public ClientObject {
  public:
    explicit Characters(std::shared_ptr<Client> client) : ClientObject(std::move(client)) {}

  private:
    const Interface* published() const override { return &type_library::ICharacters; }
    std::span<const Member> members() const override {
        static const Members<Characters> all{
            property(L"Item", 0, &Characters::character, {L"CharacterID"}),
            method(L"Load", 1, &Characters::load, {L"CharacterID", L"LoadKey"}),
            method(L"Unload", 2, &Characters::unload, {L"CharacterID"}),
            method(L"Character", 3, &Characters::character, {L"CharacterID"}),
            property(L"Enum", DISPID_NEWENUM, &Characters::each),
            property(L"_NewEnum", DISPID_NEWENUM, &Characters::each),
        };
        return all;
    }

    Ptr<IDispatch> character(const Label& id) { return characterOf(client(), id.text); }

    Ptr<IDispatch> load(const Label& id, const std::optional<Label>& file) {
        try {
            const Loaded& loaded = client()->load(id.text, file ? file->text : id.text);
            return finished(client(), {.kind = stage::Kind::load, .text = id.text, .actor = loaded.actor});
        } catch (const Error& error) {
            if (client()->raise_request_errors) {
                throw;
            }
            return finished(client(), {.kind = stage::Kind::load, .text = std::u16string(error.description())},
                            stage::Failure::not_loaded);
        }
    }

    void unload(const Label& id) { client()->unload(id.text); }

    Variant each() {
        std::vector<Variant> all;
        for (const auto& loaded : client()->loaded()) {
            all.emplace_back(makeCharacter(client(), loaded));
        }
        return murmelix::com::enumerate(std::move(all), client());
    }
};

} // namespace

Ptr<IDispatch> makeCharacters(const std::shared_ptr<Client>& client) {
    return Ptr<IDispatch>(make<Characters>(client).get());
}

Ptr<IDispatch> characterOf(const std::shared_ptr<Client>& client, const std::u16string& id) {
    const auto found = client->find(id);
    if (!found) {
        throw Error(E_INVALIDARG, u"There is no character \"" + id + u"\".");
    }
    return makeCharacter(client, found);
}

} // namespace agent::automation
