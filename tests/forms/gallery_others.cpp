#include "tests/forms/gallery.h"

#include "companions/agent/settings/settings_frm.h"
#include "companions/setup/setup_frm.h"
#include "companions/setup/voice_frm.h"

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

namespace {

void visitVoices(const Visit& visit) {
    using namespace setup;
    for (const bool some : {true, false}) {
        VoiceFrm form(
            {some ? std::vector<VoiceFrm::Language>{{1033, u"English"}, {1031, u"German"}}
                  : std::vector<VoiceFrm::Language>{},
             [](std::uint16_t) {
                 return std::vector<VoiceFrm::Voice>{{u"", u""}, {u"Windows", u"Zoe"}, {u"espeak-ng", u"Max"}};
             },
             [](std::uint16_t) { return std::u16string(u"Zoe"); },
             [](std::uint16_t, const std::u16string&) { return true; },
             [](std::uint16_t, const VoiceFrm::Voice&, const Sample::Told&) {}});
        form.Show();
        settle();
        visit(form, some ? "voices" : "voices-none");
        form.Hide();
    }
}

} // namespace

void visitSetup(const Visit& visit) {
    using namespace setup;
    visitVoices(visit);
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
