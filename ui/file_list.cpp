#include "ui/file_list.h"

namespace murmelix::ui {

void FileList::setPath(const std::u16string& path) {
    path_ = path;
    Refresh();
}

void FileList::Refresh() {
    names_ = native::files(path_, pattern_);
    index_ = -1;
}

void FileList::setListIndex(int index) {
    index_ = index >= 0 && index < ListCount() ? index : -1;
}

} // namespace murmelix::ui
