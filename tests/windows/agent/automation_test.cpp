// The server's objects as another process meets them.
#include <array>
#include <filesystem>
#include <limits>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/com/served.h"
#include "common/text.h"
#include "companions/agent/acs/writer.h"
#include "tests/windows/agent/server_process.h"

#include <mmsystem.h>

namespace agent {
namespace {

using murmelix::com::Error;
using murmelix::com::Object;
using murmelix::com::Variant;
using testing::HasSubstr;

// The result of a call that fails; S_OK where it does not.
HRESULT failure(const std::function<void()>& call) {
    try {
        call();
        return S_OK;
    } catch (const Error& error) {
        return error.result();
    }
}

DISPID idOf(const Object& object, const wchar_t* name) {
    std::wstring copy = name;
    LPOLESTR names = copy.data();
    DISPID id = DISPID_UNKNOWN;
    object.dispatch()->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    return id;
}

// As the type library writes it.
std::wstring describedName(const Object& object, DISPID id) {
    murmelix::com::Ptr<ITypeInfo> type;
    murmelix::com::Bstr name;
    if (FAILED(object.dispatch()->GetTypeInfo(0, LOCALE_USER_DEFAULT, type.out())) ||
        FAILED(type->GetDocumentation(id, name.out(), nullptr, nullptr, nullptr))) {
        return {};
    }
    return name.get();
}

HRESULT invoke(const Object& object, DISPID id, WORD flags, std::vector<Variant> arguments, Variant* result = nullptr) {
    std::vector<VARIANT> raw;
    for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
        raw.push_back(argument->raw());
    }
    DISPID put = DISPID_PROPERTYPUT;
    const bool is_put = (flags & DISPATCH_PROPERTYPUT) != 0;
    DISPPARAMS parameters{raw.data(), is_put ? &put : nullptr, static_cast<UINT>(raw.size()), is_put ? 1U : 0U};
    EXCEPINFO exception{};
    const HRESULT done = object.dispatch()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                                   result ? result->out() : nullptr, &exception, nullptr);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrHelpFile);
    return done == DISP_E_EXCEPTION ? exception.scode : done;
}

int status(Object& request) {
    return request.get(u"Status").toInt32();
}

bool over(Object& request) {
    return pumpUntil([&] { return status(request) != 2 && status(request) != 4; });
}

// A button of that caption in a window, or in what is in it.
HWND buttonOf(HWND window, const wchar_t* caption) {
    if (HWND found = FindWindowExW(window, nullptr, L"Button", caption)) {
        return found;
    }
    for (HWND child = nullptr; (child = FindWindowExW(window, child, nullptr, nullptr)) != nullptr;) {
        if (HWND found = buttonOf(child, caption)) {
            return found;
        }
    }
    return nullptr;
}

struct Automation : testing::Test {
    RunningServer server;
    Object control = server.control();
    Object characters = control.object(u"Characters");
    std::u16string file = smallCharacterFile();

    Object load(const char16_t* id) {
        characters.call(u"Load", {Variant(id), Variant(file)});
        return characters.object(u"Character", {Variant(id)});
    }
    static Object request(Object& character, const char16_t* call, std::initializer_list<Variant> arguments) {
        return Object(character.call(call, arguments).toObject());
    }
};

TEST_F(Automation, MembersHaveThePublishedIds) {
    const auto check = [](const Object& object, const std::map<std::wstring, DISPID>& members) {
        for (const auto& [name, id] : members) {
            EXPECT_EQ(idOf(object, name.c_str()), id)
                << murmelix::toUtf8(murmelix::com::narrow(name.c_str(), name.size()));
            EXPECT_EQ(describedName(object, id), name);
        }
    };
    check(control, {{L"Characters", 3},
                    {L"AudioOutput", 4},
                    {L"SpeechInput", 5},
                    {L"PropertySheet", 8},
                    {L"Connected", 9},
                    {L"CommandsWindow", 12},
                    {L"Suspended", 14},
                    {L"ShowDefaultCharacterProperties", 20},
                    {L"RaiseRequestErrors", 21}});
    check(characters, {{L"Item", 0}, {L"Load", 1}, {L"Unload", 2}, {L"Character", 3}, {L"Enum", -4}});
    Object character = load(u"a");
    check(character, {{L"Visible", 2},
                      {L"Left", 3},
                      {L"Top", 4},
                      {L"Height", 5},
                      {L"Width", 6},
                      {L"Speed", 10},
                      {L"Pitch", 11},
                      {L"Play", 13},
                      {L"Stop", 14},
                      {L"Speak", 15},
                      {L"GestureAt", 17},
                      {L"MoveTo", 18},
                      {L"Hide", 19},
                      {L"Show", 20},
                      {L"Interrupt", 21},
                      {L"Wait", 22},
                      {L"Balloon", 23},
                      {L"Name", 24},
                      {L"Commands", 25},
                      {L"Activate", 26},
                      {L"Get", 27},
                      {L"Description", 28},
                      {L"IdleOn", 29},
                      {L"StopAll", 31},
                      {L"MoveCause", 32},
                      {L"VisibilityCause", 33},
                      {L"HasOtherClients", 34},
                      {L"SoundEffectsOn", 35},
                      {L"ExtraData", 36},
                      {L"ShowPopupMenu", 37},
                      {L"AutoPopupMenu", 38},
                      {L"HelpModeOn", 39},
                      {L"HelpContextID", 40},
                      {L"Active", 41},
                      {L"Listen", 42},
                      {L"LanguageID", 43},
                      {L"SRModeID", 46},
                      {L"TTSModeID", 47},
                      {L"HelpFile", 48},
                      {L"GUID", 49},
                      {L"OriginalHeight", 50},
                      {L"OriginalWidth", 51},
                      {L"Think", 52},
                      {L"Version", 53},
                      {L"AnimationNames", 54},
                      {L"SRStatus", 55}});
    check(character.object(u"Balloon"), {{L"Enabled", 1},
                                         {L"NumberOfLines", 2},
                                         {L"CharsPerLine", 3},
                                         {L"FontName", 4},
                                         {L"FontSize", 5},
                                         {L"ForeColor", 7},
                                         {L"BackColor", 8},
                                         {L"BorderColor", 9},
                                         {L"FontBold", 10},
                                         {L"FontItalic", 11},
                                         {L"FontStrikethru", 12},
                                         {L"FontUnderline", 13},
                                         {L"Visible", 14},
                                         {L"FontCharSet", 15},
                                         {L"Style", 16}});
    Object commands = character.object(u"Commands");
    check(commands, {{L"Item", 0},
                     {L"Count", 2},
                     {L"Caption", 3},
                     {L"Voice", 4},
                     {L"Visible", 5},
                     {L"Add", 10},
                     {L"Insert", 11},
                     {L"Remove", 13},
                     {L"RemoveAll", 14},
                     {L"Command", 15},
                     {L"DefaultCommand", 16},
                     {L"FontName", 21},
                     {L"VoiceCaption", 22},
                     {L"FontSize", 23},
                     {L"GlobalVoiceCommandsEnabled", 24}});
    check(
        Object(commands.call(u"Add", {Variant(u"one")}).toObject()),
        {{L"Voice", 1}, {L"Caption", 2}, {L"Confidence", 3}, {L"ConfidenceText", 4}, {L"Enabled", 5}, {L"Visible", 6}});
    check(request(character, u"Show", {}), {{L"ID", 0}, {L"Status", 1}, {L"Description", 2}, {L"Number", 3}});
    check(control.object(u"AudioOutput"), {{L"Enabled", 1}, {L"SoundEffects", 2}, {L"Status", 3}});
    check(control.object(u"PropertySheet"),
          {{L"Left", 1}, {L"Top", 2}, {L"Height", 3}, {L"Width", 4}, {L"Page", 5}, {L"Visible", 6}});
}

TEST_F(Automation, NamesAreFoundWithoutLetterCase) {
    EXPECT_EQ(idOf(control, L"cHARACTERS"), 3);
    EXPECT_EQ(idOf(control, L"Nonsense"), DISPID_UNKNOWN);
}

TEST_F(Automation, TheProgramsCallsAreAnswered) {
    control.put(u"Connected", Variant(true));
    control.put(u"RaiseRequestErrors", Variant(true));
    EXPECT_TRUE(control.get(u"RaiseRequestErrors").toBool());
    EXPECT_TRUE(control.object(u"AudioOutput").get(u"Enabled").toBool());
    Object character = load(u"ann@x");
    EXPECT_EQ(character.get(u"Name").toText(), u"Dot");
    EXPECT_EQ(character.get(u"Width").toInt16(), 64);
    EXPECT_EQ(character.get(u"Height").toInt16(), 48);
    EXPECT_FALSE(character.get(u"Visible").toBool());
    character.put(u"LanguageID", Variant(std::int32_t{1033}));
    EXPECT_EQ(character.get(u"LanguageID").toInt32(), 1033);
    Object balloon = character.object(u"Balloon");
    const std::int32_t style = balloon.get(u"Style").toInt32();
    EXPECT_EQ(style & 1, 1);
    balloon.put(u"Style", Variant((style & ~4) | 10));
    EXPECT_EQ(balloon.get(u"Style").toInt32(), (style & ~4) | 10);

    request(character, u"MoveTo", {Variant(std::int16_t{36}), Variant(std::int16_t{72})});
    Object show = request(character, u"Show", {});
    EXPECT_TRUE(over(show));
    EXPECT_EQ(status(show), 0);
    EXPECT_TRUE(character.get(u"Visible").toBool());
    EXPECT_EQ(character.get(u"Left").toInt16(), 36);
    EXPECT_EQ(character.get(u"Top").toInt16(), 72);
    request(character, u"Play", {Variant(u"restpose")});
    Object speak = request(character, u"Speak", {Variant(u"Hello World"), Variant::omitted()});
    EXPECT_TRUE(over(speak));
    EXPECT_EQ(status(speak), 0);
    Object hide = request(character, u"Hide", {Variant::omitted()});
    EXPECT_TRUE(over(hide));
    EXPECT_FALSE(character.get(u"Visible").toBool());
}

TEST_F(Automation, StopWithATextIsATypeErrorAndStopsNothing) {
    Object character = load(u"a");
    request(character, u"Show", {Variant(true)});
    Object loop = request(character, u"Play", {Variant(u"Loop")});
    EXPECT_TRUE(pumpUntil([&] { return status(loop) == 4; }));
    EXPECT_EQ(failure([&] { character.call(u"Stop", {Variant(u"play")}); }), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure([&] { character.call(u"Stop", {Variant(std::int32_t{5})}); }), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure([&] { character.call(u"Stop", {Variant(control.dispatch())}); }), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failure([&] { character.call(u"Stop", {Variant()}); }), DISP_E_TYPEMISMATCH) << "Empty";
    EXPECT_EQ(status(loop), 4);
    character.call(u"Stop");
    EXPECT_EQ(status(loop), 3);
}

TEST_F(Automation, StopWithARequestRemovesThatRequest) {
    Object character = load(u"a");
    request(character, u"Show", {Variant(true)});
    Object loop = request(character, u"Play", {Variant(u"Loop")});
    EXPECT_TRUE(pumpUntil([&] { return status(loop) == 4; }));
    character.call(u"Stop", {Variant(loop.dispatch())});
    EXPECT_EQ(status(loop), 3);
}

TEST_F(Automation, AnUnknownAnimationRaisesOrFails) {
    Object character = load(u"a");
    request(character, u"Show", {Variant(true)});
    EXPECT_EQ(failure([&] { character.call(u"Play", {Variant(u"Juggle")}); }), HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
    control.put(u"RaiseRequestErrors", Variant(false));
    Object play = request(character, u"Play", {Variant(u"Juggle")});
    EXPECT_TRUE(over(play));
    EXPECT_EQ(status(play), 1);
    EXPECT_NE(play.get(u"Number").toInt32(), 0);
    EXPECT_NE(play.get(u"Description").toText(), u"");
}

TEST_F(Automation, GetFailsForWhatThereIsNot) {
    Object character = load(u"a");
    for (const auto& [type, name] : std::vector<std::pair<const char16_t*, const char16_t*>>{
             {u"Animation", u"Wave, Juggle"}, {u"State", u"Dancing"}, {u"WaveFile", u"C:\\nothing.wav"}}) {
        EXPECT_EQ(failure([&] {
                      character.call(u"Get", {Variant(type), Variant(name)});
                  }),
                  HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
    }
    EXPECT_EQ(failure([&] { character.call(u"Get", {Variant(u"Hat"), Variant(u"Wave")}); }), E_INVALIDARG);
    Object both = request(character, u"Get", {Variant(u"animation"), Variant(u"wave, Show")});
    Object state = request(character, u"Get", {Variant(u"State"), Variant(u"Showing")});
    EXPECT_TRUE(over(both) && over(state));
    EXPECT_EQ(status(both), 0);
    EXPECT_EQ(status(state), 0);
    control.put(u"RaiseRequestErrors", Variant(false));
    Object queued = request(character, u"Get", {Variant(u"Animation"), Variant(u"Juggle")});
    EXPECT_TRUE(over(queued));
    EXPECT_EQ(status(queued), 1);
    EXPECT_NE(queued.get(u"Description").toText(), u"");
}

TEST_F(Automation, GetWaitsForItsTurnUnlessToldNotTo) {
    Object character = load(u"a");
    request(character, u"Show", {Variant(true)});
    Object loop =
        request(character, u"Wait", {Variant(load(u"b").call(u"Speak", {Variant(u"long words")}).toObject())});
    Object queued = request(character, u"Get", {Variant(u"Animation"), Variant(u"Wave")});
    Object at_once = request(character, u"Get", {Variant(u"Animation"), Variant(u"Wave"), Variant(false)});
    EXPECT_EQ(status(at_once), 0);
    EXPECT_TRUE(over(loop));
    EXPECT_TRUE(over(queued));
    EXPECT_EQ(status(queued), 0);
}

TEST_F(Automation, AFailingLoadIsAFailedRequestWhereErrorsAreNotRaised) {
    EXPECT_TRUE(FAILED(failure([&] { characters.call(u"Load", {Variant(u"x"), Variant(u"C:\\nothing.acs")}); })));
    control.put(u"RaiseRequestErrors", Variant(false));
    Object failed(characters.call(u"Load", {Variant(u"x"), Variant(u"C:\\nothing.acs")}).toObject());
    EXPECT_EQ(status(failed), 1);
    EXPECT_NE(failed.get(u"Number").toInt32(), 0);
    EXPECT_THAT(murmelix::toUtf8(failed.get(u"Description").toText()), HasSubstr("nothing.acs"));
}

TEST_F(Automation, OnlyTheVoiceThatIsThereIsTaken) {
    Object character = load(u"a");
    EXPECT_EQ(failure([&] { character.put(u"TTSModeID", Variant(u"{00000000-1111-2222-3333-444444444444}")); }),
              E_INVALIDARG);
    EXPECT_EQ(character.get(u"TTSModeID").toText(), u"");
    character.put(u"TTSModeID", Variant(u""));
}

TEST_F(Automation, TheBalloonIsShownAgain) {
    Object character = load(u"a");
    request(character, u"Show", {Variant(true)});
    Object balloon = character.object(u"Balloon");
    Object thought = request(character, u"Think", {Variant(u"Once more")});
    EXPECT_TRUE(over(thought));
    EXPECT_TRUE(pumpUntil([&] { return !balloon.get(u"Visible").toBool(); }));
    balloon.put(u"Visible", Variant(true));
    EXPECT_TRUE(balloon.get(u"Visible").toBool());
    balloon.put(u"Visible", Variant(false));
    EXPECT_FALSE(balloon.get(u"Visible").toBool());
}

TEST_F(Automation, AStyleWithoutSizesKeepsThem) {
    Object balloon = load(u"a").object(u"Balloon");
    const int lines = balloon.get(u"NumberOfLines").toInt32(),
              characters_a_line = balloon.get(u"CharsPerLine").toInt32();
    ASSERT_GT(lines, 0);
    ASSERT_GT(characters_a_line, 0);
    balloon.put(u"Style", Variant(std::int32_t{3}));
    EXPECT_EQ(balloon.get(u"NumberOfLines").toInt32(), lines);
    EXPECT_EQ(balloon.get(u"CharsPerLine").toInt32(), characters_a_line);
    EXPECT_EQ(balloon.get(u"Style").toInt32() & 0xFFFF, 3);
    balloon.put(u"Style", Variant(std::int32_t{0x05140003}));
    EXPECT_EQ(balloon.get(u"NumberOfLines").toInt32(), 5);
    EXPECT_EQ(balloon.get(u"CharsPerLine").toInt32(), 20);
}

TEST_F(Automation, ACharacterWithoutABalloonHasNone) {
    acs::Character mute = smallCharacter();
    mute.balloon.reset();
    file = temporaryFile(u"Mute.acs");
    write(file, acs::write(mute));
    Object character = load(u"m");
    request(character, u"Show", {Variant(true)});
    Object balloon = character.object(u"Balloon");
    EXPECT_FALSE(balloon.get(u"Enabled").toBool());
    balloon.put(u"Style", Variant(std::int32_t{0x02200001}));
    EXPECT_FALSE(balloon.get(u"Enabled").toBool());
    Object thought = request(character, u"Think", {Variant(u"Nothing")});
    EXPECT_TRUE(pumpUntil([&] { return status(thought) == 4; }));
    EXPECT_FALSE(balloon.get(u"Visible").toBool());
    EXPECT_TRUE(over(thought));
}

TEST_F(Automation, CommandsRefuseWhatCannotBe) {
    Object commands = load(u"a").object(u"Commands");
    EXPECT_EQ(failure([&] { commands.put(u"DefaultCommand", Variant(u"hello")); }), E_INVALIDARG);
    Object command(commands.call(u"Add", {Variant(u"hello"), Variant(u"&Hello")}).toObject());
    commands.put(u"DefaultCommand", Variant(u"hello"));
    EXPECT_EQ(commands.get(u"DefaultCommand").toText(), u"hello");
    EXPECT_TRUE(FAILED(failure([&] { commands.put(u"FontName", Variant(u"Courier New")); })));
    EXPECT_EQ(failure([&] { command.put(u"Confidence", Variant(std::int32_t{101})); }), E_INVALIDARG);
    command.put(u"Confidence", Variant(std::int32_t{-100}));
    EXPECT_EQ(command.get(u"Confidence").toInt32(), -100);
}

TEST_F(Automation, TheSheetStandsWhereItIsShown) {
    control.call(u"ShowDefaultCharacterProperties", {Variant(std::int16_t{90}), Variant(std::int16_t{70})});
    Object sheet = control.object(u"PropertySheet");
    EXPECT_TRUE(sheet.get(u"Visible").toBool());
    EXPECT_EQ(sheet.get(u"Left").toInt16(), 90);
    EXPECT_EQ(sheet.get(u"Top").toInt16(), 70);
    control.call(u"ShowDefaultCharacterProperties");
    EXPECT_EQ(sheet.get(u"Left").toInt16(), 90) << "it stays where it is";
}

TEST_F(Automation, SoundIsThereWhereADeviceIs) {
    EXPECT_EQ(control.object(u"AudioOutput").get(u"Status").toInt16(), waveOutGetNumDevs() == 0 ? 1 : 0);
    EXPECT_FALSE(control.get(u"Suspended").toBool());
}

TEST_F(Automation, PlayAndSpeakOfAHiddenCharacterFailAtTheirTurn) {
    Object character = load(u"a");
    Object play = request(character, u"Play", {Variant(u"Wave")});
    Object speak = request(character, u"Speak", {Variant(u"hello")});
    EXPECT_TRUE(over(play));
    EXPECT_TRUE(over(speak));
    EXPECT_EQ(status(play), 1);
    EXPECT_EQ(status(speak), 1);
}

TEST_F(Automation, TheSameIdTwiceIsAnError) {
    load(u"a");
    EXPECT_EQ(failure([&] { load(u"A"); }), HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS));
}

TEST_F(Automation, AnUnknownIdIsAnError) {
    EXPECT_EQ(failure([&] { characters.object(u"Character", {Variant(u"nobody")}); }), E_INVALIDARG);
    EXPECT_EQ(failure([&] { characters.call(u"Unload", {Variant(u"nobody")}); }), E_INVALIDARG);
}

TEST_F(Automation, MissingAndDamagedFilesAreRefusedWithAReason) {
    const auto reason = [&](const std::u16string& path) {
        try {
            characters.call(u"Load", {Variant(u"z"), Variant(path)});
        } catch (const Error& error) {
            EXPECT_TRUE(FAILED(error.result()));
            return murmelix::toUtf8(error.description());
        }
        return std::string("loaded");
    };
    EXPECT_THAT(reason(temporaryFile(u"none.acs")), HasSubstr("There is no character file"));
    EXPECT_THAT(reason(u"..\\none.acs"), HasSubstr("no name of a character file"));
    EXPECT_THAT(reason(u""), HasSubstr("no name of a character file"));
    auto bytes = acs::write(smallCharacter());
    const std::u16string damaged = temporaryFile(u"damaged.acs");
    for (const std::size_t length : {std::size_t{0}, std::size_t{3}, std::size_t{36}, bytes.size() / 2}) {
        write(damaged, std::vector<std::uint8_t>(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)));
        EXPECT_THAT(reason(damaged), HasSubstr("cannot be used")) << length;
    }
    bytes[0] ^= 0xFF;
    write(damaged, bytes);
    EXPECT_THAT(reason(damaged), HasSubstr("cannot be used"));
    EXPECT_EQ(failure([&] { characters.object(u"Character", {Variant(u"z")}); }), E_INVALIDARG);
}

TEST_F(Automation, ANameMeansTheCharactersDirectory) {
    std::array<wchar_t, MAX_PATH> windows{};
    GetWindowsDirectoryW(windows.data(), MAX_PATH);
    const std::filesystem::path folder = std::filesystem::path(windows.data()) / L"msagent" / L"chars";
    std::filesystem::create_directories(folder);
    write((folder / L"stage test dot.acs").u16string(), acs::write(smallCharacter()));
    characters.call(u"Load", {Variant(u"a"), Variant(u"stage test dot.acs")});
    characters.call(u"Load", {Variant(u"b"), Variant(u"stage test dot")});
    std::filesystem::remove(folder / L"stage test dot.acs");
    EXPECT_EQ(characters.object(u"Character", {Variant(u"b")}).get(u"Name").toText(), u"Dot");
}

TEST_F(Automation, CallsOnAnUnloadedCharacterFail) {
    Object character = load(u"a");
    Object commands = character.object(u"Commands");
    characters.call(u"Unload", {Variant(u"a")});
    EXPECT_TRUE(FAILED(failure([&] { character.get(u"Left"); })));
    EXPECT_TRUE(FAILED(failure([&] { character.call(u"Show"); })));
    EXPECT_TRUE(FAILED(failure([&] { commands.get(u"Count"); })));
    load(u"a");
}

TEST_F(Automation, WrongArgumentsAreRefused) {
    Object character = load(u"a");
    EXPECT_EQ(invoke(character, 13, DISPATCH_METHOD, {}), DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(invoke(character, 13, DISPATCH_METHOD, {Variant(u"a"), Variant(u"b")}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(invoke(character, 3, DISPATCH_PROPERTYPUT, {Variant(u"wide")}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(invoke(character, 3, DISPATCH_PROPERTYPUT, {Variant(std::int32_t{70000})}), DISP_E_OVERFLOW);
    EXPECT_EQ(invoke(character, 18, DISPATCH_METHOD, {Variant(std::int32_t{40000}), Variant(std::int32_t{0})}),
              DISP_E_OVERFLOW);
    EXPECT_EQ(invoke(character, 999, DISPATCH_METHOD, {}), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(character, 2, DISPATCH_PROPERTYPUT, {Variant(true)}), DISP_E_MEMBERNOTFOUND);
    EXPECT_TRUE(FAILED(invoke(character, 22, DISPATCH_METHOD, {Variant(u"request")})));
    EXPECT_EQ(character.get(u"Left").toInt16(), 0);
}

// An object whose default value is worth a call back: it unloads the character that it is handed to.
class Unloading final : public murmelix::com::Served {
  public:
    Unloading(Object characters, Variant value) : characters_(std::move(characters)), value_(std::move(value)) {}

  private:
    std::span<const murmelix::com::Member> members() const override {
        static const murmelix::com::Members<Unloading> all{
            murmelix::com::property(L"Value", DISPID_VALUE, &Unloading::value)};
        return all;
    }
    Variant value() {
        characters_.call(u"Unload", {Variant(u"a")});
        return value_;
    }

    Object characters_;
    Variant value_;
};

TEST_F(Automation, AnArgumentThatUnloadsTheCharacterFindsItGone) {
    const auto unloading = [&](const Variant& value) {
        return Variant(murmelix::com::make<Unloading>(characters, value));
    };
    const auto fails = [&](const std::function<void(Object&)>& call) {
        Object character = load(u"a");
        EXPECT_EQ(failure([&] { call(character); }), RPC_E_DISCONNECTED);
        EXPECT_EQ(failure([&] { characters.object(u"Character", {Variant(u"a")}); }), E_INVALIDARG);
    };
    fails([&](Object& character) { character.call(u"Play", {unloading(Variant(u"Wave"))}); });
    fails([&](Object& character) { character.call(u"Speak", {unloading(Variant(u"words"))}); });
    fails([&](Object& character) {
        character.call(u"MoveTo", {Variant(std::int16_t{1}), unloading(Variant(std::int16_t{2}))});
    });
    fails([&](Object& character) { character.put(u"Width", unloading(Variant(std::int16_t{100}))); });
    fails([&](Object& character) {
        Object balloon = character.object(u"Balloon");
        balloon.put(u"Style", unloading(Variant(std::int32_t{1})));
    });
    fails([&](Object& character) {
        Object balloon = character.object(u"Balloon");
        balloon.put(u"FontName", unloading(Variant(u"Arial")));
    });
    fails([&](Object& character) {
        Object commands = character.object(u"Commands");
        commands.call(u"Add", {Variant(u"one")});
        commands.call(u"Insert",
                      {Variant(u"two"), Variant(u"one"), Variant(true), Variant(u"Caption"), unloading(Variant(u""))});
    });
    fails([&](Object& character) {
        Object command(character.object(u"Commands").call(u"Add", {Variant(u"one")}).toObject());
        command.put(u"Caption", unloading(Variant(u"Caption")));
    });
    EXPECT_EQ(failure([&] { load(u"a"); }), S_OK) << "the server goes on";
}

TEST_F(Automation, WhatIsTooMuchIsRefused) {
    Object character = load(u"a");
    Object commands = character.object(u"Commands");
    const std::u16string long_name(1001, u'n');
    EXPECT_EQ(failure([&] { characters.call(u"Load", {Variant(long_name), Variant(file)}); }), E_INVALIDARG);
    EXPECT_EQ(failure([&] { commands.call(u"Add", {Variant(long_name)}); }), E_INVALIDARG);
    EXPECT_EQ(failure([&] { commands.call(u"Add", {Variant(u"a"), Variant(long_name)}); }), E_INVALIDARG);
    EXPECT_EQ(failure([&] { character.object(u"Balloon").put(u"FontName", Variant(std::u16string(32, u'f'))); }),
              E_INVALIDARG);
    EXPECT_EQ(failure([&] { character.call(u"Speak", {Variant(std::u16string(2'000'000, u'x'))}); }), E_INVALIDARG);
    for (int i = 0; i < 200; ++i) {
        commands.call(u"Add", {Variant(u"n" + murmelix::toText(i))});
    }
    EXPECT_EQ(failure([&] { commands.call(u"Add", {Variant(u"more")}); }), E_FAIL);
    commands.call(u"Remove", {Variant(u"n7")});
    EXPECT_EQ(failure([&] { commands.call(u"Add", {Variant(u"more")}); }), S_OK);
    // A text that waits counts until it is over.
    request(character, u"Show", {Variant(true)});
    for (std::int16_t place = 0; place < 20; ++place) { // ten minutes each
        request(character, u"MoveTo", {Variant(place), Variant(place), Variant(std::int32_t{600'000})});
    }
    const Variant longest(std::u16string(1 << 20, u'x'));
    for (int i = 0; i < 16; ++i) {
        ASSERT_EQ(failure([&] { character.call(u"Think", {longest}); }), S_OK) << i;
    }
    EXPECT_EQ(failure([&] { character.call(u"Think", {Variant(u"x")}); }), E_FAIL);
    character.call(u"Stop");
    EXPECT_EQ(failure([&] { character.call(u"Think", {longest}); }), S_OK);
}

TEST_F(Automation, FilesOfOtherMachinesAndDevicesAreNotOpened) {
    // A pipe that says nothing: who reads from it waits for ever.
    const HANDLE pipe =
        CreateNamedPipeW(L"\\\\.\\pipe\\AgentTestSilent.acs", PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 2, 0, 0, 0, nullptr);
    ASSERT_NE(pipe, INVALID_HANDLE_VALUE);
    for (const char16_t* path :
         {u"\\\\.\\pipe\\AgentTestSilent.acs", u"//./pipe/AgentTestSilent.acs", u"\\\\server\\share\\x.acs",
          u"\\\\?\\UNC\\server\\share\\x.acs", u"\\/server/share/x.acs"}) {
        try {
            characters.call(u"Load", {Variant(u"far"), Variant(path)});
            ADD_FAILURE() << murmelix::toUtf8(path);
        } catch (const Error& error) {
            EXPECT_EQ(error.result(), E_INVALIDARG);
            EXPECT_THAT(murmelix::toUtf8(error.description()), HasSubstr("not on this machine"));
        }
    }
    CloseHandle(pipe);
    Object character = load(u"a");
    EXPECT_EQ(failure([&] {
                  character.call(u"Speak", {Variant(u"words"), Variant(u"\\\\server\\share\\x.wav")});
              }),
              E_INVALIDARG);
}

TEST_F(Automation, ScriptsCombineTheFlagsOfMethodsAndProperties) {
    load(u"a");
    Variant found;
    EXPECT_EQ(invoke(control, 3, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {Variant(u"a")}, &found), S_OK);
    Object character(found.toObject());
    Variant left;
    EXPECT_EQ(invoke(character, 3, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}, &left), S_OK);
    EXPECT_EQ(left.toInt16(), 0);
    Variant shown;
    EXPECT_EQ(invoke(character, 20, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}, &shown), S_OK);
    EXPECT_EQ(shown.type(), VT_DISPATCH);
}

TEST_F(Automation, NamedArgumentsAreAccepted) {
    Object character = load(u"a");
    std::wstring speak = L"Speak";
    std::wstring url = L"Url";
    std::array<LPOLESTR, 2> names{speak.data(), url.data()};
    std::array<DISPID, 2> ids{};
    ASSERT_EQ(character.dispatch()->GetIDsOfNames(IID_NULL, names.data(), 2, LOCALE_USER_DEFAULT, ids.data()), S_OK);
    EXPECT_EQ(ids[0], 15);
    EXPECT_EQ(ids[1], 1);
    std::array<VARIANT, 1> raw{Variant(u"C:\\none.wav").detach()};
    DISPPARAMS parameters{raw.data(), &ids[1], 1, 1};
    EXPECT_EQ(character.dispatch()->Invoke(15, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                                           nullptr, nullptr),
              S_OK);
    VariantClear(raw.data());
}

// All that the program offers; espeak-ng has a voice for each of them.
TEST_F(Automation, CharactersSpeakThirtyOneLanguages) {
    Object character = load(u"a");
    for (const std::int32_t language :
         {1025, 1069, 1050, 1029, 1030, 1043, 1033, 2057, 1035, 1036, 1031, 1032, 1037, 1038, 1040, 1041,
          1042, 1044, 1045, 2070, 1046, 1048, 1049, 2052, 1051, 1060, 3082, 1053, 1054, 1028, 1055}) {
        character.put(u"LanguageID", Variant(language));
        EXPECT_EQ(character.get(u"LanguageID").toInt32(), language);
    }
    // In the last of them they are heard.
    character.call(u"Show", {Variant(true)});
    Object spoken = request(character, u"Speak", {Variant(u"Günaydın")});
    EXPECT_TRUE(over(spoken));
    EXPECT_EQ(status(spoken), 0);
}

TEST_F(Automation, ALanguageWithoutAVoiceLeavesTheOldOne) {
    Object character = load(u"a");
    character.put(u"LanguageID", Variant(std::int32_t{1023}));
    EXPECT_EQ(character.get(u"LanguageID").toInt32(), 1033);
    character.put(u"LanguageID", Variant(std::int32_t{-7}));
    EXPECT_EQ(character.get(u"LanguageID").toInt32(), 1033);
}

TEST_F(Automation, CommandsKeepTheirOrderAndSettings) {
    Object character = load(u"a");
    Object commands = character.object(u"Commands");
    commands.call(u"Add",
                  {Variant(u"aQ%"), Variant(u"&Quick Message"), Variant::omitted(), Variant(true), Variant(true)});
    Object spacer(commands.call(u"Add", {Variant(u"a1%"), Variant(u" "), Variant(u""), Variant(false), Variant(true)})
                      .toObject());
    EXPECT_EQ(commands.get(u"Count").toInt32(), 2);
    EXPECT_FALSE(spacer.get(u"Enabled").toBool());
    EXPECT_EQ(spacer.get(u"Caption").toText(), u" ");
    EXPECT_TRUE(FAILED(failure([&] { commands.call(u"Add", {Variant(u"AQ%")}); })));
    EXPECT_EQ(commands.object(u"Command", {Variant(u"aQ%")}).get(u"Caption").toText(), u"&Quick Message");
    commands.call(u"Remove", {Variant(u"aQ%")});
    EXPECT_TRUE(FAILED(failure([&] { commands.call(u"Remove", {Variant(u"aQ%")}); })));
    commands.call(u"RemoveAll");
    EXPECT_EQ(commands.get(u"Count").toInt32(), 0);
    EXPECT_TRUE(FAILED(failure([&] { spacer.get(u"Caption"); })));
}

TEST_F(Automation, DescribesTheCharacter) {
    Object character = load(u"a");
    EXPECT_EQ(character.get(u"Description").toText(), u"A small disc.");
    EXPECT_EQ(character.get(u"ExtraData").toText(), u"Extra");
    EXPECT_EQ(character.get(u"GUID").toText(), u"{67452301-AB89-EFCD-0123-456789ABCDEF}");
    EXPECT_EQ(character.get(u"OriginalWidth").toInt16(), 64);
    EXPECT_EQ(character.get(u"Version").toText(), u"2.0");
    character.put(u"Width", Variant(std::int16_t{128}));
    EXPECT_EQ(character.get(u"Width").toInt16(), 128);
    EXPECT_EQ(character.get(u"OriginalWidth").toInt16(), 64);
}

TEST_F(Automation, ACharacterGrowsToItsBoundAndNoFurther) {
    Object character = load(u"a");
    Object show = request(character, u"Show", {Variant(true)});
    ASSERT_TRUE(over(show));
    for (const std::int16_t side : {std::int16_t{12000}, std::numeric_limits<std::int16_t>::max()}) {
        character.put(u"Width", Variant(side));
        character.put(u"Height", Variant(side));
        EXPECT_EQ(character.get(u"Width").toInt16(), acs::largest_side);
        EXPECT_EQ(character.get(u"Height").toInt16(), acs::largest_side);
    }
    const HWND window = FindWindowW(L"AgentServerCharacter", nullptr);
    EXPECT_TRUE(pumpUntil([&] {
        RECT area{};
        return GetWindowRect(window, &area) && area.right - area.left == acs::largest_side &&
               area.bottom - area.top == acs::largest_side;
    }));
    for (const std::int16_t side : {std::int16_t{0}, std::int16_t{-1}}) {
        EXPECT_EQ(failure([&] { character.put(u"Width", Variant(side)); }), E_INVALIDARG);
        EXPECT_EQ(failure([&] { character.put(u"Height", Variant(side)); }), E_INVALIDARG);
    }
    EXPECT_EQ(character.get(u"Width").toInt16(), acs::largest_side);
}

TEST_F(Automation, WaitAndInterruptWorkBetweenCharacters) {
    Object a = load(u"a");
    Object b = load(u"b");
    request(a, u"Show", {Variant(true)});
    request(b, u"Show", {Variant(true)});
    Object loop = request(a, u"Play", {Variant(u"Loop")});
    EXPECT_TRUE(pumpUntil([&] { return status(loop) == 4; }));
    Object interrupt = request(b, u"Interrupt", {Variant(loop.dispatch())});
    EXPECT_TRUE(over(interrupt));
    EXPECT_EQ(status(loop), 3);
    Object wave = request(a, u"Play", {Variant(u"Wave")});
    Object wait = request(b, u"Wait", {Variant(wave.dispatch())});
    EXPECT_TRUE(over(wait));
    EXPECT_EQ(status(wave), 0);
}

TEST_F(Automation, StopAllTakesItsKindsByName) {
    Object character = load(u"a");
    request(character, u"Show", {Variant(true)});
    Object loop = request(character, u"Play", {Variant(u"Loop")});
    EXPECT_TRUE(pumpUntil([&] { return status(loop) == 4; }));
    EXPECT_TRUE(FAILED(failure([&] { character.call(u"StopAll", {Variant(u"Play,Dance")}); })));
    EXPECT_EQ(status(loop), 4);
    character.call(u"StopAll", {Variant(u"get, Speak")});
    EXPECT_EQ(status(loop), 4);
    character.call(u"StopAll", {Variant(u"move,play")});
    EXPECT_EQ(status(loop), 3);
}

TEST_F(Automation, TheSheetShowsItsPages) {
    Object sheet = control.object(u"PropertySheet");
    sheet.put(u"Page", Variant(u"Output"));
    EXPECT_EQ(sheet.get(u"Page").toText(), u"Output");
    EXPECT_TRUE(FAILED(failure([&] { sheet.put(u"Page", Variant(u"Other")); })));
    EXPECT_FALSE(sheet.get(u"Visible").toBool());
    sheet.put(u"Visible", Variant(true));
    EXPECT_TRUE(sheet.get(u"Visible").toBool());
    EXPECT_GT(sheet.get(u"Width").toInt16(), 100);
    const HWND window = FindWindowW(L"AgentServerProperties", nullptr);
    ASSERT_TRUE(window);
    const HWND box = buttonOf(window, L"&Play spoken audio");
    ASSERT_TRUE(box);
    for (const char16_t* page : {u"Speech", u"Copyright", u"Listening", u"Voices", u"Keys", u"Output"}) {
        sheet.put(u"Page", Variant(page));
        screenshot(("agent-properties-" + murmelix::toUtf8(page)).c_str());
    }
    SendMessageW(box, BM_CLICK, 0, 0);
    EXPECT_FALSE(control.object(u"AudioOutput").get(u"Enabled").toBool());
    SendMessageW(box, BM_CLICK, 0, 0);
    EXPECT_TRUE(control.object(u"AudioOutput").get(u"Enabled").toBool());
    sheet.put(u"Visible", Variant(false));
    EXPECT_FALSE(sheet.get(u"Visible").toBool());
}

TEST_F(Automation, TheSheetLetsCharactersLeaveTheScreen) {
    Object character = load(u"a");
    request(character, u"Show", {Variant(true)});
    Object sheet = control.object(u"PropertySheet");
    sheet.put(u"Page", Variant(u"Output"));
    sheet.put(u"Visible", Variant(true));
    const HWND box = buttonOf(FindWindowW(L"AgentServerProperties", nullptr), L"&Keep characters on the screen");
    ASSERT_TRUE(box);
    EXPECT_EQ(SendMessageW(box, BM_GETCHECK, 0, 0), BST_CHECKED);
    const auto left = [&] { return character.get(u"Left").toInt16(); };
    const auto move_over_the_edge = [&] {
        Object move =
            request(character, u"MoveTo", {Variant(std::int16_t{-20}), Variant(std::int16_t{50}), Variant(0)});
        EXPECT_TRUE(over(move));
    };
    move_over_the_edge();
    EXPECT_EQ(left(), 0);
    SendMessageW(box, BM_CLICK, 0, 0);
    move_over_the_edge();
    EXPECT_EQ(left(), -20);
    SendMessageW(box, BM_CLICK, 0, 0);
    EXPECT_EQ(left(), 0) << "back at once";
}

TEST_F(Automation, TheSheetSetsTheSizeOfCharacters) {
    Object character = load(u"a");
    using Size = std::pair<int, int>;
    const auto size = [&] { return Size(character.get(u"Width").toInt16(), character.get(u"Height").toInt16()); };
    EXPECT_EQ(size(), Size(64, 48));
    Object sheet = control.object(u"PropertySheet");
    sheet.put(u"Page", Variant(u"Output"));
    sheet.put(u"Visible", Variant(true));
    const HWND page = GetParent(buttonOf(FindWindowW(L"AgentServerProperties", nullptr), L"&Play spoken audio"));
    const HWND list = FindWindowExW(page, nullptr, L"ComboBox", nullptr);
    ASSERT_TRUE(list);
    const auto choose = [&](const wchar_t* entry) {
        SendMessageW(list, CB_SELECTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(entry));
        SendMessageW(GetParent(list), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(list));
    };
    choose(L"250 %");
    EXPECT_TRUE(pumpUntil([&] { return size() == Size(160, 120); }));
    Object late = load(u"late");
    EXPECT_EQ(late.get(u"Width").toInt16(), 160);
    EXPECT_EQ(late.get(u"OriginalWidth").toInt16(), 64);
    screenshot("agent-properties-size");
    choose(L"100 %");
    EXPECT_TRUE(pumpUntil([&] { return size() == Size(64, 48); }));
}

TEST_F(Automation, TheSheetHearsTheKeyboard) {
    Object sheet = control.object(u"PropertySheet");
    const auto heard = [&] { return control.object(u"AudioOutput").get(u"Enabled").toBool(); };
    sheet.put(u"Page", Variant(u"Output"));
    sheet.put(u"Visible", Variant(true));
    const HWND window = FindWindowW(L"AgentServerProperties", nullptr);
    const HWND close = buttonOf(window, L"Close");
    ASSERT_TRUE(close);
    for (const bool expected : {false, true}) {
        PostMessageW(close, WM_SYSCHAR, L'p', 0);
        EXPECT_TRUE(pumpUntil([&] { return heard() == expected; }));
    }
    for (const WPARAM key : {VK_ESCAPE, VK_RETURN}) {
        sheet.put(u"Visible", Variant(true));
        PostMessageW(close, WM_KEYDOWN, key, 0);
        EXPECT_TRUE(pumpUntil([&] { return !sheet.get(u"Visible").toBool(); })) << key;
    }
    EXPECT_EQ(sheet.get(u"Page").toText(), u"Output");
}

TEST_F(Automation, TextOfAnyKindIsSpoken) {
    Object character = load(u"a");
    request(character, u"Show", {Variant(true)});
    for (const std::u16string& text :
         {std::u16string(u"\xD800 alone"), std::u16string(u"nul\0inside", 10), std::u16string(u"\\Vol=0\\\\broken="),
          std::u16string(u"\u05E9\u05DC\u05D5\u05DD \u0645\u0631\u062D\u0628\u0627"), std::u16string(u"||||"),
          std::u16string()}) {
        Object speak = request(character, u"Speak", {Variant(text)});
        EXPECT_TRUE(over(speak));
        EXPECT_EQ(status(speak), 0);
    }
    Object endless = request(character, u"Speak", {Variant(std::u16string(500'000, u'x'))});
    EXPECT_TRUE(pumpUntil([&] { return status(endless) == 4; }));
    character.call(u"Stop");
    EXPECT_EQ(status(endless), 3);
}

TEST_F(Automation, AThousandRequestsAreTaken) {
    Object character = load(u"a");
    Object last;
    for (int i = 0; i < 1000; ++i) {
        last = request(character, u"Play", {Variant(u"Wave")});
    }
    EXPECT_TRUE(over(last));
    EXPECT_EQ(status(last), 1);
}

} // namespace
} // namespace agent
