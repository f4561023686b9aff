// Links in a text.
#pragma once

#include <string_view>
#include <vector>

#include "companions/messenger/reading/cleaning.h"

namespace messenger_client::reading {

// "scheme://" and "www." with what belongs to them, in order; without the signs behind them that end a sentence or a
// bracket.
std::vector<Range> linksIn(std::u16string_view text);
// Whether it leads into the web: by http, https or "www.".
bool isWebLink(std::u16string_view link);

} // namespace messenger_client::reading
