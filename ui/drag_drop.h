// Text that is dragged from a picture box to a control, of this program or of another one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace murmelix::ui {

// What letting go of the data does to it; those that are allowed are added up.
using DropEffect = std::int32_t;
inline constexpr DropEffect drop_none = 0, drop_copy = 1, drop_move = 2;

// Whether a control lets its owner answer to drops.
enum class DropMode { none, manual };

// Of a drag over a control.
enum class DragState { enter, leave, over };

class DataObject {
  public:
    void Clear() { text_.reset(); }
    void SetText(const std::u16string& text) { text_ = text; }
    bool HasText() const { return text_.has_value(); }
    // Empty where there is none.
    std::u16string Text() const { return text_.value_or(std::u16string()); }

  private:
    std::optional<std::u16string> text_;
};

} // namespace murmelix::ui
