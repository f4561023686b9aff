// GIFs of any content, and the sizes that a window shows them in.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "ui/image.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace murmelix::ui;
    const auto image = decodeGif({reinterpret_cast<const char*>(data), size});
    if (!image) {
        return 0;
    }
    if (image->pixels.size() > most_gif_pixels ||
        image->pixels.size() != static_cast<std::size_t>(image->width) * static_cast<std::size_t>(image->height)) {
        std::abort();
    }
    const Size shown = fitted(*image, {40, 30});
    if (shown.width < 1 || shown.width > 40 || shown.height < 1 || shown.height > 30) {
        std::abort();
    }
    if (image->pixels.size() < 10'000) { // many pictures, rather than large ones
        resized(*image, shown.width, shown.height);
    }
    return 0;
}
