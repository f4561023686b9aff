#include "ui/combo_box.h"

#include "common/com/handles.h"
#include "ui/win32/drop_down.h"

namespace murmelix::ui {

using namespace win32;

namespace {

class ComboBoxWindow final : public DropDownWindow {
  public:
    ComboBoxWindow(Control& box, HWND parent, const std::u16string& text)
        : DropDownWindow(box, CBS_DROPDOWN | CBS_AUTOHSCROLL, parent, text) {
        answerFor(GetWindow(hwnd(), GW_CHILD));
    }

    void onCommand(UINT code) override {
        if (code == CBN_EDITCHANGE) {
            if (!being_set_) {
                static_cast<ComboBox&>(control()).onText(textOf(hwnd()));
            }
            return;
        }
        DropDownWindow::onCommand(code);
    }

    void setCaption(const std::u16string& caption) override {
        being_set_ = true;
        ControlWindow::setCaption(caption);
        being_set_ = false;
    }

  protected:
    void picked(int index) override { static_cast<ComboBox&>(control()).onPick(index); }

  private:
    bool being_set_ = false;
};

} // namespace

native::Handle native::createComboBox(Control& box, Handle parent, const std::u16string& text) {
    return make<ComboBoxWindow>(box, parent, text);
}

void native::setProposals(Handle box, const std::vector<std::u16string>& items, const std::u16string& text) {
    auto& window = at<ComboBoxWindow>(box);
    window.setItems(items);
    window.setCaption(text);
}

} // namespace murmelix::ui
