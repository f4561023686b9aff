// Where a window stood, kept for its user from one start of a program to the next.
#pragma once

#include <optional>
#include <string>

#include "platform/user_store.h"
#include "ui/types.h"

namespace murmelix::platform {

class KeptPlace {
  public:
    // Such as u"Software\\Program", u"Window": a REG_MULTI_SZ of left, top, width and height in twips.
    KeptPlace(std::u16string key, std::u16string name) : store_(std::move(key)), name_(std::move(name)) {}

    // Pixels at the screen's present resolution, of a place that may be off every screen now. Nothing where none is
    // known, or what is stored is no place that a window can have.
    std::optional<ui::Rect> last() const;
    void keep(const ui::Rect& pixels) const;

  private:
    UserStore store_;
    std::u16string name_;
};

} // namespace murmelix::platform
