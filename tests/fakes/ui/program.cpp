#include "ui/program.h"

namespace murmelix::ui {

std::u16string programPath() {
    return u"C:\\Program\\Program.exe";
}

} // namespace murmelix::ui
