// The ANSI code page of the imitated system.
#pragma once

#include <array>

namespace murmelix::fakes {

// UTF-16 unit of each byte of a single-byte code page.
using CodePage = std::array<char16_t, 256>;

const CodePage& windows1251();
const CodePage& windows1252();

void useCodePage(const CodePage& code_page); // until reset; 1252 at first

} // namespace murmelix::fakes
