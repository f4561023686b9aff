#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ui/drop_down_list.h"

namespace agent::settings {

// A drop-down list of numbers: some that are usual, and always the one that it is.
class NumberList : public murmelix::ui::DropDownList {
  public:
    using Name = std::function<std::u16string(int)>;
    NumberList(murmelix::ui::Control& parent, std::vector<int> usual, Name name);
    // Raises nothing.
    void show(int number);
    std::function<void(int)> Picked; // by the user

  private:
    void picked() const;

    std::vector<int> usual_, listed_;
    Name name_;
    bool showing_ = false;
};

} // namespace agent::settings
