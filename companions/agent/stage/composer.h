// Composes what shows of a character: the images of its frame over one another, and its mouth.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "companions/agent/acs/character_file.h"
#include "companions/agent/acs/reader.h"
#include "companions/agent/stage/screens.h"
#include "companions/agent/stage/sequencer.h"

namespace agent::stage {

// Pixels 0xAARRGGBB, top row first, `width` to a row; an alpha of 0 (all zero) or 255.
struct Raster {
    int width = 0, height = 0;
    std::vector<std::uint32_t> pixels;
};

// A character file on the stage.
class FileRepertoire final : public Repertoire {
  public:
    explicit FileRepertoire(std::shared_ptr<const acs::CharacterFile> file) : file_(std::move(file)) {}
    std::shared_ptr<const acs::Animation> animation(std::u16string_view name) const override;
    std::vector<std::u16string> state(std::u16string_view name) const override;
    int width() const override { return file_->character().width; }
    int height() const override { return file_->character().height; }
    const acs::CharacterFile& file() const { return *file_; }

  private:
    std::shared_ptr<const acs::CharacterFile> file_;
};

// `raster` becomes the picture of the frame in the character's own size; transparent all over without a frame. Its
// memory is used again.
void compose(const acs::CharacterFile& file, const acs::Frame* frame, std::optional<acs::MouthShape> mouth,
             Raster& raster);

// The smallest area that holds all pixels in which pictures of one size differ; empty where they are the same.
Rect changedArea(const Raster& before, const Raster& after);

// Draws pictures in another size, smoothly, with a hard outline as before, for where pixels are half there some systems
// show them dark. What it works out for two sizes it keeps for the next picture.
class Scaler {
  public:
    // Writes into `width` × `height` pixels, which show an earlier picture, what an area of the picture changes in
    // them. It returns where that is.
    Rect scale(const Raster& raster, const Rect& changed, int width, int height, std::uint32_t* pixels);

  private:
    // The pixels of a row, or of a column, that one pixel of another size is made of, each with its share of 256.
    struct Blend {
        std::size_t first = 0;
        std::vector<std::uint32_t> shares;
        std::size_t end() const { return first + shares.size(); }
    };
    using Blends = std::vector<Blend>;

    static Blends blends(int from, int to);
    static std::pair<int, int> reached(const Blends& blends, int begin, int end);
    static std::uint32_t blended(const std::uint32_t* from, std::size_t step, const Blend& blend);

    int from_width_ = 0, from_height_ = 0;
    Blends columns_, rows_;
    std::vector<std::uint32_t> narrowed_;
};

} // namespace agent::stage
