// Any text as the address of a file.
#include <cstddef>
#include <cstdint>

#include "common/text.h"
#include "companions/agent/stage/file_address.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using agent::stage::pathOf;
    const std::u16string text = murmelix::fromUtf8({reinterpret_cast<const char*>(data), size});
    for (const std::u16string& address : {text, u"file:" + text, u"file:///" + text, u"file://localhost" + text}) {
        const auto path = pathOf(address);
        const bool plain =
            !murmelix::sameText(std::u16string_view(address).substr(0, 5), u"file:", murmelix::LetterCase::ignored);
        if (plain) {
            require(path == address, "what is no address is a path");
            continue;
        }
        if (path) {
            require(path->find(u'\0') == murmelix::npos && path->find(u'/') == murmelix::npos, "a path can be one");
            require(path->size() <= address.size(), "a path is no longer than its address");
        }
    }
    return 0;
}
