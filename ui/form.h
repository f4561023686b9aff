// Windows with their menus.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/control.h"

namespace murmelix::ui {

class Form;
class MenuItem;

// One menu of a form's menu bar.
class Menu {
  public:
    Menu(Form& form, const std::u16string& caption);
    Menu(const Menu&) = delete;
    Menu& operator=(const Menu&) = delete;

    const std::u16string& Caption() const { return caption_; }
    void setCaption(const std::u16string& caption);
    bool Enabled() const { return enabled_; }
    void setEnabled(bool enabled);

    Form& form() const { return form_; }
    int position() const { return position_; } // from 0, in the menu bar
    const std::vector<MenuItem*>& items() const { return items_; }

  private:
    friend class MenuItem;
    Form& form_;
    std::u16string caption_;
    bool enabled_ = true;
    int position_;
    std::vector<MenuItem*> items_;
};

// An item; with the caption "-" a separator.
class MenuItem {
  public:
    MenuItem(Menu& menu, const std::u16string& caption);
    MenuItem(const MenuItem&) = delete;
    MenuItem& operator=(const MenuItem&) = delete;

    const std::u16string& Caption() const { return caption_; }
    void setCaption(const std::u16string& caption);
    bool Enabled() const { return enabled_; }
    void setEnabled(bool enabled);
    bool separator() const { return caption_ == u"-"; }
    // As the checked and the unchecked bitmap of the item.
    void setPicture(const Picture& picture);
    const Picture& picture() const { return picture_; }

    Menu& menu() const { return menu_; }
    int position() const { return position_; } // from 0, in its menu
    std::function<void()> Click;
    void onClick();

  private:
    Menu& menu_;
    std::u16string caption_;
    bool enabled_ = true;
    int position_;
    Picture picture_;
};

enum class FormStyle { window, dialog };

class Form : public Control {
  public:
    Form(Form* owner, const std::u16string& caption, FormStyle style);
    ~Form() override;

    // Loads it first where it is not loaded.
    void Show();
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
    // Gives the controls their places: at first by the form itself, then again whenever what they were measured with
    // has changed.
    virtual void layOut() {}
    void onSettingsChange();

    // Width of the whole window, with its border; twips.
    void setWidth(int twips);
    int ScaleWidth() const; // of the inside
    int ScaleHeight() const;
    void setScale(int width, int height);
    // In the middle of its owner where that is shown, else of the screen.
    void Center();
    void setIcon(const Picture& picture);

    // At the mouse.
    void PopupMenu(Menu& menu);
    const std::vector<Menu*>& menus() const { return menus_; }

    Button* DefaultButton = nullptr; // Enter
    Button* CancelButton = nullptr;  // Escape

    // The keyboard. Each tells whether the key was of use.
    bool onKey(Key key, bool shift);
    bool onMnemonicKey(char16_t letter);
    Control* focused() const { return focused_; }

  protected:
    bool loaded_ = false;

  private:
    friend class Control;
    friend class Menu;
    std::vector<Control*> tabOrder() const;
    std::vector<Control*> reachableOrder() const;
    void focusFirst();
    // What cannot be reached any more loses the focus to what comes after it.
    void keepFocus();
    // The button that Enter presses is drawn so.
    void markDefault();
    bool moveInGroup(bool back);

    Control* focused_ = nullptr;
    Control* marked_ = nullptr; // the button that is drawn as the default one
    std::vector<Menu*> menus_;
};

} // namespace murmelix::ui
