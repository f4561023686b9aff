#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "ui/control.h"

namespace murmelix::ui {

// Text of several lines: edited as plain text, or shown in runs of different looks and not edited. Lines part at
// u"\r\n".
class RichTextBox : public Control {
  public:
    enum class Use { edit, show };
    // RichEdit20W, RichEdit20A (which keeps what the ANSI code page has), or one by the name InkEdit: what other
    // programs look for.
    enum class WindowClass { wide, ansi, ink };
    RichTextBox(Control& parent, Use use, WindowClass window_class = WindowClass::wide);
    bool takesFocus() const override { return true; }
    char16_t mnemonic() const override { return 0; }
    Accessible accessible() const override {
        return {use_ == Use::show ? Role::document : Role::edit, {}, false, use_ == Use::show};
    }
    // The end of it, where it is long.
    std::u16string accessibleValue() const override;
    Size neededSize(int = 0) const override { return {0, 3 * sizeFor(u"X").height}; }

    // What the user edits. Asked of the window system, for other programs put text in as well.
    std::u16string Text() const;
    void setText(const std::u16string& text);
    // Instead of what the user has selected, or where the text cursor is.
    void setSelText(const std::u16string& text);

    struct Looks {
        Colour colour = window_text;
        bool bold = false;
        // Of the lines that begin in this run; twips.
        int indent = 0, space_before = 0;
        bool link = false; // underlined, and clicked to go somewhere
        bool operator==(const Looks&) const = default;
    };
    // At the end of what is shown; what the user sees and has selected stays where it is, unless the end was in sight,
    // which is followed. A run that begins with a line end gives its looks to the line after it.
    void Append(std::u16string_view text, const Looks& looks);
    // Positions count every line end as one, and go as far as there is text. What the user sees and has selected stays.
    int Length() const;
    void Remove(int from, int length);
    // Of its colour, weight and link alone.
    void setLooks(int from, int length, const Looks& looks);
    // Selects the next place after the selection, or before it, where the text stands in any letter case, and shows it;
    // past an end it goes on at the other one. False where there is none.
    bool Find(const std::u16string& text, bool back = false);
    void ShowEnd();
    // A run that is a link was clicked; its text.
    std::function<void(const std::u16string& text)> LinkClick;

    // Several runs between them are drawn once.
    void BeginUpdate();
    void EndUpdate();

  protected:
    std::u16string nameShown() const override { return {}; }

  private:
    Use use_;
};

// Carried out by win32/rich_text_box.cpp.
namespace native {
Handle createRichEdit(Control& box, Handle parent, const std::u16string& text);
Handle createAnsiRichEdit(Control& box, Handle parent, const std::u16string& text);
Handle createInkEdit(Control& box, Handle parent, const std::u16string& text);
Handle createRichView(Control& box, Handle parent, const std::u16string& text);
Handle createAnsiRichView(Control& box, Handle parent, const std::u16string& text);
std::u16string richText(Handle box);
void replaceSelection(Handle box, const std::u16string& text);
void appendRich(Handle box, std::u16string_view text, const RichTextBox::Looks& looks);
int richLength(Handle box);
void removeRich(Handle box, int from, int length);
void setRichLooks(Handle box, int from, int length, const RichTextBox::Looks& looks);
bool findRich(Handle box, const std::u16string& text, bool back);
void showRichEnd(Handle box);
void beginUpdate(Handle box);
void endUpdate(Handle box);
} // namespace native

} // namespace murmelix::ui
