#pragma once

#include "ui/form.h"
#include "ui/win32/window.h"

namespace murmelix::ui::win32 {

class FormWindow final : public ControlWindow {
  public:
    FormWindow(Form& form, HWND owner, const std::u16string& caption, FormStyle style, const wchar_t* class_name);
    ~FormWindow() override;

    Form& form() const { return static_cast<Form&>(control()); }
    std::optional<LRESULT> onMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
    void restyle() override;

    void setIcon(const Picture& picture);
    // Made when the first of its controls has one.
    HWND tips();
    // Takes the input from its owner while it is modal.
    void disableOwner();
    void beforeHiding();

  private:
    bool onSystemChange(UINT message, WPARAM wparam, LPARAM lparam);
    void limitSize(MINMAXINFO& limits) const;

    Clicks clicks_;
    Surface painted_; // what lies behind the controls
    Picture icon_;
    Icon small_icon_, large_icon_;
    HWND tips_ = nullptr;
    HWND disabled_owner_ = nullptr;
};

} // namespace murmelix::ui::win32
