#include "languages/language_table.h"

#include "common/text.h"

namespace murmelix {

KeyedCollection<std::u16string> LanguageTable;
std::int16_t LanguageToSwitch = 0;

void InitLanguageTable() {
    static constexpr struct {
        const char16_t* name;
        const char16_t* value;
    } languages[] = {
        {u"Arabic", u"%1025"},    {u"Basque", u"%1069"},     {u"Croation", u"%1050"},
        {u"Czech", u"%1029"},     {u"Danish", u"%1030"},     {u"Dutch", u"%1043"},
        {u"EnglishUS", u"%1033"}, {u"EnglishGB", u"%2057"},  {u"Finnish", u"%1035"},
        {u"French", u"%1036"},    {u"German", u"%1031"},     {u"Greek", u"%1032"},
        {u"Hebrew", u"%1037"},    {u"Hungarian", u"%1038"},  {u"Italian", u"%1040"},
        {u"Japanese", u"%1041"},  {u"Korean", u"%1042"},     {u"Norwegian", u"%1044"},
        {u"Polish", u"%1045"},    {u"Portuguese", u"%2070"}, {u"Portuguese_Brazil", u"%1046"},
        {u"Romanian", u"%1048"},  {u"Russian", u"%1049"},    {u"SimplifiedChinese", u"%2052"},
        {u"Slovakian", u"%1051"}, {u"Slovenian", u"%1060"},  {u"Spanish", u"%3082"},
        {u"Swedish", u"%1053"},   {u"Thai", u"%1054"},       {u"TraditionalChinese", u"%1028"},
        {u"Turkish", u"%1055"},
    };
    LanguageTable.Clear();
    for (const auto& language : languages) {
        LanguageTable.Add(language.value, language.name);
    }
}

std::int16_t LanguageFromKey(const std::u16string& key) {
    return toInt16(leadingNumber(std::u16string_view(key).substr(key.empty() ? 0 : 1)));
}

} // namespace murmelix
