// Composes what shows of a character: the images of its frame over one another, and its mouth.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "companions/agent/acs/character_file.h"
#include "companions/agent/acs/reader.h"
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

// Writes the same picture in another size, `width` × `height` pixels: smoothly, with a hard outline as before, for
// where pixels are half there some systems show them dark.
void scale(const Raster& raster, int width, int height, std::uint32_t* pixels);

} // namespace agent::stage
