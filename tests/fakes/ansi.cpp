#include "tests/fakes/ansi.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <string>

#include "common/ansi.h"

namespace murmelix {

namespace fakes {

namespace {

CodePage withUpperHalf(std::size_t first, std::initializer_list<char16_t> units) {
    CodePage page{};
    for (std::size_t byte = 0; byte < page.size(); ++byte) {
        page[byte] = static_cast<char16_t>(byte);
    }
    std::copy(units.begin(), units.end(), page.begin() + static_cast<std::ptrdiff_t>(first));
    return page;
}

const CodePage* current = nullptr;

} // namespace

const CodePage& windows1252() {
    // The five bytes without a character keep their number, as the system maps them.
    static const CodePage page =
        withUpperHalf(0x80, {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
                             0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                             0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178});
    return page;
}

const CodePage& windows1251() {
    static const CodePage page = [] {
        CodePage cyrillic =
            withUpperHalf(0x80, {0x0402, 0x0403, 0x201A, 0x0453, 0x201E, 0x2026, 0x2020, 0x2021, 0x20AC, 0x2030, 0x0409,
                                 0x2039, 0x040A, 0x040C, 0x040B, 0x040F, 0x0452, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                                 0x2013, 0x2014, 0x98,   0x2122, 0x0459, 0x203A, 0x045A, 0x045C, 0x045B, 0x045F, 0xA0,
                                 0x040E, 0x045E, 0x0408, 0xA4,   0x0490, 0xA6,   0xA7,   0x0401, 0xA9,   0x0404, 0xAB,
                                 0xAC,   0xAD,   0xAE,   0x0407, 0xB0,   0xB1,   0x0406, 0x0456, 0x0491, 0xB5,   0xB6,
                                 0xB7,   0x0451, 0x2116, 0x0454, 0xBB,   0x0458, 0x0405, 0x0455, 0x0457});
        for (std::size_t byte = 0xC0; byte < cyrillic.size(); ++byte) {
            cyrillic[byte] = static_cast<char16_t>(0x0410 + (byte - 0xC0));
        }
        return cyrillic;
    }();
    return page;
}

void useCodePage(const CodePage& code_page) {
    current = &code_page;
}

} // namespace fakes

namespace {

const fakes::CodePage& codePage() {
    return fakes::current ? *fakes::current : fakes::windows1252();
}

} // namespace

std::string toAnsi(std::u16string_view text) {
    const fakes::CodePage& page = codePage();
    std::string bytes;
    for (const char16_t unit : text) {
        if (unit < 0x80) { // the half that all code pages share
            bytes.push_back(static_cast<char>(unit));
            continue;
        }
        const auto found = std::find(page.begin(), page.end(), unit);
        bytes.push_back(found == page.end() ? '?' : static_cast<char>(found - page.begin()));
    }
    return bytes;
}

std::u16string fromAnsi(std::string_view bytes) {
    std::u16string text;
    for (const char byte : bytes) {
        text.push_back(codePage()[static_cast<unsigned char>(byte)]);
    }
    return text;
}

} // namespace murmelix
