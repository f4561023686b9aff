// What is seen of a sign-in that is under way, inside the main window: who, how far, and the way out.
#pragma once

#include <string>

#include "companions/messenger/chat/contact.h"
#include "ui/button.h"
#include "ui/frame.h"
#include "ui/label.h"
#include "ui/layout.h"
#include "ui/picture_box.h"
#include "ui/screen.h"
#include "ui/timer.h"

namespace messenger_client {

namespace ui = murmelix::ui;

class SigningInPage final : public ui::Frame {
  public:
    explicit SigningInPage(ui::Control& parent);

    // `who` is signing in, and this is being done for it.
    void tell(const Contact& who, const std::u16string& doing);
    // The light runs round while the page is shown.
    void turn(bool on) { Turn.setEnabled(on && ui::animates()); }
    ui::Layout layout();

    ui::PictureBox Ring{*this};
    ui::Label ProgressLbl{*this, u""};
    ui::Button CancelButt{*this, u"Cancel"};
    ui::Timer Turn{80};

  private:
    void draw();

    Contact who_;
    int step_ = 0;
};

} // namespace messenger_client
