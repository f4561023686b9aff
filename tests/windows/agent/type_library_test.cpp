// What development tools, script hosts and programs that bind early see of the server: its type library, the source of
// its events, and its dual interfaces.
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent.h"

#include "common/com/server.h"
#include "common/text.h"
#include "tests/windows/agent/server_process.h"

namespace agent {
namespace {

using murmelix::com::Bstr;
using murmelix::com::Object;
using murmelix::com::Ptr;
using murmelix::com::Variant;
using murmelix::com::wide;

constexpr GUID library_id{0xF5BE8BC2, 0x7DE6, 0x11D0, {0x91, 0xFE, 0x00, 0xC0, 0x4F, 0xD7, 0x01, 0xA5}};

struct Described {
    DISPID id = DISPID_UNKNOWN;
    bool get = false, put = false, method = false;
    std::vector<std::wstring> parameters;
};
using Description = std::map<std::wstring, Described>;

// The members of its own that a type has.
Description membersOf(ITypeInfo& type) {
    Description all;
    TYPEATTR* attributes = nullptr;
    EXPECT_EQ(type.GetTypeAttr(&attributes), S_OK);
    for (UINT i = 0; attributes && i < attributes->cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        if (FAILED(type.GetFuncDesc(i, &function))) {
            ADD_FAILURE() << "function " << i;
            continue;
        }
        std::array<BSTR, 16> names{};
        UINT count = 0;
        type.GetNames(function->memid, names.data(), names.size(), &count);
        const bool of_base = (function->wFuncFlags & FUNCFLAG_FRESTRICTED) != 0;
        if (count > 0 && !of_base) {
            Described& member = all[names[0]];
            member.id = function->memid;
            member.get |= function->invkind == INVOKE_PROPERTYGET;
            member.put |= function->invkind == INVOKE_PROPERTYPUT;
            member.method |= function->invkind == INVOKE_FUNC;
            if (function->invkind != INVOKE_PROPERTYPUT) {
                member.parameters.assign(names.begin() + 1, names.begin() + count);
            }
        }
        for (BSTR name : names) {
            SysFreeString(name);
        }
        type.ReleaseFuncDesc(function);
    }
    if (attributes) {
        type.ReleaseTypeAttr(attributes);
    }
    return all;
}

std::u16string nameOf(ITypeInfo& type) {
    Bstr name;
    type.GetDocumentation(MEMBERID_NIL, name.out(), nullptr, nullptr, nullptr);
    return name.text();
}

Ptr<ITypeInfo> typeOf(const Object& object) {
    Ptr<ITypeInfo> type;
    UINT count = 0;
    EXPECT_EQ(object.dispatch()->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(object.dispatch()->GetTypeInfo(0, LOCALE_USER_DEFAULT, type.out()), S_OK);
    return type;
}

// A call without arguments, which no member that wants some carries out.
bool takes(const Object& object, DISPID id, WORD flags) {
    DISPPARAMS none{};
    EXCEPINFO exception{};
    Variant result;
    const HRESULT done =
        object.dispatch()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &none, result.out(), &exception, nullptr);
    SysFreeString(exception.bstrDescription);
    return done != DISP_E_MEMBERNOTFOUND;
}

template <class Interface>
Ptr<Interface> early(const Object& object) {
    return Ptr<IDispatch>(object.dispatch()).as<Interface>(__uuidof(Interface));
}

struct TypeLibrary : testing::Test {
    RunningServer server;
    Object control = server.control();
    Object characters = control.object(u"Characters");
    Object character = load(u"a");

    Object load(const char16_t* id) {
        characters.call(u"Load", {Variant(id), Variant(smallCharacterFile())});
        return characters.object(u"Character", {Variant(id)});
    }
};

TEST_F(TypeLibrary, DescribesWhatTheObjectsAnswer) {
    Object commands = character.object(u"Commands");
    const std::vector<std::pair<std::u16string, Object>> objects{
        {u"IAgent", control},
        {u"ICharacters", characters},
        {u"ICharacter", character},
        {u"IBalloon", character.object(u"Balloon")},
        {u"IAnimationNames", character.object(u"AnimationNames")},
        {u"ICommands", commands},
        {u"ICommand", Object(commands.call(u"Add", {Variant(u"one")}).toObject())},
        {u"IRequest", Object(character.call(u"Show").toObject())},
        {u"IAudioOutput", control.object(u"AudioOutput")},
        {u"ISpeechInput", control.object(u"SpeechInput")},
        {u"IPropertySheet", control.object(u"PropertySheet")},
        {u"ICommandsWindow", control.object(u"CommandsWindow")},
    };
    // Called with an index, these do what their default members would.
    const std::set<std::wstring> indexed{L"Characters", L"Commands"};
    for (const auto& [name, object] : objects) {
        const auto type = typeOf(object);
        ASSERT_TRUE(type);
        EXPECT_EQ(nameOf(*type.get()), name);
        const Description described = membersOf(*type.get());
        EXPECT_FALSE(described.empty());
        for (const auto& [member, facts] : described) {
            SCOPED_TRACE(
                murmelix::toUtf8(name + u"." + std::u16string(murmelix::com::narrow(member.data(), member.size()))));
            std::vector<std::wstring> words{member};
            words.insert(words.end(), facts.parameters.begin(), facts.parameters.end());
            std::vector<LPOLESTR> names;
            for (std::wstring& word : words) {
                names.push_back(word.data());
            }
            std::vector<DISPID> ids(names.size());
            EXPECT_EQ(object.dispatch()->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()),
                                                       LOCALE_USER_DEFAULT, ids.data()),
                      S_OK);
            EXPECT_EQ(ids[0], facts.id);
            for (std::size_t i = 1; i < ids.size(); ++i) {
                EXPECT_EQ(ids[i], static_cast<DISPID>(i - 1));
            }
            EXPECT_NE(facts.method, facts.get) << "a method or a property";
            EXPECT_EQ(takes(object, facts.id, DISPATCH_PROPERTYPUT), facts.put);
        }
    }
}

TEST_F(TypeLibrary, NamesTheClassAndTheSourceOfItsEvents) {
    const auto info = Ptr<IDispatch>(control.dispatch()).as<IProvideClassInfo2>(IID_IProvideClassInfo2);
    ASSERT_TRUE(info);
    GUID events{};
    EXPECT_EQ(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
    EXPECT_EQ(events, iid_agent_events);
    Ptr<ITypeInfo> of_class;
    ASSERT_EQ(info->GetClassInfo(of_class.out()), S_OK);
    EXPECT_EQ(nameOf(*of_class.get()), u"Agent");
    // As a script host finds what to call for an event.
    Ptr<ITypeLib> library;
    UINT index = 0;
    ASSERT_EQ(of_class->GetContainingTypeLib(library.out(), &index), S_OK);
    Ptr<ITypeInfo> source;
    ASSERT_EQ(library->GetTypeInfoOfGuid(events, source.out()), S_OK);
    const Description described = membersOf(*source.get());
    const std::map<std::wstring, DISPID> published{{L"ActivateInput", 1},
                                                   {L"Click", 2},
                                                   {L"DeactivateInput", 3},
                                                   {L"DblClick", 4},
                                                   {L"DragStart", 5},
                                                   {L"DragComplete", 6},
                                                   {L"Hide", 7},
                                                   {L"RequestStart", 9},
                                                   {L"RequestComplete", 11},
                                                   {L"Shutdown", 12},
                                                   {L"Show", 15},
                                                   {L"Bookmark", 16},
                                                   {L"Command", 17},
                                                   {L"IdleStart", 19},
                                                   {L"IdleComplete", 20},
                                                   {L"Restart", 21},
                                                   {L"Move", 22},
                                                   {L"Size", 23},
                                                   {L"BalloonShow", 24},
                                                   {L"BalloonHide", 25},
                                                   {L"ListenStart", 27},
                                                   {L"ListenComplete", 28},
                                                   {L"AgentPropertyChange", 31},
                                                   {L"ActiveClientChange", 32}};
    EXPECT_EQ(described.size(), published.size());
    for (const auto& [name, id] : published) {
        const auto found = described.find(name);
        ASSERT_NE(found, described.end()) << murmelix::toUtf8(murmelix::com::narrow(name.data(), name.size()));
        EXPECT_EQ(found->second.id, id);
    }
}

TEST_F(TypeLibrary, EachObjectCanBeCalledByItsTable) {
    const auto agent = early<IAgent>(control);
    ASSERT_TRUE(agent);
    VARIANT_BOOL connected = VARIANT_FALSE;
    EXPECT_EQ(agent->get_Connected(&connected), S_OK);
    EXPECT_EQ(connected, VARIANT_TRUE);
    Ptr<ICharacters> all;
    ASSERT_EQ(agent->get_Characters(all.out()), S_OK);
    Ptr<ICharacter> one;
    ASSERT_EQ(all->get_Item(Bstr(u"a").get(), one.out()), S_OK);
    Bstr name;
    EXPECT_EQ(one->get_Name(name.out()), S_OK);
    EXPECT_EQ(name.text(), u"Dot");
    EXPECT_EQ(one->put_Name(Bstr(u"Spot").get()), S_OK);
    EXPECT_EQ(character.get(u"Name").toText(), u"Spot");
    EXPECT_EQ(one->put_Left(321), S_OK);
    SHORT left = 0;
    EXPECT_EQ(one->get_Left(&left), S_OK);
    EXPECT_EQ(left, 321);
    const Variant omitted = Variant::omitted();
    Ptr<IRequest> shown;
    ASSERT_EQ(one->Show(omitted.raw(), shown.out()), S_OK);
    LONG status = 2;
    EXPECT_TRUE(pumpUntil([&] { return shown->get_Status(&status) == S_OK && status != 2 && status != 4; }));
    EXPECT_EQ(status, 0);
    Ptr<IRequest> moved;
    ASSERT_EQ(one->MoveTo(100, 120, Variant(std::int32_t{0}).raw(), moved.out()), S_OK);
    Ptr<IRequest> waited;
    EXPECT_EQ(one->Wait(shown.get(), waited.out()), S_OK) << "a request is an object that Wait takes";
    Ptr<IRequest> none;
    EXPECT_EQ(one->Play(Bstr(u"Nonsense").get(), none.out()), HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
    EXPECT_FALSE(none);
    Ptr<IBalloon> balloon;
    ASSERT_EQ(one->get_Balloon(balloon.out()), S_OK);
    LONG style = 0;
    EXPECT_EQ(balloon->get_Style(&style), S_OK);
    EXPECT_EQ(style & 1, 1);
    Ptr<ICommands> commands;
    ASSERT_EQ(one->get_Commands(commands.out()), S_OK);
    Ptr<ICommand> command;
    ASSERT_EQ(commands->Add(Bstr(u"hello").get(), Variant(u"&Hello").raw(), omitted.raw(), omitted.raw(),
                            Variant(false).raw(), command.out()),
              S_OK);
    VARIANT_BOOL visible = VARIANT_TRUE;
    EXPECT_EQ(command->get_Visible(&visible), S_OK);
    EXPECT_EQ(visible, VARIANT_FALSE);
}

TEST_F(TypeLibrary, ObjectsTellThatTheirErrorsHaveWords) {
    const auto one = early<ICharacter>(character);
    ASSERT_TRUE(one);
    const auto errors = one.as<ISupportErrorInfo>(IID_ISupportErrorInfo);
    ASSERT_TRUE(errors) << "asked for by those who then look for the words";
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(__uuidof(ICharacter)), S_OK);
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(__uuidof(IAgent)), S_FALSE) << "another object's";
    EXPECT_TRUE(errors.as<ICharacter>(__uuidof(ICharacter))) << "it is the same object";
}

TEST_F(TypeLibrary, CollectionsAreEnumeratedByTheirTable) {
    const auto one = early<ICharacter>(character);
    ASSERT_TRUE(one);
    Ptr<IAnimationNames> names;
    ASSERT_EQ(one->get_AnimationNames(names.out()), S_OK);
    Ptr<IUnknown> unknown;
    ASSERT_EQ(names->get_Enum(unknown.out()), S_OK);
    const auto each = unknown.as<IEnumVARIANT>(IID_IEnumVARIANT);
    ASSERT_TRUE(each);
    std::vector<std::u16string> found;
    Variant name;
    while (each->Next(1, name.out(), nullptr) == S_OK) {
        found.push_back(name.toText());
    }
    EXPECT_THAT(found, testing::ElementsAre(u"RestPose", u"Show", u"Hide", u"Wave", u"Blue", u"Loop"));
}

std::u16string lineOf(const char* script) {
    const std::u16string file = temporaryFile(u"script.vbs");
    {
        std::ofstream out(std::filesystem::path(wide(file)), std::ios::binary);
        out << script;
    }
    const std::u16string told = temporaryFile(u"script.txt");
    Process(u"cmd.exe /c cscript.exe //nologo \"" + file + u"\" \"" + smallCharacterFile() + u"\" > \"" + told + u"\"")
        .exitStatus();
    std::string line = contents(told);
    line.erase(line.find_last_not_of("\r\n") + 1);
    return murmelix::fromUtf8(line);
}

TEST_F(TypeLibrary, AScriptAsksForTheNamesOfTypes) {
    EXPECT_EQ(lineOf("Set a = CreateObject(\"Agent.Control.2\")\r\n"
                     "a.Characters.Load \"x\", WScript.Arguments(0)\r\n"
                     "Set c = a.Characters(\"x\")\r\n"
                     "WScript.Echo TypeName(a) & \" \" & TypeName(a.Characters) & \" \" & TypeName(c) & \" \" & "
                     "TypeName(c.Show) & \" \" & TypeName(c.Name) & \" \" & TypeName(c.Left)\r\n"),
              u"IAgent ICharacters ICharacter IRequest String Integer");
}

Ptr<ITypeLib> registeredLibrary() {
    Ptr<ITypeLib> found;
    return SUCCEEDED(LoadRegTypeLib(library_id, 2, 0, 0, found.out())) ? found : Ptr<ITypeLib>();
}

TEST(TypeLibraryRegistration, ComesAndGoesWithTheServers) {
    EXPECT_TRUE(registeredLibrary());
    EXPECT_EQ(Process(serverProgram() + u" /unregserver").exitStatus(), 0U);
    EXPECT_FALSE(registeredLibrary());
    EXPECT_EQ(Process(serverProgram() + u" /regserver").exitStatus(), 0U);
    EXPECT_TRUE(registeredLibrary());
}

TEST(TypeLibraryRegistration, LeavesThatOfAnotherAlone) {
    constexpr wchar_t key[] = L"Software\\Classes\\TypeLib\\{F5BE8BC2-7DE6-11D0-91FE-00C04FD701A5}\\2.0";
    constexpr wchar_t another[] = L"Another's library";
    ASSERT_EQ(Process(serverProgram() + u" /unregserver").exitStatus(), 0U);
    ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, key, nullptr, REG_SZ, another, sizeof another), ERROR_SUCCESS);
    EXPECT_EQ(Process(serverProgram() + u" /regserver").exitStatus(), 0U) << "the server is registered all the same";
    EXPECT_FALSE(registeredLibrary());
    EXPECT_EQ(Process(serverProgram() + u" /unregserver").exitStatus(), 0U);
    std::array<wchar_t, 64> left{};
    DWORD bytes = sizeof left;
    EXPECT_EQ(RegGetValueW(HKEY_LOCAL_MACHINE, key, nullptr, RRF_RT_REG_SZ, nullptr, left.data(), &bytes),
              ERROR_SUCCESS);
    EXPECT_STREQ(left.data(), another);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"Software\\Classes\\TypeLib\\{F5BE8BC2-7DE6-11D0-91FE-00C04FD701A5}");
    EXPECT_EQ(Process(serverProgram() + u" /regserver").exitStatus(), 0U);
}

} // namespace
} // namespace agent
