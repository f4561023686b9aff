#include "tests/fakes/ui/gif_decoder.h"

namespace murmelix::fakes {

GifDecoder& gifDecoder() {
    static GifDecoder decoder;
    return decoder;
}

} // namespace murmelix::fakes

namespace murmelix::ui {

std::optional<Image> native::decodedGif(const std::string& file) {
    fakes::GifDecoder& decoder = fakes::gifDecoder();
    if (decoder.answer) {
        decoder.files.push_back(file);
        return decoder.answer(file);
    }
    const auto number = [&](std::size_t at) {
        return static_cast<std::uint8_t>(file.at(at)) | static_cast<std::uint8_t>(file.at(at + 1)) << 8;
    };
    const int width = number(6), height = number(8);
    return Image{width, height,
                 std::vector<std::uint32_t>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                                            fakes::decoded_pixel)};
}

} // namespace murmelix::ui
