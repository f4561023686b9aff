// What the windows of conversations have in common. Their first children, in order, are the history and the input (see
// the switch /edits) and the button "&Send": other programs type by WM_SETTEXT to the input and VK_SPACE to the button.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "companions/messenger/chat/client.h"
#include "companions/messenger/chat/switches.h"
#include "companions/messenger/client/looks.h"
#include "ui/button.h"
#include "ui/form.h"
#include "ui/layout.h"
#include "ui/rich_text_box.h"

namespace messenger_client {

inline constexpr char16_t conversation_class[] = u"MessengerClientConversation";

// Sides that were asked for; pixels of the screen.
struct WantedPlace {
    std::optional<int> left, top, width, height;
};
// Where the window that is opened when there are `others` stands, in pixels, beside the one before it: where the user
// has left one last, else beside the main window, below what a character and its balloon take above it where the screen
// has so much. `last` is wholly in the work area.
ui::Rect placeOfConversation(const ui::Rect& work_area, std::size_t others, const WantedPlace& wanted,
                             const std::optional<ui::Rect>& last);

// Parts over-long lines, at blanks where it can: the time that the history control takes for a line grows with the
// square of its length.
class LineBreaker {
  public:
    // The next text, which may go on in the line of the one before.
    std::u16string broken(std::u16string_view text);

  private:
    std::size_t units_ = 0; // of the last line
};

class ConversationForm : public ui::Form {
  public:
    const ConversationPtr& conversation() const { return conversation_; }
    // Keeps its place for the next one, where the user has given it another.
    void rememberPlace() const;
    // Follows a change of the client.
    virtual void changed(const Change& change) = 0;

    ui::RichTextBox History;
    ui::RichTextBox Input;
    ui::Button Send{*this, u"&Send"};

    void onClose() override;
    bool onEscape() override;

  protected:
    // New text is shown this much later, in milliseconds: drawing it takes long, and who listens to the client asks for
    // the text at once. What is left over follows so soon, when other messages had their turn.
    static constexpr int show_delay = 40, show_next = 1;
    // So much text at once goes to the history control; UTF-16 units.
    static constexpr std::size_t units_at_once = 8192;

    ConversationForm(Client& client, ConversationPtr conversation, const EditClasses& edits);
    // To be called when all controls are there: they get their order, and the window its place.
    void settle(const ui::Rect& place);
    Client& client() const { return client_; }
    static ui::Rect pixelsOf(const ui::Rect& twips);
    // Around a text, in layout().
    static ui::Layout framed(ui::Control& text, int height);
    // Draws the frames of such texts that are visible, in a surface of the form.
    static void drawFrame(ui::Surface& surface, const ui::Control& text, bool padded = true);
    // The band at the top: what stands in it, and its height for the form's font; twips.
    void drawHeading(ui::Surface& surface, std::u16string_view title, std::u16string_view below) const;
    int headingHeight() const;

    // What stands in the input is to be said.
    virtual void Send_Click() = 0;

  private:
    bool Input_KeyPress(const ui::Shortcut& key);

    Client& client_;
    ConversationPtr conversation_;
    ui::Rect first_place_; // pixels
};

} // namespace messenger_client
