// Start-up: who may run, whose settings, and what must be there.
#pragma once

#include <memory>

#include "app/main_frm.h"

namespace murmelix {

class Loader {
  public:
    // At process start, and again at every sign-in to Messenger; what happens only once hangs on MainFormLoaded.
    void Main();

    void GetWindowsDir();
    // Each ends the program where Agent, or its speech output, cannot be used.
    void EnableAgentRequestErrors();
    void CheckSpeechEngine();

    // Made when it is needed first.
    murmelix::MainFrm& MainFrm();

  private:
    std::unique_ptr<murmelix::MainFrm> main_frm_;
};

} // namespace murmelix
