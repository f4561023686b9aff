// A picture in memory that can be drawn on: 32 bits a pixel, top row first.
#pragma once

#include <cstdint>

#include "companions/agent/stage/windows/handles.h"

namespace agent::stage {

class Canvas {
  public:
    // One pixel, enough to measure text with. Throws std::system_error where Windows refuses, here and below.
    Canvas();
    // All black where the size changes.
    void resize(int width, int height);

    HDC context() const { return context_.get(); }
    std::uint32_t* pixels() const { return pixels_; }
    SIZE size() const { return size_; }

  private:
    gdi::Bitmap bitmap_;
    gdi::MemoryDc context_; // goes before the bitmap that is selected into it
    std::uint32_t* pixels_ = nullptr;
    SIZE size_{0, 0};
};

} // namespace agent::stage
