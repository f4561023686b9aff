#include "ui/win32/drop_down.h"

#include "common/com/handles.h"

namespace murmelix::ui::win32 {

void DropDownWindow::setItems(const std::vector<std::u16string>& items) {
    COMBOBOXINFO parts{};
    parts.cbSize = sizeof parts;
    if (!GetComboBoxInfo(hwnd(), &parts)) {
        return;
    }
    SendMessageW(hwnd(), CB_RESETCONTENT, 0, 0);
    // Straight to its list: by the box, which considers each of them for showing, thousands take half a second.
    for (const std::u16string& item : items) {
        SendMessageW(parts.hwndList, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(com::wide(item)));
    }
    InvalidateRect(hwnd(), nullptr, TRUE);
}

} // namespace murmelix::ui::win32
