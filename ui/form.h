// Windows.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ui/control.h"
#include "ui/menu.h"
#include "ui/surface.h"

namespace murmelix::ui {

// A window that can be minimised; one that can be resized and maximised as well; a dialogue box.
enum class FormStyle { window, sizable, dialog };

class Form : public Control {
  public:
    // `class_name`: by which other programs find the window; the toolkit's own where there is none.
    Form(Form* owner, const std::u16string& caption, FormStyle style, const char16_t* class_name = nullptr);
    ~Form() override;

    // Loads it first where it is not loaded: one that cannot be resized, and was given no place, in the middle.
    void Show();
    // The same, but whoever is at work stays so.
    void ShowInactive();
    void Hide();
    // Returns when it is hidden or unloaded; its owner takes no input meanwhile.
    void ShowModal();
    bool Loaded() const { return loaded_; }
    // Hides it; the next Show loads it again.
    void Unload();
    virtual void Form_Load() {}
    virtual void Form_Unload() {}
    // The close box (or its key) was used.
    virtual void onClose() { Unload(); }
    // Escape, without a cancel button; tells whether the key was of use.
    virtual bool onEscape() { return false; }
    // It has moved, or been moved, while it can be seen.
    virtual void onMove() {}
    // The session of the user ends.
    virtual void onSessionEnd() {}
    // It was activated; tells whether it has given the focus to one of its controls.
    virtual bool onActivate() { return false; }
    // Another window was activated.
    virtual void onDeactivate() {}
    // Gives the controls their places: at first by the form itself, then again whenever what they were measured with
    // has changed, or the form's size.
    virtual void layOut() {}
    void onSettingsChange();
    void onSize();
    bool sizable() const { return style_ == FormStyle::sizable; }

    // Width of the whole window, with its border; twips.
    void setWidth(int twips);
    int ScaleWidth() const; // of the inside
    int ScaleHeight() const;
    void setScale(int width, int height);
    // The least size of the inside that the user can give it; twips.
    void setLeastScale(int width, int height) { least_scale_ = {width, height}; }
    const Size& leastScale() const { return least_scale_; }
    // In the middle of its owner where that is shown, else of the screen.
    void Center();
    // Where it is: the whole window on the screen, in pixels.
    Rect Place() const;
    void setPlace(const Rect& pixels);
    void setIcon(const Picture& picture);
    enum class State { normal, minimized, maximized };
    State WindowState() const;
    void setWindowState(State state);
    // To the front, with the keyboard.
    void Activate();

    // At the mouse, or where it was asked for by the keyboard.
    void PopupMenu(Menu& menu);
    // Below a control.
    void PopupMenu(Menu& menu, const Control& below);
    const std::vector<Menu*>& menus() const { return menus_; }
    // A key that does something wherever the focus is. Those of menu items are heard by themselves.
    void addAccelerator(const Shortcut& shortcut, std::function<void()> action);

    Button* DefaultButton = nullptr; // Enter
    Button* CancelButton = nullptr;  // Escape
    // The user pressed a key or a mouse button in it, or chose from its menus.
    std::function<void()> UserActs;
    // Draws what lies behind its controls, the whole inside, instead of its colour alone; Redraw when that changes.
    std::function<void(Surface& surface)> Paint;
    void Redraw();
    // Another program sent data; the result is the answer to it.
    std::function<std::intptr_t(std::uintptr_t kind, std::string_view data)> DataReceived;

    // The keyboard. Each tells whether the key was of use.
    bool onKey(const Shortcut& key);
    bool onKey(Key key, bool shift) { return onKey({key, shift ? shift_key : 0}); }
    bool onMnemonicKey(char16_t letter);
    Control* focused() const { return focused_; }
    Accessible accessible() const override { return {style_ == FormStyle::dialog ? Role::dialog : Role::window, {}}; }
    // The button that Enter presses now; null where there is none.
    const Control* defaultControl() const { return marked_; }

  protected:
    bool loaded_ = false;

  private:
    friend class Control;
    friend class Menu;
    friend class MenuItem;
    friend class BarItem;
    std::vector<Control*> tabOrder() const;
    std::vector<Control*> reachableOrder() const;
    void load();
    void shown();
    void focusFirst();
    // What cannot be reached any more loses the focus to what comes after it.
    void keepFocus();
    // The button that Enter presses is drawn so.
    void markDefault();
    bool moveInGroup(bool back);
    bool onAccelerator(const Shortcut& key);

    FormStyle style_;
    Size least_scale_;
    bool laying_out_ = false;
    bool placed_ = false; // where its owner wants it
    Control* focused_ = nullptr;
    Control* marked_ = nullptr; // the button that is drawn as the default one
    std::vector<Menu*> menus_;
    int bar_entries_ = 0; // of the menu bar
    std::vector<std::pair<Shortcut, std::function<void()>>> accelerators_;
};

// Carried out by win32/form.cpp. Rectangles are pixels.
namespace native {
Handle createForm(Form& form, Handle owner, const std::u16string& caption, FormStyle style, const char16_t* class_name);
void setOuterWidth(Handle form, int pixels); // stays on the screen where it can
void setInnerSize(Handle form, int width, int height);
void center(Handle form); // on its owner, else on the screen
Rect innerBounds(Handle form);
Rect place(Handle form);
void setPlace(Handle form, const Rect& place);
void setIcon(Handle form, const Picture& picture);
void show(Handle form, bool active);
Form::State windowState(Handle form);
void setWindowState(Handle form, Form::State state);
void activate(Handle form);
// Serves this window and not its owner until it is hidden.
void runModal(const Form& form);
} // namespace native

} // namespace murmelix::ui
