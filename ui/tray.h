// The shell's notification icon, by its ANSI record.
#pragma once

#include <array>
#include <cstdint>

#include "ui/picture_box.h"

namespace murmelix::ui {

struct TrayIconRecord {
    std::uint32_t size; // of the record as 32-bit programs have it; where handles are wider, the same fields are
    const PictureBox* owner;
    std::uint32_t id;
    std::uint32_t flags;
    std::uint32_t callback_message;
    Picture icon;
    std::array<char, 64> tip; // ANSI, with its NUL
};

enum class TrayMessage : std::uint32_t { add = 0, remove = 2 };

// Shell_NotifyIconA; a failure is silent.
void shellNotifyIcon(TrayMessage message, const TrayIconRecord& record);

} // namespace murmelix::ui
