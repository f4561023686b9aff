// Measures and writes the text of a balloon: letters in one font, and signs (emoji foremost), which it may lack, each
// in a font that has it, as one character whatever number of units it takes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "companions/agent/stage/windows/handles.h"

namespace agent::stage {

class Lettering {
  public:
    // Units of a line that are drawn at most.
    static constexpr std::size_t longest_line = 1024;
    // Signs of one text whose fonts are looked for, which takes a while each; further ones are drawn as unknown.
    static constexpr std::size_t most_signs = 64;

    // On the context that the text is drawn on: elsewhere it may be wider.
    explicit Lettering(HDC context) : context_(context) {}

    // In this font, or where it lacks letters of the text, in another that lacks the fewest.
    void choose(const std::u16string& text, const LOGFONTW& font);
    int lineHeight() const { return line_height_; }
    int letterWidth() const { return letter_width_; } // on average

    // How many units of the piece's beginning fit into the width.
    std::size_t fitting(std::u16string_view piece, int width);
    int widthOf(std::u16string_view line);
    // From the left end at its top, or from the right end.
    void write(int x, int y, std::u16string_view line, bool right_to_left);

  private:
    struct Sign {
        std::size_t font = 0; // 0: the chosen one, else one more than the index in `others_`
        WORD glyph = 0;
        int width = 0; // 0: nothing is drawn
    };
    struct Part {
        std::size_t begin, end;
        Sign sign;
        bool letters;
        bool right_to_left = false;
    };
    std::vector<Part> partsOf(std::u16string_view line);
    // From the left: letters parted where their direction changes.
    static std::vector<Part> inVisualOrder(std::u16string_view line, const std::vector<Part>& parts,
                                           bool right_to_left);
    int widthOf(std::u16string_view line, const Part& part);
    Sign signOf(std::u16string_view character);
    Sign unknown();
    Sign find(std::u16string_view character);
    HFONT font(std::size_t index);
    int writeLetters(int x, int y, std::u16string_view letters, bool right_to_left);

    HDC context_;
    LOGFONTW asked_{};
    gdi::Font chosen_;
    std::vector<gdi::Font> others_; // looked through for signs, made when they are needed
    std::map<std::u16string, Sign, std::less<>> signs_;
    int line_height_ = 1, letter_width_ = 1, ascent_ = 0;
    int unknown_ = -1; // width of the box of an unknown sign; negative while it is not asked for
};

} // namespace agent::stage
