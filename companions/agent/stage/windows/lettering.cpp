#include "companions/agent/stage/windows/lettering.h"

#include <algorithm>
#include <array>
#include <cwchar>

#include <usp10.h>

#include "common/com/handles.h"

namespace agent::stage {
namespace {

using murmelix::com::wide;

using gdi::Font;
using gdi::Selected;

constexpr std::array<const wchar_t*, 10> letter_fonts{
    L"Tahoma",       L"Segoe UI",        L"Arial",  L"DejaVu Sans",   L"Arial Unicode MS",
    L"MS UI Gothic", L"Microsoft YaHei", L"SimSun", L"Malgun Gothic", L"Noto Sans CJK SC"};
constexpr std::array<const wchar_t*, 7> sign_fonts{L"Segoe UI Emoji",  L"Segoe UI Symbol", L"Noto Emoji",
                                                   L"DejaVu Sans",     L"Symbola",         L"Noto Sans Symbols2",
                                                   L"Arial Unicode MS"};
constexpr WORD unknown_glyph = 0;       // drawn as a box
constexpr char16_t neutral = u'\u25A0'; // has no direction of its own

int count(std::u16string_view text) {
    return static_cast<int>(std::min(text.size(), Lettering::longest_line));
}

// What says how the sign before it looks.
bool isSelector(char16_t unit) {
    return (unit >= 0xFE00 && unit <= 0xFE0F) || unit == 0x200D;
}

// How many units of the text the font of the context has no picture for; 0 where it cannot be told.
std::size_t missingGlyphs(HDC context, std::u16string_view text) {
    std::array<WORD, Lettering::longest_line> glyphs{};
    const DWORD found = text.empty() ? GDI_ERROR
                                     : GetGlyphIndicesW(context, wide(text.data()), count(text), glyphs.data(),
                                                        GGI_MARK_NONEXISTING_GLYPHS);
    if (found == GDI_ERROR) {
        return 0;
    }
    std::size_t missing = 0;
    for (std::size_t i = 0; i < found; ++i) {
        const bool half = text[i] >= 0xD800 && text[i] < 0xE000; // is looked for by itself
        const bool seen = text[i] > u' ' && !isSelector(text[i]);
        missing += glyphs[i] == 0xFFFF && seen && !half ? 1 : 0;
    }
    return missing;
}

// The glyph of a character of two units in the font of the context; 0 where it has none.
WORD glyphOfPair(HDC context, std::u16string_view pair) {
    std::array<SCRIPT_ITEM, 4> items{};
    int found = 0;
    if (FAILED(ScriptItemize(wide(pair.data()), 2, static_cast<int>(items.size()) - 1, nullptr, nullptr, items.data(),
                             &found)) ||
        found == 0) {
        return unknown_glyph;
    }
    SCRIPT_CACHE cache = nullptr;
    std::array<WORD, 8> glyphs{}, clusters{};
    std::array<SCRIPT_VISATTR, 8> attributes{};
    int glyph_count = 0;
    const auto shape = [&] {
        return ScriptShape(context, &cache, wide(pair.data()), 2, static_cast<int>(glyphs.size()), &items[0].a,
                           glyphs.data(), clusters.data(), attributes.data(), &glyph_count);
    };
    HRESULT shaped = shape();
    if (shaped == USP_E_SCRIPT_NOT_IN_FONT) {
        items[0].a.eScript = SCRIPT_UNDEFINED;
        shaped = shape();
    }
    SCRIPT_FONTPROPERTIES properties{};
    properties.cBytes = sizeof properties;
    const bool known = SUCCEEDED(shaped) && glyph_count > 0 &&
                       SUCCEEDED(ScriptGetFontProperties(context, &cache, &properties)) &&
                       glyphs[0] != properties.wgDefault && glyphs[0] != properties.wgInvalid;
    ScriptFreeCache(&cache);
    return known ? glyphs[0] : unknown_glyph;
}

bool isPair(std::u16string_view text, std::size_t at) {
    return at + 1 < text.size() && (text[at] & 0xFC00) == 0xD800 && (text[at + 1] & 0xFC00) == 0xDC00;
}

// Arrows, technical and other symbols, among them emoji of one unit.
bool isSymbol(char16_t unit) {
    return unit >= 0x2190 && unit <= 0x2BFF;
}

// Whether letters stand one after another from the left, each by itself.
bool isPlain(std::u16string_view text) {
    return std::ranges::all_of(text, [](char16_t unit) { return unit < 0x0300 || (unit >= 0x3000 && unit < 0xD800); });
}

// How deep each unit of a line is embedded: odd numbers are written from the right.
std::vector<BYTE> levelsOf(std::u16string_view line, bool right_to_left) {
    SCRIPT_CONTROL control{};
    SCRIPT_STATE state{};
    state.uBidiLevel = right_to_left ? 1 : 0;
    std::vector<SCRIPT_ITEM> items(line.size() + 2);
    int found = 0;
    std::vector<BYTE> levels(line.size(), static_cast<BYTE>(state.uBidiLevel));
    if (line.empty() || FAILED(ScriptItemize(wide(line.data()), count(line), static_cast<int>(items.size()) - 1,
                                             &control, &state, items.data(), &found))) {
        return levels;
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(found); ++i) {
        std::fill(levels.begin() + items[i].iCharPos, levels.begin() + items[i + 1].iCharPos,
                  static_cast<BYTE>(items[i].a.s.uBidiLevel));
    }
    return levels;
}

// Those of the fonts for signs that the system has.
const std::vector<const wchar_t*>& signFonts(HDC context) {
    static const std::vector<const wchar_t*> there = [context] {
        std::vector<const wchar_t*> found;
        for (const wchar_t* name : sign_fonts) {
            LOGFONTW font{};
            font.lfCharSet = DEFAULT_CHARSET;
            std::wcscpy(font.lfFaceName, name);
            const Font tried(CreateFontIndirectW(&font));
            const Selected selected(context, tried.get());
            std::array<wchar_t, LF_FACESIZE> face{};
            GetTextFaceW(context, static_cast<int>(face.size()), face.data());
            if (std::wcscmp(face.data(), name) == 0) {
                found.push_back(name);
            }
        }
        return found;
    }();
    return there;
}

} // namespace

void Lettering::choose(const std::u16string& text, const LOGFONTW& font) {
    asked_ = font;
    signs_.clear();
    others_.clear();
    unknown_ = -1;
    Font& best = chosen_;
    best = Font(CreateFontIndirectW(&font));
    const auto missingIn = [&](const Font& tried) {
        const Selected selected(context_, tried.get());
        return missingGlyphs(context_, text);
    };
    std::size_t fewest = missingIn(best);
    LOGFONTW other = font;
    for (std::size_t i = 0; i < letter_fonts.size() && fewest > 0; ++i) {
        std::wcscpy(other.lfFaceName, letter_fonts[i]);
        Font tried(CreateFontIndirectW(&other));
        const std::size_t missing = missingIn(tried);
        if (missing < fewest) {
            fewest = missing;
            best = std::move(tried);
        }
    }
    const Selected selected(context_, best.get());
    TEXTMETRICW metrics{};
    GetTextMetricsW(context_, &metrics);
    line_height_ = std::max(1, static_cast<int>(metrics.tmHeight + metrics.tmExternalLeading));
    letter_width_ = std::max(1, static_cast<int>(metrics.tmAveCharWidth));
    ascent_ = static_cast<int>(metrics.tmAscent);
}

HFONT Lettering::font(std::size_t index) {
    if (index == 0) {
        return chosen_.get();
    }
    for (std::size_t i = others_.size(); i < index; ++i) {
        LOGFONTW font = asked_;
        font.lfCharSet = DEFAULT_CHARSET;
        std::wcscpy(font.lfFaceName, signFonts(context_)[i]);
        others_.emplace_back(CreateFontIndirectW(&font));
    }
    return others_[index - 1].get();
}

Lettering::Sign Lettering::find(std::u16string_view character) {
    const auto widthOfGlyph = [&](WORD glyph) {
        SIZE size{};
        GetTextExtentPointI(context_, &glyph, 1, &size);
        return static_cast<int>(size.cx);
    };
    for (std::size_t i = 0; i <= signFonts(context_).size(); ++i) {
        const Selected selected(context_, font(i));
        WORD glyph = unknown_glyph;
        if (character.size() == 2) {
            glyph = glyphOfPair(context_, character);
        } else if (GetGlyphIndicesW(context_, wide(character.data()), 1, &glyph, GGI_MARK_NONEXISTING_GLYPHS) != 1 ||
                   glyph == 0xFFFF) {
            glyph = unknown_glyph;
        }
        if (glyph != unknown_glyph) {
            return {i, glyph, widthOfGlyph(glyph)};
        }
    }
    return unknown();
}

Lettering::Sign Lettering::unknown() {
    if (unknown_ < 0) {
        const Selected selected(context_, font(0));
        WORD glyph = unknown_glyph;
        SIZE size{};
        GetTextExtentPointI(context_, &glyph, 1, &size);
        unknown_ = static_cast<int>(size.cx);
    }
    return {0, unknown_glyph, unknown_};
}

Lettering::Sign Lettering::signOf(std::u16string_view character) {
    if (const auto found = signs_.find(character); found != signs_.end()) {
        return found->second;
    }
    return signs_.size() < most_signs ? signs_.emplace(character, find(character)).first->second : unknown();
}

std::vector<Lettering::Part> Lettering::partsOf(std::u16string_view line) {
    line = line.substr(0, longest_line);
    std::vector<Part> parts;
    for (std::size_t at = 0; at < line.size();) {
        const bool after_sign = !parts.empty() && !parts.back().letters;
        if (isPair(line, at) || isSymbol(line[at])) {
            const std::size_t end = at + (isSymbol(line[at]) ? 1 : 2);
            parts.push_back({at, end, signOf(line.substr(at, end - at)), false});
            at = end;
        } else if (after_sign && isSelector(line[at])) {
            parts.push_back({at, at + 1, {}, false});
            ++at;
        } else {
            if (parts.empty() || after_sign) {
                parts.push_back({at, at, {}, true});
            }
            parts.back().end = ++at;
        }
    }
    return parts;
}

std::size_t Lettering::fitting(std::u16string_view piece, int width) {
    // As much as a line usually holds is measured first: most pieces go on far beyond its end.
    const auto usual = static_cast<std::size_t>(std::max(1, 2 * width / letter_width_)) + 16;
    if (usual < piece.size()) {
        const std::size_t fits = fitting(piece.substr(0, usual), width);
        if (fits < usual) {
            return fits;
        }
    }
    const Selected selected(context_, font(0));
    std::size_t fits = 0;
    for (const Part& part : partsOf(piece)) {
        if (part.letters) {
            int fitting = 0;
            SIZE size{};
            const auto length = static_cast<int>(part.end - part.begin);
            GetTextExtentExPointW(context_, wide(piece.data() + part.begin), length, std::max(0, width), &fitting,
                                  nullptr, &size);
            fits = part.begin + static_cast<std::size_t>(std::max(0, fitting));
            width -= static_cast<int>(size.cx);
            if (fitting < length) {
                break;
            }
        } else {
            width -= part.sign.width;
            if (width < 0) {
                break;
            }
            fits = part.end;
        }
    }
    return fits;
}

std::vector<Lettering::Part> Lettering::inVisualOrder(std::u16string_view line, const std::vector<Part>& parts,
                                                      bool right_to_left) {
    // A sign goes with what is around it, as a whole.
    std::u16string letters(line);
    for (const Part& part : parts) {
        if (!part.letters) {
            std::fill(letters.begin() + static_cast<std::ptrdiff_t>(part.begin),
                      letters.begin() + static_cast<std::ptrdiff_t>(part.end), neutral);
        }
    }
    const std::vector<BYTE> levels = levelsOf(letters, right_to_left);
    std::vector<Part> split;
    std::vector<BYTE> levels_of_parts;
    for (const Part& part : parts) {
        for (std::size_t at = part.begin; at < part.end; ++at) {
            if (at == part.begin || (part.letters && levels[at] != levels[at - 1])) {
                split.push_back({at, at, part.sign, part.letters, levels[at] % 2 != 0});
                levels_of_parts.push_back(levels[at]);
            }
            split.back().end = at + 1;
        }
    }
    std::vector<int> order(split.size());
    if (split.empty() ||
        FAILED(ScriptLayout(static_cast<int>(split.size()), levels_of_parts.data(), order.data(), nullptr))) {
        return split;
    }
    std::vector<Part> visual;
    for (const int at : order) {
        visual.push_back(split.at(static_cast<std::size_t>(at)));
    }
    return visual;
}

int Lettering::widthOf(std::u16string_view line, const Part& part) {
    if (!part.letters) {
        return part.sign.width;
    }
    SIZE size{};
    GetTextExtentPoint32W(context_, wide(line.data() + part.begin), static_cast<int>(part.end - part.begin), &size);
    return static_cast<int>(size.cx);
}

int Lettering::widthOf(std::u16string_view line) {
    const Selected selected(context_, font(0));
    int width = 0;
    for (const Part& part : partsOf(line)) {
        width += widthOf(line, part);
    }
    return width;
}

// Returns where the next ones stand. Plain letters are given the steps they were measured by: some fonts draw wider
// than they measure.
int Lettering::writeLetters(int x, int y, std::u16string_view letters, bool right_to_left) {
    std::array<INT, longest_line> reached{};
    SIZE size{};
    const int length = count(letters);
    GetTextExtentExPointW(context_, wide(letters.data()), length, 0, nullptr, reached.data(), &size);
    for (std::size_t i = static_cast<std::size_t>(length); i-- > 1;) {
        reached[i] -= reached[i - 1];
    }
    const bool plain = !right_to_left && isPlain(letters);
    ExtTextOutW(context_, x, y, right_to_left ? ETO_RTLREADING : 0, nullptr, wide(letters.data()),
                static_cast<UINT>(length), plain ? reached.data() : nullptr);
    return x + static_cast<int>(size.cx);
}

void Lettering::write(int x, int y, std::u16string_view line, bool right_to_left) {
    const Selected selected(context_, font(0));
    line = line.substr(0, longest_line);
    std::vector<Part> parts = partsOf(line);
    if (right_to_left || !isPlain(line)) {
        parts = inVisualOrder(line, parts, right_to_left);
    }
    if (right_to_left) {
        for (const Part& part : parts) {
            x -= widthOf(line, part);
        }
    }
    SetTextAlign(context_, TA_LEFT | TA_BASELINE);
    y += ascent_;
    for (const Part& part : parts) {
        if (part.letters) {
            x = writeLetters(x, y, line.substr(part.begin, part.end - part.begin), part.right_to_left);
        } else if (part.sign.width > 0) {
            const Selected of_sign(context_, font(part.sign.font));
            const auto glyph = static_cast<wchar_t>(part.sign.glyph);
            ExtTextOutW(context_, x, y, ETO_GLYPH_INDEX, nullptr, &glyph, 1, nullptr);
            x += part.sign.width;
        }
    }
}

} // namespace agent::stage
