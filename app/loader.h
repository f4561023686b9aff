// Start-up: who may run, whose settings, and what must be there.
#pragma once

#include <memory>

#include "app/main_frm.h"

namespace murmelix {

class Loader {
  public:
    // At process start, and again at every sign-in to Messenger; what happens only once hangs on MainFormLoaded. One in
    // the middle of it makes it begin again.
    void Main();

    void GetWindowsDir();
    // Each ends the program where Agent, or its speech output, cannot be used.
    void EnableAgentRequestErrors();
    void CheckSpeechEngine();

    // Made when it is needed first.
    murmelix::MainFrm& MainFrm();

  private:
    void enterMain();
    // The sign-in that is being met is not the last one any more.
    bool beginsAgain() const;

    // Beginnings of one run; a client that signs in without end is met as it was found then.
    static constexpr int most_beginnings = 16;

    bool in_main_ = false;
    bool again_ = false;
    int beginnings_ = 0;
    std::unique_ptr<murmelix::MainFrm> main_frm_;
};

} // namespace murmelix
