// The emoticon lists, and their marking in a text.
#pragma once

#include <string>
#include <string_view>

namespace murmelix {

// `mark`: every emoticon becomes separator + "Emot+" + its spelling in the list + separator, and the text is framed by
// separators. Else every emoticon of the first two lists becomes a blank. The separator begins and ends with a
// character of no emoticon, a blank for instance.
std::u16string MarkEmoticons(std::u16string_view text, bool mark, std::u16string_view separator = {});

} // namespace murmelix
