#include "companions/agent/stage/windows/popup_menu.h"

namespace agent::stage {

std::optional<int> runPopupMenu(HWND owner, const std::vector<MenuEntry>& entries, int x, int y) {
    constexpr UINT_PTR first = 1; // 0 is what Windows calls no choice
    const MenuHandle menu(CreatePopupMenu());
    for (const MenuEntry& entry : entries) {
        const UINT kind = entry.is_line ? MF_SEPARATOR : MF_STRING;
        const auto* caption = reinterpret_cast<const wchar_t*>(entry.caption.c_str());
        AppendMenuW(menu.get(), entry.enabled ? kind : kind | MF_GRAYED, first + static_cast<UINT_PTR>(entry.id),
                    entry.is_line ? nullptr : caption);
    }
    const HWND before = GetForegroundWindow();
    // Without the foreground a menu would not close at a click elsewhere.
    SetForegroundWindow(owner);
    const BOOL chosen =
        TrackPopupMenu(menu.get(), TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON, x, y, 0, owner, nullptr);
    // Where the user has not gone elsewhere, the keyboard goes back to where it was.
    if (before && GetForegroundWindow() == owner) {
        SetForegroundWindow(before);
    }
    return chosen > 0 ? std::optional(static_cast<int>(chosen) - static_cast<int>(first)) : std::nullopt;
}

} // namespace agent::stage
