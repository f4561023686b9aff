#include "companions/agent/automation/objects.h"

namespace agent::automation {
namespace {

class AnimationNames final : public CharacterPart {
  public:
    AnimationNames(std::shared_ptr<Client> client, std::shared_ptr<Loaded> loaded)
        : CharacterPart(std::move(client), std::move(loaded)) {}

  private:
    const Interface* published() const override { return &type_library::IAnimationNames; }
    std::span<const Member> members() const override {
        static const Members<AnimationNames> all{property(L"Enum", DISPID_NEWENUM, &AnimationNames::each)};
        return all;
    }

    Variant each() const {
        std::vector<Variant> names;
        for (const acs::Animation& animation : loaded().file->character().animations) {
            names.emplace_back(animation.name);
        }
        return murmelix::com::enumerate(std::move(names), client());
    }
};

} // namespace

Ptr<IDispatch> makeAnimationNames(const std::shared_ptr<Client>& client, const std::shared_ptr<Loaded>& loaded) {
    return Ptr<IDispatch>(make<AnimationNames>(client, loaded).get());
}

} // namespace agent::automation
