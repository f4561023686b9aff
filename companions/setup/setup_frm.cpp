#include "companions/setup/setup_frm.h"

#include "ui/layout.h"
#include "ui/screen.h"

namespace setup {

namespace ui = murmelix::ui;

SetupFrm::SetupFrm(const Plan& plan)
    : Form(nullptr, plan.title, ui::FormStyle::window, u"MurmelixSetup"), IntroductionLbl(*this, plan.introduction),
      progress_(plan) {
    setIcon({u"#1"}); // the program's own
    IntroductionLbl.setUseMnemonic(false);
    CurrentLbl.setTellsNews();
    CurrentLbl.setUseMnemonic(false);
    CurrentLbl.setEllipsis(ui::Label::Ellipsis::path);
    StepsBar.setMax(static_cast<int>(plan.steps.size()));
    DoneButt.setEnabled(false);
    DoneButt.Click = [this] { DoneButt_Click(); };
    DefaultButton = &DoneButt;
    CancelButton = &DoneButt;
    layOut();
}

void SetupFrm::Form_Load() {
    ui::post([this] { carryOutNext(); });
}

void SetupFrm::Form_Unload() {
    ui::quitMessageLoop(progress_.exitStatus());
}

void SetupFrm::onClose() {
    if (DoneButt.Enabled()) {
        Unload();
    }
}

void SetupFrm::layOut() {
    constexpr int width = 8400, height = 5700, margin = 210, gap = 120;
    const int line = CurrentLbl.sizeFor(u"X").height;
    ui::fit(*this,
            ui::rows({ui::item(IntroductionLbl).wrapped(), ui::item(CurrentLbl).least(0, line), ui::item(StepsBar),
                      ui::item(LinesArea).growing(), ui::columns({ui::stretch(), ui::item(DoneButt).least(1440, 420)})})
                .gap(gap)
                .pad(margin)
                .least(width, height),
            width);
}

void SetupFrm::DoneButt_Click() {
    Unload();
}

void SetupFrm::carryOutNext() {
    StepsBar.setValue(static_cast<int>(progress_.done()));
    if (progress_.over()) {
        CurrentLbl.setCaption(progress_.conclusion());
        addLine(progress_.conclusion());
        DoneButt.setEnabled(true);
        DoneButt.SetFocus();
        return;
    }
    CurrentLbl.setCaption(progress_.what());
    Refresh();
    // A step may run the message loop: the next is posted only after it.
    addLine(progress_.carryOutNext());
    ui::post([this] { carryOutNext(); });
}

void SetupFrm::addLine(const std::u16string& line) {
    LinesArea.AddLine(line);
    if (LineAdded) {
        LineAdded(line);
    }
}

} // namespace setup
