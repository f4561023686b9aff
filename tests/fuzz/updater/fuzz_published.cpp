// Any bytes as version.txt.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "common/text.h"
#include "companions/updater/published.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool is16Bit(int number) {
    return number >= 0 && number <= 65535;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace updater;
    const auto published = readPublished({reinterpret_cast<const char*>(data), size});
    if (!published) {
        return 0;
    }
    require(size <= most_bytes, "the file is not too long");
    const auto& [version, news] = *published;
    require(is16Bit(version.major) && is16Bit(version.minor) && is16Bit(version.revision), "numbers have 16 bits");
    require(static_cast<std::size_t>(std::ranges::count(news, u'\n')) < most_rows,
            "what is shown has not too many rows");
    for (std::size_t at = 0, end = 0; end != news.size(); at = end + 2) {
        end = std::min(news.find(u"\r\n", at), news.size());
        require(end - at <= longest_row + 1, "nor is one of them too long");
    }
    const std::u16string line = murmelix::replaceAll(news, u"\r\n", u"");
    require(std::ranges::none_of(line, [](char16_t unit) { return unit < u' ' || unit == 0x202E; }), "all of it shows");
    require(!news.starts_with(u"\r\n") && !news.ends_with(u"\r\n"), "it has no empty lines at its ends");
    require(murmelix::fromUtf8(murmelix::toUtf8(news)) == news, "it has whole characters");
    const auto again = readPublished(murmelix::toUtf8(versionText(version) + u"\n" + news));
    require(again && again->version == version, "what was read can be written and read again");
    require(news.ends_with(u'…') || again->news == news, "with the same news");
    return 0;
}
