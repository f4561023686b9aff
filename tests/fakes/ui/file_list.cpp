#include "ui/file_list.h"

#include "tests/fakes/ui/windows.h"

namespace murmelix::ui {

std::vector<std::u16string> native::files(const std::u16string& directory, const std::u16string&) {
    return fakes::screen().files[directory];
}

} // namespace murmelix::ui
