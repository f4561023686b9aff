#include "characters/emoticons.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "common/text.h"

namespace murmelix {

namespace {

constexpr std::u16string_view list_1 =
    u"(S),(r),(y),(n),(b),(d),(x),(z),:-[,:[,(}),({),(l),(u),(m),(@),(&),(*),(~),(8),(e),(f),(w),(o),(k),(g),(^),(p),"
    u"(i),(c),(t),(#),(%),(?)";
constexpr std::u16string_view list_2 =
    u":-),:),:-D,:d,;-),;),:-O,:o,:-P,:p,(h),:-@,:@,:-S,:s,:$,:-$,:-(,:(,:'(,:-|,:|,(a),(6)";
constexpr std::u16string_view list_3 = u"(lol),(birthday),(boo),(run),(whistle),(haa),(ohh),(slap),(sniff),(sigh)";

constexpr std::u16string_view first_units = u"(:;";

bool isFirstUnit(char16_t unit) {
    return first_units.find(unit) != npos;
}

// The entries in their order, found by their first two units. No entry begins with another one, so that at most one
// stands at a position.
class EmoticonList {
  public:
    EmoticonList() {
        for (const std::u16string_view list : {list_1, list_2, list_3}) {
            shown_only_ends_ = entries_.size();
            for (std::size_t at = 0; at < list.size();) {
                const std::size_t end = std::min(list.find(u',', at), list.size());
                const std::u16string_view entry = list.substr(at, end - at);
                bucketOf(entry[0], entry[1]).push_back(static_cast<std::uint8_t>(entries_.size()));
                entries_.push_back(entry);
                at = end + 1;
            }
        }
    }

    std::size_t size() const { return entries_.size(); }
    std::size_t sizeWithoutList3() const { return shown_only_ends_; }
    std::u16string_view operator[](std::size_t index) const { return entries_[index]; }

    // Index of the entry that stands at a position of the text, among the first `count`.
    std::optional<std::size_t> entryAt(std::u16string_view text, std::size_t at, std::size_t count) const {
        if (at + 1 >= text.size() || !isFirstUnit(text[at]) || text[at + 1] >= second_units) {
            return std::nullopt;
        }
        for (const std::size_t index : buckets_[bucketIndex(text[at], text[at + 1])]) {
            const LetterCase letter_case = index == 0 ? LetterCase::matters : LetterCase::ignored;
            if (index < count && sameText(text.substr(at, entries_[index].size()), entries_[index], letter_case)) {
                return index;
            }
        }
        return std::nullopt;
    }

    // Entries are replaced in their order, so an earlier one that begins inside of this one takes its place.
    bool losesToAnother(std::u16string_view text, std::size_t at, std::size_t index, std::size_t count) const {
        for (std::size_t inside = at + 1; inside < at + entries_[index].size(); ++inside) {
            const auto other = entryAt(text, inside, count);
            if (other && *other < index) {
                return true;
            }
        }
        return false;
    }

  private:
    static constexpr std::size_t second_units = 128;

    static std::size_t bucketIndex(char16_t first, char16_t second) {
        return first_units.find(first) * second_units + toLower(second);
    }
    std::vector<std::uint8_t>& bucketOf(char16_t first, char16_t second) {
        return buckets_[bucketIndex(first, second)];
    }

    std::vector<std::u16string_view> entries_;
    std::size_t shown_only_ends_ = 0; // where list 3 begins
    std::array<std::vector<std::uint8_t>, first_units.size() * second_units> buckets_;
};

const EmoticonList& emoticonList() {
    static const EmoticonList list;
    return list;
}

} // namespace

std::u16string MarkEmoticons(std::u16string_view text, bool mark, std::u16string_view separator) {
    const EmoticonList& list = emoticonList();
    const std::size_t count = mark ? list.size() : list.sizeWithoutList3();
    std::u16string result;
    result.reserve(text.size() + 8 * separator.size());
    if (mark) {
        result.append(separator);
    }
    std::size_t copied = 0;
    for (std::size_t at = 0; at < text.size();) {
        const auto index = list.entryAt(text, at, count);
        if (!index || list.losesToAnother(text, at, *index, count)) {
            ++at;
            continue;
        }
        result.append(text, copied, at - copied);
        if (mark) {
            result.append(separator).append(u"Emot+").append(list[*index]).append(separator);
        } else {
            result.push_back(u' ');
        }
        copied = at += list[*index].size();
    }
    result.append(text, copied);
    if (mark) {
        result.append(separator);
    }
    return result;
}

} // namespace murmelix
