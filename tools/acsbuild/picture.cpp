#include "tools/acsbuild/picture.h"

#include <png.h>

#include <algorithm>
#include <bit>
#include <stdexcept>
#include <string>

namespace acsbuild {

namespace {

constexpr int largest_side = 4096;

// The library's reading state, freed on every way out.
class PngReader {
  public:
    PngReader() { image_.version = PNG_IMAGE_VERSION; }
    ~PngReader() { png_image_free(&image_); }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;
    png_image& image() { return image_; }

  private:
    png_image image_{};
};

} // namespace

Picture readPicture(const std::filesystem::path& file) {
    PngReader reader;
    png_image& image = reader.image();
    const auto refuse = [&](const std::string& why) { throw std::runtime_error(file.string() + ": " + why); };
    if (!png_image_begin_read_from_file(&image, file.c_str())) {
        refuse(image.message);
    }
    if (image.width > largest_side || image.height > largest_side) {
        refuse("larger than 4096 x 4096 pixels");
    }
    static_assert(std::endian::native == std::endian::little, "BGRA bytes are 0xAARRGGBB");
    image.format = PNG_FORMAT_BGRA;
    Picture picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    picture.pixels.resize(static_cast<std::size_t>(image.width) * image.height);
    if (!png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr)) {
        refuse(image.message);
    }
    return picture;
}

Picture cut(const Picture& picture, const Rect& part) {
    Picture result{part.width, part.height, {}};
    result.pixels.reserve(static_cast<std::size_t>(part.width) * static_cast<std::size_t>(part.height));
    for (int y = part.y; y < part.y + part.height; ++y) {
        for (int x = part.x; x < part.x + part.width; ++x) {
            result.pixels.push_back(picture.at(x, y));
        }
    }
    return result;
}

std::optional<Rect> opaquePart(const Picture& picture) {
    int left = picture.width, top = picture.height, right = -1, bottom = -1;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (!opaque(picture.at(x, y))) {
                continue;
            }
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = y;
        }
    }
    if (right < 0) {
        return std::nullopt;
    }
    return Rect{left, top, right - left + 1, bottom - top + 1};
}

} // namespace acsbuild
