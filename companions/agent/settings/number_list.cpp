#include "companions/agent/settings/number_list.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "companions/agent/settings/listener.h"

namespace agent::settings {

NumberList::NumberList(murmelix::ui::Control& parent, std::vector<int> usual, Name name)
    : DropDownList(parent), usual_(std::move(usual)), name_(std::move(name)) {
    Click = [this] { picked(); };
}

void NumberList::show(int number) {
    showing_ = true;
    if (auto numbers = withCurrent(usual_, number); numbers != listed_) {
        listed_ = std::move(numbers);
        std::vector<std::u16string> texts;
        std::ranges::transform(listed_, std::back_inserter(texts), name_);
        setItems(std::move(texts));
    }
    setListIndex(static_cast<int>(std::ranges::find(listed_, number) - listed_.begin()));
    showing_ = false;
}

void NumberList::picked() const {
    const int index = ListIndex();
    if (!showing_ && index >= 0) {
        murmelix::ui::raise(Picked, listed_.at(static_cast<std::size_t>(index)));
    }
}

int widthOf(const std::vector<const murmelix::ui::Label*>& names) {
    constexpr int more = 60;
    int widest = 0;
    for (const murmelix::ui::Label* name : names) {
        widest = std::max(widest, name->neededSize().width);
    }
    return widest + more;
}

} // namespace agent::settings
