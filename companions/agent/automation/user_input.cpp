#include "companions/agent/automation/objects.h"

namespace agent::automation {
namespace {

constexpr std::int32_t certain = 100; // chosen from the menu: no doubt about it

class UserInput final : public ClientObject {
  public:
    UserInput(std::shared_ptr<Client> client, std::u16string character, std::u16string command)
        : ClientObject(std::move(client)), character_(std::move(character)), command_(std::move(command)) {}

  private:
    const Interface* published() const override { return &type_library::IUserInput; }
    std::span<const Member> members() const override {
        static const Members<UserInput> all{
            property(L"Count", 1, [](const UserInput&) { return std::int16_t{1}; }),
            property(L"Name", 2, [](const UserInput& self) { return self.command_; }),
            property(L"CharacterID", 3, [](const UserInput& self) { return self.character_; }),
            property(L"Confidence", 4, [](const UserInput&) { return certain; }),
            property(L"Voice", 5, &UserInput::nothing),
            property(L"Alt1Name", 6, &UserInput::nothing),
            property(L"Alt1Confidence", 7, &UserInput::zero),
            property(L"Alt1Voice", 8, &UserInput::nothing),
            property(L"Alt2Name", 9, &UserInput::nothing),
            property(L"Alt2Confidence", 10, &UserInput::zero),
            property(L"Alt2Voice", 11, &UserInput::nothing),
        };
        return all;
    }

    std::u16string nothing() const { return {}; }
    std::int32_t zero() const { return 0; }

    std::u16string character_, command_;
};

} // namespace

Ptr<IDispatch> makeUserInput(const std::shared_ptr<Client>& client, std::u16string character, std::u16string command) {
    return Ptr<IDispatch>(make<UserInput>(client, std::move(character), std::move(command)).get());
}

} // namespace agent::automation
