#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ui/drop_down_list.h"
#include "ui/label.h"

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

// Width of a column of names, in twips: that of the widest, and a little more, as a text that breaks into lines may
// take a pixel more than it measures.
int widthOf(const std::vector<const murmelix::ui::Label*>& names);

} // namespace agent::settings
