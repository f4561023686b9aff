#include "download/img_down_frm.h"

#include <algorithm>

#include "app/shell_state.h"
#include "common/address.h"
#include "common/text.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/system.h"
#include "ui/layout.h"

namespace murmelix {

namespace {

const std::u16string line_break = u"\r\n";
constexpr std::int32_t whole = 100;            // the progress box is so wide
constexpr std::int64_t widest_screen = 30'000; // pixels

} // namespace

std::u16string imageFile(const std::u16string& character) {
    return isFileName(character) ? CharPicsDir + u"\\" + character + u".gif" : std::u16string();
}

ImgDownFrm::ImgDownFrm(ui::Form* owner)
    : Form(owner, u"Downloading Character Image", ui::FormStyle::dialog),
      socket({[this] { socket_Connect(); }, [this](std::size_t bytes) { socket_DataArrival(bytes); },
              [this] { socket_Close(); },
              [this](unsigned long, const std::u16string& description) { socket_Error(description); }}) {
    setIcon({u"murmelix"});
    MsgLbl.setUseMnemonic(false);
    progress.setSunken(true);
    progress.setAccessibleName(u"Download");
    progress.setLooksLike(ui::Role::progress_bar, u"0%");
    progress.Resize = [this] { progress.surface().Cls(ui::button_face); };
    CancelDoldButt.setToolTipText(u"Cancel the character image download");
    CancelDoldButt.Click = [this] { CancelDoldButt_Click(); };
    CancelButton = &CancelDoldButt;
    layOut();
}

void ImgDownFrm::layOut() {
    ui::fit(*this,
            ui::rows({ui::item(MsgLbl).wrapped(), ui::item(progress).least(0, 330),
                      ui::item(CancelDoldButt).least(1500, 375).centered()})
                .gap(150)
                .pad(210),
            5100);
}

void ImgDownFrm::Form_Load() {
    MsgLbl.setCaption(u"Please wait while Murmelix downloads an image for " + CharacterName);
    layOut();
    Center();
    progress.surface().Cls(ui::button_face);
    progress.surface().Refresh();
    const auto server = webAddress(u"http://" + platform::siteHost()).value_or(WebAddress{});
    socket.Connect(server.host, server.port);
}

void ImgDownFrm::Form_Unload() {
    socket.Close();
    answer_ = {};
}

void ImgDownFrm::socket_Connect() {
    // No server has a picture for what is no name.
    if (imageFile(CharacterName).empty()) {
        socket.Close();
        tellNotFound();
        return finish(false);
    }
    socket.SendData(imageRequest(CharacterName));
}

void ImgDownFrm::socket_DataArrival(std::size_t) {
    const auto percent = answer_.take(socket.GetData());
    if (answer_.tooLong()) {
        socket.Close();
        return socket_Error(u"The answer is too long for an image.");
    }
    if (percent) {
        showProgress(*percent, u"Downloading...");
    }
}

void ImgDownFrm::socket_Close() {
    if (!platform::directoryExists(CharPicsDir)) {
        tell(u"Your character image directory can not be found!" + line_break +
                 u"Please reinstall Murmelix to correct this error",
             u"Char Image Directory Not found!");
    } else if (!answer_.hasHeader()) {
        tell(u"An unknown error has occured while downloading the character image!", u"Unknown Download Error!");
    } else if (!answer_.found()) {
        tellNotFound();
    } else if (const auto failure = platform::writeFile(imageFile(CharacterName), answer_.body())) {
        tell(u"An Error has occured while getting/saving character image!" + line_break + failure->description,
             u"Error #" + toText(static_cast<long long>(failure->number)));
        return finish(true);
    }
    finish(false);
}

void ImgDownFrm::socket_Error(const std::u16string& description) {
    tell(u"Error downloading character image from server!" + line_break + description, u"Error Downloading Image!");
    finish(true);
}

void ImgDownFrm::CancelDoldButt_Click() {
    finish(true);
}

void ImgDownFrm::showProgress(std::int32_t percent, const std::u16string& status) {
    ui::Surface& surface = progress.surface();
    const std::u16string text = (percent == 0 ? u"" : toText(percent)) + u"% " + status;
    surface.Cls(ui::window_background);
    surface.Print((surface.Width() - surface.TextWidth(text)) / 2, (surface.Height() - surface.TextHeight()) / 2, text,
                  ui::window_text);
    // More than a whole is drawn as it is: beyond the box, as far as any screen reaches.
    const auto width = static_cast<int>(
        std::clamp<std::int64_t>(std::int64_t{surface.Width()} * percent / whole, -widest_screen, widest_screen));
    surface.FillNotXor({0, 0, width, surface.Height()}, ui::highlight);
    surface.Refresh();
    progress.setLooksLike(ui::Role::progress_bar, toText(percent) + u"%");
}

void ImgDownFrm::finish(bool remove) {
    if (socket.State() != platform::SocketState::closed) {
        socket.Close();
    }
    answer_ = {};
    const std::u16string file = imageFile(CharacterName);
    if (remove && !file.empty() && platform::fileExists(file)) {
        platform::deleteFile(file); // what cannot be deleted stays
    }
    Unload();
}

void ImgDownFrm::tell(const std::u16string& text, const std::u16string& title) {
    platform::messageBox(text, platform::mb_critical, title);
}

void ImgDownFrm::tellNotFound() {
    tell(u"No image for " + CharacterName + u" was found for download!" + line_break + u"Please send an e-mail to " +
             platform::supportAddress() + u" and ask for an image of this character to be added.",
         u"Image not found!");
}

} // namespace murmelix
