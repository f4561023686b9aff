#include "tests/forms/gallery.h"

#include "common/com/handles.h"
#include "tests/windows/program/window_test.h"
#include "tests/windows/support/process.h"

namespace murmelix::test {

namespace {

void makeFolder(const std::u16string& folder) {
    CreateDirectoryW(com::wide(folder), nullptr);
}

} // namespace

std::u16string galleryFolder() {
    static const std::u16string folder = [] {
        const std::u16string path = temporaryFile(u"gallery") + u"\\";
        for (const char16_t* name : {u"", u"msagent", u"msagent\\chars", u"CharPics", u"sounds"}) {
            makeFolder(path + name);
        }
        return path;
    }();
    return folder;
}

void putCharacter(const std::u16string& name) {
    write(galleryFolder() + u"msagent\\chars\\" + name + u".acs", {});
}

void putSoundScheme(const std::u16string& name) {
    makeFolder(galleryFolder() + u"sounds\\" + name);
}

void settle() {
    serveAll();
}

} // namespace murmelix::test
