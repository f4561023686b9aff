#include "companions/agent/settings/languages.h"

#include <algorithm>

namespace agent::settings {

namespace {

constexpr Language all[] = {
    {1025, u"Arabic", u"هكذا يبدو صوتي."},
    {1069, u"Basque", u"Horrelakoa da nire ahotsa."},
    {1027, u"Catalan", u"Així és com sono."},
    {2052, u"Chinese (Simplified)", u"这就是我的声音。"},
    {1028, u"Chinese (Traditional)", u"這就是我的聲音。"},
    {1050, u"Croatian", u"Ovako zvučim."},
    {1029, u"Czech", u"Takhle zní můj hlas."},
    {1030, u"Danish", u"Sådan lyder jeg."},
    {1043, u"Dutch", u"Zo klink ik."},
    {2057, u"English (Great Britain)", u"This is how I sound."},
    {1033, u"English (United States)", u"This is how I sound."},
    {1035, u"Finnish", u"Tältä minä kuulostan."},
    {1036, u"French", u"Voici ma voix."},
    {1031, u"German", u"So klinge ich."},
    {1032, u"Greek", u"Έτσι ακούγομαι."},
    {1037, u"Hebrew", u"כך אני נשמע."},
    {1038, u"Hungarian", u"Ilyen a hangom."},
    {1040, u"Italian", u"Questa è la mia voce."},
    {1041, u"Japanese", u"これが私の声です。"},
    {1042, u"Korean", u"이것이 제 목소리입니다."},
    {1044, u"Norwegian", u"Slik høres jeg ut."},
    {1045, u"Polish", u"Tak brzmi mój głos."},
    {1046, u"Portuguese (Brazil)", u"Esta é a minha voz."},
    {2070, u"Portuguese (Portugal)", u"Esta é a minha voz."},
    {1048, u"Romanian", u"Așa sună vocea mea."},
    {1049, u"Russian", u"Так звучит мой голос."},
    {1051, u"Slovak", u"Takto znie môj hlas."},
    {1060, u"Slovenian", u"Tako zveni moj glas."},
    {3082, u"Spanish", u"Así es mi voz."},
    {1053, u"Swedish", u"Så här låter jag."},
    {1054, u"Thai", u"นี่คือเสียงของฉัน"},
    {1055, u"Turkish", u"Sesim böyle."},
};

} // namespace

std::span<const Language> languages() {
    return all;
}

const Language* languageOf(std::uint16_t id) {
    const auto* const found = std::ranges::find(all, id, &Language::id);
    return found == std::end(all) ? nullptr : found;
}

} // namespace agent::settings
