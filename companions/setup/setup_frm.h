#pragma once

#include <functional>
#include <string>

#include "companions/setup/setup.h"
#include "ui/button.h"
#include "ui/form.h"
#include "ui/label.h"
#include "ui/progress_bar.h"
#include "ui/text_area.h"

namespace setup {

// What is about to happen, how far it is, what has happened line by line, and the button that closes it. It begins when
// it is shown, and stays open until everything is done: half a setup helps nobody, and it takes a moment only. Its end
// ends the message loop with the exit status.
class SetupFrm : public murmelix::ui::Form {
  public:
    explicit SetupFrm(const Plan& plan);
    void Form_Load() override;
    void Form_Unload() override;
    void onClose() override;
    void layOut() override;
    void DoneButt_Click();

    // A line was added to LinesArea.
    std::function<void(const std::u16string& line)> LineAdded;

    murmelix::ui::Label IntroductionLbl, CurrentLbl{*this, u""};
    murmelix::ui::ProgressBar StepsBar{*this};
    murmelix::ui::TextArea LinesArea{*this};
    murmelix::ui::Button DoneButt{*this, u"&Done"};

  private:
    void carryOutNext();
    void addLine(const std::u16string& line);

    Progress progress_;
};

} // namespace setup
