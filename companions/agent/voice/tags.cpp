#include "companions/agent/voice/tags.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/text.h"

namespace agent::voice {

namespace {

enum class Name { chr, ctx, emp, lst, map, mrk, pau, pit, rst, spd, vct, vol };
enum class Values { none, word, number, two_quotes };

struct Form {
    std::u16string_view text;
    Name name;
    Values values;
    std::int64_t least = 0, most = 0;
};

constexpr std::array<Form, 12> forms{{
    {u"Chr", Name::chr, Values::word},
    {u"Ctx", Name::ctx, Values::word},
    {u"Emp", Name::emp, Values::none},
    {u"Lst", Name::lst, Values::none},
    {u"Map", Name::map, Values::two_quotes},
    {u"Mrk", Name::mrk, Values::number, INT32_MIN, INT32_MAX},
    {u"Pau", Name::pau, Values::number, 10, 2550},
    {u"Pit", Name::pit, Values::number, 50, 400},
    {u"Rst", Name::rst, Values::none},
    {u"Spd", Name::spd, Values::number, 50, 450},
    {u"Vct", Name::vct, Values::word},
    {u"Vol", Name::vol, Values::number, 0, 65535},
}};
constexpr std::size_t name_length = 3;

bool partsWords(char16_t unit) {
    return unit <= u' ' || unit == 0xA0 || unit == 0x3000;
}

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

bool isWordUnit(char16_t unit) {
    return isDigit(unit) || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'-';
}

struct Tag {
    const Form* form = nullptr;
    std::size_t length = 0; // with both backslashes
    std::int64_t number = 0;
    std::u16string_view first, second;
};

// Takes what is read from the front of a text.
class Reader {
  public:
    explicit Reader(std::u16string_view text) : text_(text) {}
    std::size_t position() const { return position_; }
    bool take(char16_t unit) {
        if (position_ >= text_.size() || text_[position_] != unit) {
            return false;
        }
        ++position_;
        return true;
    }
    template <typename Accepts>
    std::u16string_view takeWhile(Accepts accepts) {
        const std::size_t begin = position_;
        while (position_ < text_.size() && accepts(text_[position_])) {
            ++position_;
        }
        return text_.substr(begin, position_ - begin);
    }
    bool takeQuoted(std::u16string_view& value) {
        if (!take(u'"')) {
            return false;
        }
        value = takeWhile([](char16_t unit) { return unit != u'"'; });
        return take(u'"');
    }
    bool takeNumber(std::int64_t least, std::int64_t most, std::int64_t& value) {
        const bool negative = take(u'-');
        const std::u16string_view digits = takeWhile(isDigit);
        std::int64_t number = 0;
        for (const char16_t digit : digits) {
            number = std::min<std::int64_t>(number * 10 + (digit - u'0'), INT64_C(1) << 40);
        }
        value = std::clamp(negative ? -number : number, least, most);
        return !digits.empty();
    }

  private:
    std::u16string_view text_;
    std::size_t position_ = 0;
};

// The tag that `text` begins with. Every failing look ends at the next quote or sooner, and a tag that looks for a
// quote has one of its own: reading all tags of a text takes time in proportion to its length.
std::optional<Tag> readTag(std::u16string_view text) {
    Reader reader(text.substr(std::min(text.size(), 1 + name_length)));
    const std::u16string_view name = text.substr(1, name_length);
    const auto form = std::find_if(forms.begin(), forms.end(), [&](const Form& candidate) {
        return murmelix::sameText(candidate.text, name, murmelix::LetterCase::ignored);
    });
    if (form == forms.end()) {
        return std::nullopt;
    }
    Tag tag;
    tag.form = &*form;
    bool good = false;
    switch (form->values) {
    case Values::none:
        good = true;
        break;
    case Values::word:
        good = reader.take(u'=');
        if (good && !reader.takeQuoted(tag.first)) {
            tag.first = reader.takeWhile(isWordUnit);
            good = !tag.first.empty();
        }
        break;
    case Values::number:
        good = reader.take(u'=') && reader.takeNumber(form->least, form->most, tag.number);
        break;
    case Values::two_quotes:
        good = reader.take(u'=') && reader.takeQuoted(tag.first) && reader.take(u'=') && reader.takeQuoted(tag.second);
        break;
    }
    if (!good || !reader.take(u'\\')) {
        return std::nullopt;
    }
    tag.length = 1 + name_length + reader.position();
    return tag;
}

class Writer {
  public:
    Writer(const Manner& manner, std::u16string_view last) : usual_(manner), manner_(manner), last_(last) {}

    void read(std::u16string_view text, bool repeated) {
        std::size_t done = 0;
        for (std::size_t at = text.find(u'\\'); at != text.npos; at = text.find(u'\\', at)) {
            const std::optional<Tag> tag = readTag(text.substr(at));
            if (!tag) {
                ++at;
                continue;
            }
            plain(text.substr(done, at - done), repeated);
            apply(*tag, text.substr(at, tag->length), repeated);
            at += tag->length;
            done = at;
        }
        plain(text.substr(done), repeated);
    }

    Script take() {
        if (std::all_of(script_.remembered.begin(), script_.remembered.end(), partsWords)) {
            script_.remembered = last_;
        }
        return std::move(script_);
    }

  private:
    void plain(std::u16string_view text, bool repeated) {
        if (!repeated) {
            script_.remembered += text;
        }
        if (manner_.emphasis) {
            const auto word = std::find_if_not(text.begin(), text.end(), partsWords);
            if (word == text.end()) {
                words(text, text, usual(false));
                return;
            }
            const auto end = std::find_if(word, text.end(), partsWords);
            const auto before = static_cast<std::size_t>(word - text.begin());
            const auto size = static_cast<std::size_t>(end - word);
            words(text.substr(0, before), text.substr(0, before), usual(false));
            words(text.substr(before, size), text.substr(before, size), usual(true));
            manner_.emphasis = false;
            text.remove_prefix(before + size);
        }
        words(text, text, manner_);
    }

    Manner usual(bool emphasis) const {
        Manner manner = manner_;
        manner.emphasis = emphasis;
        return manner;
    }

    void words(std::u16string_view spoken, std::u16string_view shown, const Manner& manner, bool mapped = false) {
        if (spoken.empty() && shown.empty()) {
            return;
        }
        const bool joins = !mapped && !script_.pieces.empty() && script_.pieces.back().kind == Piece::Kind::words &&
                           !script_.pieces.back().mapped && script_.pieces.back().manner == manner &&
                           script_.pieces.back().volume == volume_;
        if (!joins) {
            Piece& piece = script_.pieces.emplace_back();
            piece.manner = manner;
            piece.volume = volume_;
            piece.mapped = mapped;
            piece.begin = script_.shown.size();
        }
        script_.shown += shown;
        script_.pieces.back().spoken += spoken;
        script_.pieces.back().end = script_.shown.size();
    }

    void apply(const Tag& tag, std::u16string_view text, bool repeated) {
        if (!repeated && tag.form->name != Name::lst) {
            script_.remembered += text;
        }
        switch (tag.form->name) {
        case Name::chr:
            if (murmelix::sameText(tag.first, u"Whisper", murmelix::LetterCase::ignored)) {
                manner_.delivery = Delivery::whisper;
            } else if (murmelix::sameText(tag.first, u"Monotone", murmelix::LetterCase::ignored)) {
                manner_.delivery = Delivery::monotone;
            } else {
                manner_.delivery = Delivery::normal;
            }
            break;
        case Name::ctx: // how addresses are read out is each engine's own matter
        case Name::vct: // and so are the kinds of voice that it knows by name
            break;
        case Name::emp:
            manner_.emphasis = true;
            break;
        case Name::lst:
            // Once in a text: a text could grow without end by repeating itself.
            if (!repeated && !std::exchange(last_taken_, true)) {
                read(last_, true);
            }
            break;
        case Name::map: {
            words(tag.first, tag.second, manner_, true);
            manner_.emphasis = false;
            break;
        }
        case Name::mrk:
            if (bookmarks_ == most_bookmarks) {
                break;
            }
            ++bookmarks_;
            script_.pieces.emplace_back().kind = Piece::Kind::bookmark;
            script_.pieces.back().bookmark = static_cast<std::int32_t>(tag.number);
            break;
        case Name::pau:
            script_.pieces.emplace_back().kind = Piece::Kind::pause;
            script_.pieces.back().pause = static_cast<std::uint32_t>(tag.number);
            break;
        case Name::pit:
            manner_.pitch = static_cast<std::uint16_t>(tag.number);
            break;
        case Name::rst:
            manner_ = usual_;
            volume_ = 0xFFFF;
            break;
        case Name::spd:
            manner_.speed = static_cast<std::uint32_t>(tag.number);
            break;
        case Name::vol:
            volume_ = static_cast<std::uint16_t>(tag.number);
            break;
        }
    }

    Manner usual_, manner_;
    std::uint16_t volume_ = 0xFFFF;
    std::u16string_view last_;
    bool last_taken_ = false;
    std::size_t bookmarks_ = 0;
    Script script_;
};

} // namespace

std::u16string_view chooseAlternative(std::u16string_view text, std::uint64_t random) {
    std::vector<std::u16string_view> choices;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(u'|', begin), text.size());
        if (end > begin) {
            choices.push_back(text.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return choices.empty() ? std::u16string_view{} : choices[static_cast<std::size_t>(random % choices.size())];
}

Script readTags(std::u16string_view text, const Manner& manner, std::u16string_view last) {
    Writer writer(manner, last);
    writer.read(text, false);
    return writer.take();
}

} // namespace agent::voice
