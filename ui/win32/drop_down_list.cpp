#include "ui/drop_down_list.h"

#include "common/com/handles.h"
#include "ui/win32/drop_down.h"

namespace murmelix::ui {

using namespace win32;

namespace {

class DropDownListWindow final : public DropDownWindow {
  public:
    DropDownListWindow(Control& list, HWND parent, const std::u16string& caption)
        : DropDownWindow(list, CBS_DROPDOWNLIST, parent, caption) {}

  protected:
    void picked(int index) override { static_cast<DropDownList&>(control()).onPick(index); }
    void chosen() override { raise(static_cast<DropDownList&>(control()).Chosen); }
};

} // namespace

native::Handle native::createDropDownList(Control& list, Handle parent, const std::u16string& caption) {
    return make<DropDownListWindow>(list, parent, caption);
}

void native::clearItems(Handle list) {
    SendMessageW(windowOf(list), CB_RESETCONTENT, 0, 0);
}

void native::addItem(Handle list, const std::u16string& text) {
    SendMessageW(windowOf(list), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(com::wide(text)));
}

void native::setItems(Handle list, const std::vector<std::u16string>& items) {
    at<DropDownListWindow>(list).setItems(items);
}

void native::insertItem(Handle list, int index, const std::u16string& text) {
    SendMessageW(windowOf(list), CB_INSERTSTRING, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(com::wide(text)));
}

void native::removeItem(Handle list, int index) {
    SendMessageW(windowOf(list), CB_DELETESTRING, static_cast<WPARAM>(index), 0);
}

void native::selectItem(Handle list, int index) {
    if (selectedItem(list) != index) {
        SendMessageW(windowOf(list), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    }
}

int native::selectedItem(Handle list) {
    return static_cast<int>(SendMessageW(windowOf(list), CB_GETCURSEL, 0, 0));
}

} // namespace murmelix::ui
