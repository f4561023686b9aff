// Fetches the picture of a character from the web server into the directory of pictures, then closes itself.
#pragma once

#include <cstdint>
#include <string>

#include "download/image_answer.h"
#include "platform/socket.h"
#include "ui/button.h"
#include "ui/form.h"
#include "ui/label.h"
#include "ui/picture_box.h"

namespace murmelix {

// Of the picture of a character, whether or not it exists. Empty where a character cannot have that name.
std::u16string imageFile(const std::u16string& character);

class ImgDownFrm : public ui::Form {
  public:
    explicit ImgDownFrm(ui::Form* owner);

    void Form_Load() override;
    void Form_Unload() override;
    void onClose() override { CancelDoldButt_Click(); }
    void layOut() override;

    void socket_Connect();
    void socket_DataArrival(std::size_t bytes_total);
    void socket_Close();
    void socket_Error(const std::u16string& description);
    void CancelDoldButt_Click();

    // Whose picture is wanted; set before the window opens.
    std::u16string CharacterName;

    ui::Label MsgLbl{*this, u"Please wait while Murmelix downloads an image for "};
    ui::PictureBox progress{*this};
    ui::Button CancelDoldButt{*this, u"&Cancel Download"};
    platform::Socket socket;

  private:
    void showProgress(std::int32_t percent, const std::u16string& status);
    // `remove`: what was saved, if anything, is no picture.
    void finish(bool remove);
    void tell(const std::u16string& text, const std::u16string& title);
    void tellNotFound();

    ImageAnswer answer_;
};

} // namespace murmelix
