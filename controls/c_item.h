#pragma once

#include <string>

#include "ui/types.h"

namespace murmelix {

// One item of a list control.
struct CItem {
    std::u16string Caption;
    std::u16string Text; // what a drag out of the list carries
    std::u16string Key;
    ui::Picture Icon;
};

} // namespace murmelix
