#include "tests/forms/gallery.h"

#include "companions/agent/settings/settings_frm.h"
#include "companions/setup/setup_frm.h"

namespace murmelix::test {

void visitAgentServer(const Visit& visit) {
    using namespace agent::settings;
    Listener listener;
    Keys keys(listener);
    SettingsFrm form(
        listener, keys,
        [] {
            return SettingsFrm::Facts{true, true};
        },
        SettingsFrm::Switches{},
        VoicesPage::Sources{[] {
                                return std::vector<KnownCharacter>{{u"1", u"Brindle", 1033}, {u"2", u"Ottoline", 1031}};
                            },
                            [](std::uint16_t) { return true; },
                            [](std::uint16_t) {
                                return std::vector<std::u16string>{u"Zoe", u"Max"};
                            },
                            [](const KnownCharacter&) {}});
    form.present();
    for (std::size_t page = 0; page < form.Pages.Pages().size(); ++page) {
        form.Pages.setSelected(static_cast<int>(page));
        settle();
        visit(form, "agent-" + std::to_string(page + 1));
    }
    form.Hide();
}

void visitSetup(const Visit& visit) {
    using namespace setup;
    const Plan plan{u"Setup of characters",
                    u"Characters & more are being set up. This takes a moment.",
                    {{u"Doing one",
                      [] {
                          return Result{Outcome::done, u"One is done."};
                      }}},
                    u"Everything is ready."};
    SetupFrm form(plan);
    form.Show();
    visit(form, "setup-begun");
    settle();
    visit(form, "setup-done");
    form.Hide();
}

} // namespace murmelix::test
