#include <cstdlib>

#include "common/text.h"
#include "companions/agent/automation/objects.h"

namespace agent::automation {
namespace {

constexpr std::size_t longest_font_name = 31; // of Windows
constexpr std::int32_t largest_font = 72;     // points
constexpr int points_an_inch = 72, pixels_an_inch = 96;
constexpr std::uint32_t characters_mask = 0x00FF0000, lines_mask = 0xFF000000; // of Style; 0 leaves what is there
constexpr int bold = 700;                                                      // the weight from which letters are bold

std::int32_t colour(std::uint32_t value) {
    return static_cast<std::int32_t>(value);
}

class Balloon final : public CharacterPart {
  public:
    Balloon(std::shared_ptr<Client> client, std::shared_ptr<Loaded> loaded)
        : CharacterPart(std::move(client), std::move(loaded)) {}

  private:
    const Interface* published() const override { return &type_library::IBalloon; }
    std::span<const Member> members() const override {
        static const Members<Balloon> all{
            property(L"Enabled", 1, &Balloon::enabled),
            property(L"NumberOfLines", 2, &Balloon::lines),
            property(L"CharsPerLine", 3, &Balloon::charactersALine),
            property(L"FontName", 4, &Balloon::fontName, &Balloon::setFontName),
            property(L"FontSize", 5, &Balloon::fontSize, &Balloon::setFontSize),
            property(L"ForeColor", 7, [](const Balloon& self) { return colour(self.look().text_colour); }),
            property(L"BackColor", 8, [](const Balloon& self) { return colour(self.look().background_colour); }),
            property(L"BorderColor", 9, [](const Balloon& self) { return colour(self.look().border_colour); }),
            property(L"FontBold", 10, [](const Balloon& self) { return self.look().weight >= bold; }),
            property(L"FontItalic", 11, [](const Balloon& self) { return self.look().italic; }),
            property(L"FontStrikethru", 12, [](const Balloon& self) { return self.look().strike_out; }),
            property(L"FontUnderline", 13, [](const Balloon& self) { return self.look().underline; }),
            property(L"Visible", 14, &Balloon::visible, &Balloon::setVisible),
            property(L"FontCharSet", 15, &Balloon::fontCharSet, &Balloon::setFontCharSet),
            property(L"Style", 16, &Balloon::style, &Balloon::setStyle),
        };
        return all;
    }

    stage::BalloonLook& look() const {
        stage::BalloonLook* found = server().theatre().look(loaded().actor);
        if (!found) {
            refuse(u"The character has no balloon.");
        }
        return *found;
    }

    bool enabled() const { return (actor().balloon_style & stage::balloon_on) != 0; }
    std::int32_t lines() const { return static_cast<std::int32_t>(actor().balloon_style >> 24 & 0xFF); }
    std::int32_t charactersALine() const { return static_cast<std::int32_t>(actor().balloon_style >> 16 & 0xFF); }

    std::u16string fontName() const { return look().font_name; }
    void setFontName(const Label& name) {
        if (name.text.size() > longest_font_name) {
            throw Error(E_INVALIDARG,
                        u"A font's name has at most " + murmelix::toText(longest_font_name) + u" letters.");
        }
        look().font_name = name.text;
    }

    std::int32_t fontSize() const {
        return (std::abs(look().font_height) * points_an_inch + pixels_an_inch / 2) / pixels_an_inch;
    }
    void setFontSize(std::int32_t points) {
        if (points < 1 || points > largest_font) {
            throw Error(E_INVALIDARG, u"A balloon's font has 1 to 72 points.");
        }
        look().font_height = -((points * pixels_an_inch + points_an_inch / 2) / points_an_inch);
    }

    bool visible() const { return actor().balloonOpen(); }
    void setVisible(bool visible) {
        if (visible) {
            actor().showBalloon();
        } else {
            actor().hideBalloon();
        }
    }

    std::int16_t fontCharSet() const { return look().character_set; }
    void setFontCharSet(std::int16_t set) { look().character_set = static_cast<std::uint8_t>(set & 0xFF); }

    std::int32_t style() const { return static_cast<std::int32_t>(actor().balloon_style); }
    void setStyle(std::int32_t style) {
        auto wanted = static_cast<std::uint32_t>(style);
        const std::uint32_t now = actor().balloon_style;
        for (const std::uint32_t part : {characters_mask, lines_mask}) {
            wanted |= (wanted & part) == 0 ? now & part : 0;
        }
        if (!loaded().file->character().balloon) {
            wanted &= ~stage::balloon_on;
        }
        actor().balloon_style = wanted;
    }
};

} // namespace

Ptr<IDispatch> makeBalloon(const std::shared_ptr<Client>& client, const std::shared_ptr<Loaded>& loaded) {
    return Ptr<IDispatch>(make<Balloon>(client, loaded).get());
}

} // namespace agent::automation
