#include "ui/tab_pages.h"

#include "ui/form.h"
#include "ui/native.h"
#include "ui/screen.h"

namespace murmelix::ui {

TabPages::TabPages(Control& parent) : Control(parent, native::createTabPages, u"") {
    for (const Shortcut& next : {Shortcut{Key::tab, control_key}, {Key::page_down, control_key}}) {
        form().addAccelerator(next, [this] { turn(1); });
    }
    for (const Shortcut& back : {Shortcut{Key::tab, control_key | shift_key}, {Key::page_up, control_key}}) {
        form().addAccelerator(back, [this] { turn(-1); });
    }
}

void TabPages::add(TabPage& page) {
    pages_.push_back(&page);
    native::addTab(handle_, page.Caption());
    page.setBackColor(native::pageColour());
    page.setVisible(false);
    if (selected_ < 0) {
        setSelected(0);
    }
}

void TabPages::setSelected(int index) {
    if (index == selected_ || index < 0 || static_cast<std::size_t>(index) >= pages_.size()) {
        return;
    }
    const int before = selected_;
    selected_ = index;
    native::selectTab(handle_, index);
    pages_[static_cast<std::size_t>(index)]->setVisible(true);
    if (before >= 0) {
        pages_[static_cast<std::size_t>(before)]->setVisible(false);
    }
    raise(Click);
}

void TabPages::turn(int by) {
    const int count = static_cast<int>(pages_.size());
    if (count > 0 && reachable()) {
        setSelected((selected_ + by + count) % count);
    }
}

Size TabPages::rim() const {
    const Rect page = native::pageArea(handle_);
    return {Width() - toTwips(page.width), Height() - toTwips(page.height)};
}

void TabPages::resized() {
    const Rect page = native::pageArea(handle_);
    const Rect twips{toTwips(page.left), toTwips(page.top), toTwips(page.width), toTwips(page.height)};
    for (TabPage* each : pages_) {
        each->Move(twips);
    }
}

std::u16string TabPages::partName(int index) const {
    return pages_.at(static_cast<std::size_t>(index))->AccessibleName();
}

Rect TabPages::partPlace(int index) const {
    return native::tabPlace(handle_, index);
}

TabPage::TabPage(TabPages& pages, const std::u16string& caption) : Frame(pages, caption, Border::none) {
    pages.add(*this);
}

} // namespace murmelix::ui
