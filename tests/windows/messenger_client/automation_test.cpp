// The automation as another process meets it.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "messenger.h"

#include "common/com/counted.h"
#include "common/com/type_library.h"
#include "common/text.h"
#include "companions/messenger/chat/control.h"
#include "tests/windows/messenger_client/client_process.h"
#include "tests/windows/support/examples.h"

namespace messenger_client {

namespace {

using murmelix::com::Error;
using murmelix::com::isGone;
using murmelix::com::Object;
using murmelix::com::Ptr;
using murmelix::com::Variant;
using murmelix::com::wide;
using testing::ElementsAre;

constexpr char16_t notice[] = u"Keep your password and card numbers to yourself: nobody needs them in a conversation.";

DISPID idOf(const Object& object, const wchar_t* name) {
    DISPID id = DISPID_UNKNOWN;
    auto* text = const_cast<wchar_t*>(name);
    object.dispatch()->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
    return id;
}

// As the type library writes it.
std::wstring describedName(const Object& object, DISPID id) {
    Ptr<ITypeInfo> type;
    murmelix::com::Bstr name;
    if (FAILED(object.dispatch()->GetTypeInfo(0, LOCALE_USER_DEFAULT, type.out())) ||
        FAILED(type->GetDocumentation(id, name.out(), nullptr, nullptr, nullptr))) {
        return {};
    }
    return name.get();
}

struct NamedId {
    const wchar_t* name;
    DISPID id;
};

HRESULT failureOf(const std::function<void()>& call, std::u16string* description = nullptr) {
    try {
        call();
        return S_OK;
    } catch (const Error& error) {
        if (description) {
            *description = error.description();
        }
        return error.result();
    }
}

double milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// A client with a conversation of Ann and Bob, signed in as me@x.
struct Automated : testing::Test {
    RunningClient client{u"/signin me@x /friendly Mia"};
    Object messenger = client.automation();
    Object window;

    void SetUp() override {
        ASSERT_EQ(client.command("add ann@x Ann"), 1);
        ASSERT_EQ(client.command("add bob@x Bob :)"), 1);
        window = messenger.object(u"InstantMessage", {Variant(u"ann@x")});
        ASSERT_EQ(client.command("join bob@x"), 1);
    }
};

using Members = Automated;
using Conversations = Automated;
using Events = Automated;
using Faulty = Automated;

TEST_F(Members, HaveTheirPublishedIds) {
    const std::vector<NamedId> of_messenger{{L"ReceiveFileDirectory", 1280},
                                            {L"StartVoice", 1281},
                                            {L"MyFriendlyName", 1282},
                                            {L"Window", 1283},
                                            {L"UnreadEmailCount", 1284},
                                            {L"ViewProfile", 1285},
                                            {L"GetContact", 1286},
                                            {L"OptionsPages", 1287},
                                            {L"AddContact", 1288},
                                            {L"FindContact", 1289},
                                            {L"InstantMessage", 1290},
                                            {L"Signout", 1291},
                                            {L"SendFile", 1292},
                                            {L"OpenInbox", 1293},
                                            {L"MyServiceName", 1294},
                                            {L"InviteApp", 1295},
                                            {L"MyPhoneNumber", 1296},
                                            {L"Signin", 1297},
                                            {L"SendMail", 1298},
                                            {L"AutoSignin", 1299},
                                            {L"Phone", 1300},
                                            {L"MediaWizard", 1301},
                                            {L"Page", 1302},
                                            {L"MyContacts", 1303},
                                            {L"MySigninName", 1304},
                                            {L"MyStatus", 1305},
                                            {L"MyProperty", 1306},
                                            {L"MyServiceId", 1307},
                                            {L"Services", 1308}};
    const std::vector<NamedId> of_window{{L"HWND", 2048},     {L"Left", 2049},     {L"Top", 2050},
                                         {L"Width", 2051},    {L"Height", 2052},   {L"Close", 2053},
                                         {L"Show", 2054},     {L"IsClosed", 2055}, {L"Property", 2056},
                                         {L"Contacts", 2057}, {L"History", 2058},  {L"AddContact", 2059}};
    const std::vector<NamedId> of_contact{{L"FriendlyName", 1536}, {L"Status", 1537},  {L"SigninName", 1538},
                                          {L"ServiceName", 1539},  {L"Blocked", 1540}, {L"IsSelf", 1541},
                                          {L"Property", 1542},     {L"CanPage", 1543}, {L"PhoneNumber", 1544},
                                          {L"ServiceId", 1545}};
    const std::vector<NamedId> of_contacts{{L"Item", 0}, {L"Count", 1792}, {L"Remove", 1793}, {L"_NewEnum", -4}};

    const Object contacts = window.object(u"Contacts");
    const Object contact = messenger.object(u"GetContact", {Variant(u"ann@x"), Variant(u"")});
    const auto check = [](const Object& object, const std::vector<NamedId>& members) {
        for (const auto& [name, id] : members) {
            EXPECT_EQ(idOf(object, name), id) << id;
            EXPECT_EQ(describedName(object, id), name);
        }
    };
    check(messenger, of_messenger);
    check(window, of_window);
    check(contact, of_contact);
    check(contacts, of_contacts);
    EXPECT_EQ(idOf(messenger, L"mystatus"), 1305) << "letter case does not matter";
    EXPECT_EQ(idOf(messenger, L"History"), DISPID_UNKNOWN);
}

TEST_F(Members, TellTheOwnAccount) {
    EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"me@x");
    EXPECT_EQ(messenger.get(u"MyFriendlyName").toText(), u"Mia");
    EXPECT_EQ(messenger.get(u"MyStatus").toInt32(), 2);
    EXPECT_EQ(messenger.get(u"UnreadEmailCount", {Variant(std::int32_t{0})}).toInt32(), 0);
    client.command("unread 7");
    EXPECT_EQ(messenger.get(u"UnreadEmailCount", {Variant(std::int32_t{0})}).toInt32(), 7);
    client.command("unread -1");
    EXPECT_EQ(messenger.get(u"UnreadEmailCount", {Variant(std::int32_t{0})}).toInt32(), -1);
    EXPECT_NE(messenger.get(u"ReceiveFileDirectory").toText(), u"");
    EXPECT_NE(messenger.get(u"MyServiceName").toText(), u"");
    EXPECT_NE(messenger.get(u"MyServiceId").toText(), u"");
    Object main = messenger.object(u"Window");
    EXPECT_EQ(main.get(u"HWND").toInt32(),
              static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(client.mainWindow())));
    EXPECT_FALSE(main.get(u"IsClosed").toBool());
}

TEST_F(Members, MyStatusCanBeSet) {
    messenger.put(u"MyStatus", Variant(std::int32_t{34}));
    EXPECT_EQ(messenger.get(u"MyStatus").toInt32(), 34);
    EXPECT_EQ(failureOf([&] { messenger.put(u"MyStatus", Variant(std::int32_t{77})); }), E_INVALIDARG);
    EXPECT_EQ(failureOf([&] { messenger.put(u"MyStatus", Variant(std::int32_t{1})); }), E_INVALIDARG);
    EXPECT_EQ(messenger.get(u"MyStatus").toInt32(), 34);
}

TEST_F(Members, WhatTheClientDoesNotHaveSaysSo) {
    for (const char16_t* name : {u"StartVoice", u"ViewProfile", u"OptionsPages", u"FindContact", u"SendFile",
                                 u"OpenInbox", u"InviteApp", u"SendMail", u"Phone", u"MediaWizard", u"Page"}) {
        std::u16string description;
        EXPECT_EQ(failureOf([&] { messenger.call(name); }, &description), E_NOTIMPL) << murmelix::toUtf8(name);
        EXPECT_TRUE(description.starts_with(u"This client has no ")) << murmelix::toUtf8(description);
    }
    EXPECT_EQ(failureOf([&] { messenger.get(u"Services"); }), E_NOTIMPL);
    EXPECT_EQ(failureOf([&] { messenger.get(u"MyProperty", {Variant(std::int32_t{1})}); }), E_NOTIMPL);
    EXPECT_EQ(failureOf([&] { window.get(u"Property", {Variant(std::int32_t{1})}); }), E_NOTIMPL);
}

TEST_F(Members, ContactsAreCountedListedAndRemoved) {
    Object contacts = messenger.object(u"MyContacts");
    EXPECT_EQ(contacts.get(u"Count").toInt32(), 2);
    EXPECT_EQ(contacts.object(u"Item", {Variant(std::int32_t{0})}).get(u"SigninName").toText(), u"ann@x");
    Object bob = contacts.object(u"Item", {Variant(std::int32_t{1})});
    EXPECT_EQ(bob.get(u"FriendlyName").toText(), u"Bob :)");
    EXPECT_EQ(bob.get(u"Status").toInt32(), 2);
    EXPECT_FALSE(bob.get(u"IsSelf").toBool());
    EXPECT_FALSE(bob.get(u"Blocked").toBool());
    bob.put(u"Blocked", Variant(true));
    EXPECT_TRUE(bob.get(u"Blocked").toBool());
    EXPECT_TRUE(messenger.object(u"GetContact", {Variant(u"ME@x")}).get(u"IsSelf").toBool());
    for (const std::int32_t index : {-1, 2, 1000}) {
        EXPECT_EQ(failureOf([&] { contacts.get(u"Item", {Variant(index)}); }), DISP_E_BADINDEX);
    }
    EXPECT_EQ(failureOf([&] { contacts.get(u"Item", {Variant(u"first")}); }), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(failureOf([&] { contacts.get(u"Item"); }), DISP_E_PARAMNOTOPTIONAL);

    std::vector<std::string> names;
    const Variant each = contacts.get(u"_NewEnum");
    const auto values = Ptr<IUnknown>(each.raw().punkVal).as<IEnumVARIANT>(IID_IEnumVARIANT);
    ASSERT_TRUE(values);
    Variant value;
    while (values->Next(1, value.out(), nullptr) == S_OK) {
        names.push_back(murmelix::toUtf8(Object(value.toObject()).get(u"SigninName").toText()));
    }
    EXPECT_THAT(names, ElementsAre("ann@x", "bob@x"));

    contacts.call(u"Remove", {Variant(bob.dispatch())});
    EXPECT_EQ(contacts.get(u"Count").toInt32(), 1);
    messenger.call(u"AddContact", {Variant(std::int32_t{0}), Variant(u"cy@x")});
    EXPECT_EQ(contacts.get(u"Count").toInt32(), 2);
}

// A contact of a program's own, which does something when it is asked for its SigninName.
class OwnContact final : public murmelix::com::Counted<IDispatch> {
  public:
    OwnContact(std::u16string name, std::function<void()> asked) : name_(std::move(name)), asked_(std::move(asked)) {}

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        *ids = 7;
        return std::wcscmp(*names, L"SigninName") == 0 ? S_OK : DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                     UINT*) override {
        asked_();
        *result = Variant(name_).detach();
        return S_OK;
    }

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IDispatch); }

    std::u16string name_;
    std::function<void()> asked_;
};

Variant ownContact(std::u16string name, std::function<void()> asked) {
    return Variant(Ptr<OwnContact>::adopt(new OwnContact(std::move(name), std::move(asked))));
}

TEST_F(Members, AnArgumentIsAskedForItsNameBeforeAnythingIsLookedUp) {
    Object contacts = messenger.object(u"MyContacts");
    contacts.call(u"Remove", {ownContact(u"bob@x", [&] { client.command("add eve@x Eve"); })});
    EXPECT_EQ(contacts.get(u"Count").toInt32(), 2);
    EXPECT_EQ(
        failureOf([&] { contacts.call(u"Remove", {ownContact(u"eve@x", [&] { client.command("remove eve@x"); })}); }),
        E_INVALIDARG)
        << "she is gone by then";
    EXPECT_EQ(failureOf([&] { window.call(u"AddContact", {ownContact(u"ann@x", [&] { window.call(u"Close"); })}); }),
              HRESULT_FROM_WIN32(ERROR_INVALID_WINDOW_HANDLE));
    EXPECT_EQ(failureOf([&] {
                  messenger.call(u"InstantMessage", {ownContact(u"ann@x", [&] { messenger.call(u"Signout"); })});
              }),
              HRESULT_FROM_WIN32(ERROR_NOT_LOGGED_ON));
    EXPECT_EQ(messenger.get(u"MyStatus").toInt32(), 1);
    EXPECT_EQ(failureOf([&] { messenger.call(u"GetContact", {Variant(static_cast<IDispatch*>(nullptr))}); }),
              E_INVALIDARG);
}

TEST_F(Members, ArgumentsOfAnySizeAreHarmless) {
    for (const std::int32_t extreme :
         {std::numeric_limits<std::int32_t>::min(), -40'000, 40'000, std::numeric_limits<std::int32_t>::max()}) {
        for (const char16_t* side : {u"Left", u"Top", u"Width", u"Height"}) {
            EXPECT_EQ(failureOf([&] { window.put(side, Variant(extreme)); }), E_INVALIDARG) << extreme;
        }
    }
    window.put(u"Width", Variant(std::int32_t{32'767}));
    window.put(u"Height", Variant(std::int32_t{-5}));
    Object contacts = messenger.object(u"MyContacts");
    const std::u16string name(500'000, u'n');
    messenger.call(u"AddContact", {Variant(std::int32_t{0}), Variant(name)});
    messenger.call(u"AddContact", {Variant(std::int32_t{0}), Variant(name)});
    EXPECT_EQ(contacts.get(u"Count").toInt32(), 3);
    EXPECT_EQ(contacts.object(u"Item", {Variant(std::int32_t{2})}).get(u"SigninName").toText(), name.substr(0, 16'384));
    EXPECT_NE(failureOf([&] {
                  messenger.call(u"GetContact", {Variant(std::u16string(20'000'000, u'n')), Variant(u"")});
              }),
              S_OK);
    messenger.call(u"Signin", {Variant(std::int32_t{0}), Variant(name), Variant(name)});
    EXPECT_EQ(messenger.get(u"MySigninName").toText(), name.substr(0, 16'384));
}

TEST_F(Members, SigninSignoutAndAutoSignin) {
    messenger.call(u"Signout");
    EXPECT_EQ(messenger.get(u"MyStatus").toInt32(), 1);
    for (const char16_t* name : {u"MySigninName", u"MyFriendlyName", u"MyContacts"}) {
        EXPECT_EQ(failureOf([&] { messenger.get(name); }), HRESULT_FROM_WIN32(ERROR_NOT_LOGGED_ON));
    }
    EXPECT_EQ(failureOf([&] { messenger.call(u"InstantMessage", {Variant(u"ann@x")}); }),
              HRESULT_FROM_WIN32(ERROR_NOT_LOGGED_ON));
    EXPECT_TRUE(window.get(u"IsClosed").toBool());
    messenger.call(u"Signin", {Variant(std::int32_t{0}), Variant(u"kim@x"), Variant(u"secret")});
    EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"kim@x");
    EXPECT_EQ(messenger.get(u"MyFriendlyName").toText(), u"kim");
    messenger.call(u"Signout");
    messenger.call(u"AutoSignin");
    EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"you@messenger.example");
}

TEST_F(Conversations, TheHistoryHasItsLayout) {
    EXPECT_EQ(window.get(u"History").toText(), notice);
    client.command("say ann@x hello");
    client.command("say bob@x one\\ntwo");
    client.command("say me bye");
    const std::u16string expected = std::u16string(notice) + u"\r\nAnn says:\r\nhello"
                                                             u"\r\nBob :) says:\r\none\r\ntwo"
                                                             u"\r\nMia says:\r\nbye";
    EXPECT_EQ(window.get(u"History").toText(), expected);
    client.command("append \\u0000\\uD800");
    EXPECT_EQ(window.get(u"History").toText(), expected + std::u16string(u"\0\xD800", 2));
}

TEST_F(Conversations, ListTheirParticipants) {
    Object contacts = window.object(u"Contacts");
    EXPECT_EQ(contacts.get(u"Count").toInt32(), 2);
    EXPECT_EQ(contacts.object(u"Item", {Variant(std::int32_t{1})}).get(u"SigninName").toText(), u"bob@x");
    client.command("part ann@x");
    EXPECT_EQ(contacts.get(u"Count").toInt32(), 1);
    window.call(u"AddContact", {Variant(u"ann@x")});
    EXPECT_EQ(contacts.get(u"Count").toInt32(), 2);
    EXPECT_EQ(failureOf([&] { contacts.call(u"Remove", {Variant(u"ann@x")}); }), E_ACCESSDENIED);
}

TEST_F(Conversations, TellAndChangeTheirPlace) {
    window.put(u"Left", Variant(std::int32_t{111}));
    window.put(u"Top", Variant(std::int32_t{88}));
    window.put(u"Width", Variant(std::int32_t{600}));
    window.put(u"Height", Variant(std::int32_t{444}));
    RECT place{};
    GetWindowRect(client.conversationWindow(), &place);
    EXPECT_EQ(place.left, 111);
    EXPECT_EQ(place.top, 88);
    EXPECT_EQ(place.right - place.left, 600);
    EXPECT_EQ(place.bottom - place.top, 444);
    SetWindowPos(client.conversationWindow(), nullptr, 200, 150, 500, 400, SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(window.get(u"Left").toInt32(), 200);
    EXPECT_EQ(window.get(u"Top").toInt32(), 150);
    EXPECT_EQ(window.get(u"Width").toInt32(), 500);
    EXPECT_EQ(window.get(u"Height").toInt32(), 400);
    window.call(u"Show");
    EXPECT_EQ(window.get(u"HWND").toInt32(),
              static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(client.conversationWindow())));
}

TEST_F(Conversations, ClosedOnesStayObjects) {
    const std::int32_t handle = window.get(u"HWND").toInt32();
    EXPECT_FALSE(window.get(u"IsClosed").toBool());
    window.call(u"Close");
    EXPECT_TRUE(window.get(u"IsClosed").toBool());
    EXPECT_EQ(window.get(u"HWND").toInt32(), handle);
    for (const char16_t* name : {u"History", u"Contacts", u"Left"}) {
        const HRESULT result = failureOf([&] { window.get(name); });
        EXPECT_EQ(result, HRESULT_FROM_WIN32(ERROR_INVALID_WINDOW_HANDLE));
        EXPECT_FALSE(isGone(result)) << "the server is still there";
    }
    EXPECT_EQ(failureOf([&] { window.call(u"Close"); }), HRESULT_FROM_WIN32(ERROR_INVALID_WINDOW_HANDLE));
    EXPECT_TRUE(pumpUntil([&] { return !client.conversationWindow(); }));
    EXPECT_EQ(messenger.get(u"MyStatus").toInt32(), 2);
}

TEST_F(Conversations, TheSameThingIsTheSameObject) {
    const auto identity = [](const Object& object) {
        return Ptr<IDispatch>(object.dispatch()).as<IUnknown>(IID_IUnknown);
    };
    Object contacts = window.object(u"Contacts");
    const Object listed = contacts.object(u"Item", {Variant(std::int32_t{0})});
    const Object asked = messenger.object(u"GetContact", {Variant(u"ann@x")});
    EXPECT_EQ(identity(listed).get(), identity(asked).get());
    EXPECT_EQ(identity(client.automation()).get(), identity(messenger).get());
}

TEST_F(Conversations, AreCalledByTheirTablesToo) {
    const auto early = Ptr<IDispatch>(messenger.dispatch()).as<IMessenger3>(__uuidof(IMessenger3));
    ASSERT_TRUE(early);
    Ptr<IMessengerContacts> contacts;
    ASSERT_EQ(early->get_MyContacts(contacts.out()), S_OK);
    LONG count = 0;
    EXPECT_EQ(contacts->get_Count(&count), S_OK);
    EXPECT_EQ(count, 2);
    Ptr<IMessengerContact> ann;
    ASSERT_EQ(contacts->get_Item(0, ann.out()), S_OK);
    murmelix::com::Bstr name;
    EXPECT_EQ(ann->get_FriendlyName(name.out()), S_OK);
    EXPECT_EQ(name.text(), u"Ann");
    EXPECT_EQ(contacts->get_Item(99, ann.out()), DISP_E_BADINDEX);
    Ptr<IMessengerConversationWnd> opened;
    ASSERT_EQ(early->InstantMessage(Variant(u"bob@x").raw(), opened.out()), S_OK);
    murmelix::com::Bstr history;
    EXPECT_EQ(opened->get_History(history.out()), S_OK);
    EXPECT_EQ(history.text(), notice);
    EXPECT_EQ(early->put_MyStatus(10), S_OK);
    LONG status = 0;
    EXPECT_EQ(early->get_MyStatus(&status), S_OK);
    EXPECT_EQ(status, 10);
    for (const IID& iid : {__uuidof(IMessenger), __uuidof(IMessenger2)}) {
        EXPECT_TRUE(Ptr<IDispatch>(messenger.dispatch()).as<IDispatch>(iid));
    }
    EXPECT_TRUE(Ptr<IDispatch>(window.dispatch()).as<IMessengerWindow>(__uuidof(IMessengerWindow)));
}

TEST_F(Events, HaveTheirNamesInTheTypeLibrary) {
    const auto info = Ptr<IDispatch>(messenger.dispatch()).as<IProvideClassInfo2>(IID_IProvideClassInfo2);
    ASSERT_TRUE(info);
    GUID source{};
    ASSERT_EQ(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source), S_OK);
    EXPECT_EQ(source, __uuidof(DMessengerEvents));
    Ptr<ITypeInfo> of_class, of_events;
    Ptr<ITypeLib> library;
    UINT index = 0;
    ASSERT_EQ(info->GetClassInfo(of_class.out()), S_OK);
    ASSERT_EQ(of_class->GetContainingTypeLib(library.out(), &index), S_OK);
    ASSERT_EQ(library->GetTypeInfoOfGuid(source, of_events.out()), S_OK);
    for (const auto& [name, id] : std::vector<NamedId>{{L"OnSignin", 1024},
                                                       {L"OnSignout", 1025},
                                                       {L"OnContactListAdd", 1026},
                                                       {L"OnContactListRemove", 1027},
                                                       {L"OnContactFriendlyNameChange", 1028},
                                                       {L"OnMyFriendlyNameChange", 1029},
                                                       {L"OnContactStatusChange", 1030},
                                                       {L"OnMyStatusChange", 1031},
                                                       {L"OnAppShutdown", 1032},
                                                       {L"OnUnreadEmailChange", 1039},
                                                       {L"OnIMWindowCreated", 1041},
                                                       {L"OnIMWindowDestroyed", 1042},
                                                       {L"OnIMWindowContactAdded", 1043},
                                                       {L"OnIMWindowContactRemoved", 1044}}) {
        murmelix::com::Bstr found;
        EXPECT_EQ(of_events->GetDocumentation(id, found.out(), nullptr, nullptr, nullptr), S_OK) << id;
        EXPECT_EQ(std::wstring(found.get() ? found.get() : L""), name);
    }
}

TEST_F(Events, ArriveWithTheirIdsAndArgumentsInOrder) {
    Heard heard(messenger);
    for (const char* line : {"open bob@x", "join ann@x", "rename bob@x Bobby", "part bob@x", "status ann@x 50",
                             "status me 10", "rename me Mimi", "unread 3", "add cy@x Cy", "remove cy@x", "close",
                             "signout", "signin me@x Mia", "signin-fail 80004005"}) {
        EXPECT_EQ(client.command(line), 1) << line;
    }
    ASSERT_TRUE(pumpUntil([&] { return heard.has("1024 -2147467259"); }));
    // The first: a new listener is told of the window that is open already.
    EXPECT_THAT(heard.lines, ElementsAre("1041 window", "1041 window", "1043 ann@x window", "1028 0 bob@x Bob :)",
                                         "1044 bob@x window", "1030 ann@x 50", "1031 0 10", "1029 0 Mia",
                                         "1039 0 3 True", "1026 0 cy@x", "1027 0 cy@x", "1042 window", "1042 window",
                                         "1025", "1024 0", "1031 0 2", "1025", "1024 -2147467259"));
    EXPECT_TRUE(heard.windows.front().get(u"IsClosed").toBool());
}

TEST_F(Events, TheWindowOfAnEventCanBeAskedInsideTheEvent) {
    std::u16string history;
    std::int32_t handle = 0;
    const murmelix::com::Subscription subscription(
        messenger.dispatch(), iid_messenger_events, [&](DISPID event, std::vector<Variant>& arguments) {
            if (event == 1041) {
                history = Object(arguments.at(0).toObject()).get(u"History").toText();
            }
            if (event == 1042) {
                handle = Object(arguments.at(0).toObject()).get(u"HWND").toInt32();
            }
        });
    client.command("open bob@x");
    ASSERT_TRUE(pumpUntil([&] { return !history.empty(); }));
    EXPECT_EQ(history, notice);
    client.command("close");
    EXPECT_TRUE(pumpUntil([&] { return handle != 0; }));
}

// Something that happens in another process.
class Happening {
  public:
    explicit Happening(const char* name) : event_(CreateEventA(nullptr, TRUE, FALSE, name)) {}
    ~Happening() { CloseHandle(event_); }
    Happening(const Happening&) = delete;
    Happening& operator=(const Happening&) = delete;
    bool happens() const {
        return pumpUntil([this] { return WaitForSingleObject(event_, 0) == WAIT_OBJECT_0; });
    }

  private:
    HANDLE event_;
};

// This program, as another automation client; see main.cpp.
std::u16string thisProgram(const std::u16string& arguments) {
    std::vector<wchar_t> self(1024);
    GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size()));
    std::u16string line = u"\"";
    line += murmelix::com::narrow(self.data(), std::wcslen(self.data()));
    return line + u"\" " + arguments;
}

TEST_F(Events, AListenerThatHangsMakesNobodyWait) {
    const Happening ready("messenger_client_ready"), stuck("messenger_client_stuck");
    Process hanging(thisProgram(u"--hang messenger_client_ready messenger_client_stuck"));
    ASSERT_TRUE(ready.happens());
    Heard heard(messenger);
    client.command("status me 10");
    ASSERT_TRUE(pumpUntil([&] { return heard.has("1031 0 10"); }));
    ASSERT_TRUE(stuck.happens());

    EXPECT_EQ(messenger.get(u"MyStatus").toInt32(), 10);
    const std::size_t before = heard.lines.size();
    for (std::size_t i = 1; i <= 1100; ++i) { // more than may wait for one listener
        ASSERT_EQ(client.command(i % 2 ? "status ann@x 34" : "status ann@x 10"), 1);
        if (i % 100 == 0) {
            ASSERT_TRUE(pumpUntil([&] { return heard.lines.size() == before + i; })) << heard.lines.size();
        }
    }
    EXPECT_EQ(client.command("say ann@x hi"), 1);
    EXPECT_TRUE(window.get(u"History").toText().ends_with(u"hi"));
    client.command("rename me Mimi");
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1029 0 Mia"); }));
    EXPECT_TRUE(hanging.running());
    // Nor does who ends.
    EXPECT_EQ(client.command("shutdown"), 1);
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1032"); }));
    EXPECT_EQ(client.process().exitStatus(), 0U);
    EXPECT_TRUE(hanging.running());
}

TEST_F(Events, AHandlerMayUseTheAutomation) {
    std::vector<std::string> told;
    const murmelix::com::Subscription subscription(
        messenger.dispatch(), iid_messenger_events, [&](DISPID event, std::vector<Variant>& arguments) {
            if (event != 1031) {
                return;
            }
            Object another = client.automation(); // while the client waits for nobody
            told.push_back(murmelix::toUtf8(another.get(u"MySigninName").toText()));
            if (arguments.at(1).toInt32() == 10) {
                another.put(u"MyStatus", Variant(std::int32_t{34}));
                another.call(u"AddContact", {Variant(std::int32_t{0}), Variant(u"eve@x")});
            }
        });
    client.command("status me 10");
    EXPECT_TRUE(pumpUntil([&] { return told.size() == 2; }));
    EXPECT_THAT(told, ElementsAre("me@x", "me@x"));
    EXPECT_EQ(messenger.get(u"MyStatus").toInt32(), 34);
}

TEST_F(Events, AllListenersHearAndAKilledOneIsForgotten) {
    const Happening ready("messenger_client_listener");
    Process other(thisProgram(u"--listen messenger_client_listener"));
    ASSERT_TRUE(ready.happens());

    Object second = client.automation();
    Heard first_heard(messenger);
    Heard second_heard(second);
    client.command("status me 10");
    ASSERT_TRUE(pumpUntil([&] { return first_heard.has("1031 0 10") && second_heard.has("1031 0 10"); }));
    other.kill();
    ASSERT_TRUE(other.exitStatus());
    client.command("status me 14");
    client.command("status me 34");
    EXPECT_TRUE(pumpUntil([&] { return first_heard.has("1031 0 34") && second_heard.has("1031 0 34"); }));
    EXPECT_THAT(first_heard.lines, ElementsAre("1041 window", "1031 0 10", "1031 0 14", "1031 0 34"));
    EXPECT_EQ(messenger.get(u"MyStatus").toInt32(), 34);
}

TEST_F(Events, AListenerThatMeetsAFailureIsNotForgotten) {
    int events = 0;
    const murmelix::com::Subscription subscription(messenger.dispatch(), iid_messenger_events,
                                                   [&](DISPID, std::vector<Variant>&) {
                                                       ++events;
                                                       throw Error(RPC_E_DISCONNECTED);
                                                   });
    ASSERT_TRUE(pumpUntil([&] { return events == 1; })) << "the open window";
    client.command("status me 10");
    ASSERT_TRUE(pumpUntil([&] { return events == 2; }));
    client.command("status me 14");
    EXPECT_TRUE(pumpUntil([&] { return events == 3; }));
}

TEST_F(Events, ShutdownIsToldAndEndsTheProcess) {
    Heard heard(messenger);
    EXPECT_EQ(client.command("shutdown"), 1);
    EXPECT_TRUE(pumpUntil([&] { return heard.has("1032"); }));
    EXPECT_EQ(client.process().exitStatus(), 0U);
    EXPECT_TRUE(isGone(failureOf([&] { messenger.get(u"MyStatus"); })));
}

TEST_F(Faulty, ACallThatHangsReturnsInTheEnd) {
    client.command("say ann@x hi");
    EXPECT_EQ(client.command("hang 700 History"), 1);
    std::u16string history;
    EXPECT_GE(milliseconds([&] { history = window.get(u"History").toText(); }), 690);
    EXPECT_TRUE(history.ends_with(u"hi"));
}

TEST_F(Faulty, CallsFailAsOftenAsWanted) {
    EXPECT_EQ(client.command("fail 80010001 2 MyStatus"), 1);
    EXPECT_EQ(failureOf([&] { messenger.get(u"MyStatus"); }), RPC_E_CALL_REJECTED);
    EXPECT_EQ(failureOf([&] { messenger.get(u"MyStatus"); }), RPC_E_CALL_REJECTED);
    EXPECT_EQ(messenger.get(u"MyStatus").toInt32(), 2);
}

TEST_F(Faulty, AClientThatVanishesInACallIsGone) {
    EXPECT_EQ(client.command("vanish History"), 1);
    EXPECT_TRUE(isGone(failureOf([&] { window.get(u"History"); })));
    EXPECT_TRUE(client.process().exitStatus());
    EXPECT_TRUE(isGone(failureOf([&] { messenger.get(u"MyStatus"); })));
}

TEST_F(Conversations, AMillionUnitsOfHistoryStayUsable) {
    EXPECT_EQ(client.command("fill 1000000"), 1);
    std::vector<double> reads;
    std::u16string history;
    for (int i = 0; i < 9; ++i) {
        reads.push_back(milliseconds([&] { history = window.get(u"History").toText(); }));
    }
    std::sort(reads.begin(), reads.end());
    std::printf("reading 1 000 000 units of History: median %.1f ms\n", reads[4]);
    EXPECT_EQ(history.size(), std::u16string(notice).size() + 1'000'000);
    EXPECT_EQ(client.command("say ann@x after"), 1);
    EXPECT_TRUE(window.get(u"History").toText().ends_with(u"\r\nAnn says:\r\nafter"));
}

TEST(Activation, StartsTheClientSignedOutAndItEndsWithItsLastUser) {
    ASSERT_TRUE(pumpUntil([] { return !FindWindowW(L"MessengerClientMain", nullptr); }));
    {
        Object messenger = Object::create(u"Messenger.UIAutomation");
        EXPECT_EQ(messenger.get(u"MyStatus").toInt32(), 1);
        EXPECT_TRUE(FindWindowW(L"MessengerClientMain", nullptr));
    }
    EXPECT_TRUE(pumpUntil([] { return !FindWindowW(L"MessengerClientMain", nullptr); }));
}

TEST(Activation, ARunningClientIsFoundNotStartedAgain) {
    const RunningClient client(u"/signin me@x");
    Object messenger = client.automation();
    EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"me@x");
    EXPECT_EQ(Process(clientProgram()).exitStatus(), 23U) << "one client at a time";
}

TEST(Orders, AreRefusedByAClientThatWasNotStartedToTakeThem) {
    const auto window = [] { return FindWindowW(L"MessengerClientMain", nullptr); };
    ASSERT_TRUE(pumpUntil([&] { return !window(); }));
    const Process client(clientProgram() + u" /connect 0 /idle 0 /signin me@x");
    const auto order = [&](std::string line) {
        COPYDATASTRUCT data{control_message, static_cast<DWORD>(line.size()), line.data()};
        DWORD_PTR result = 0;
        SendMessageTimeoutW(window(), WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data), SMTO_NORMAL, 30'000, &result);
        return static_cast<Result>(result);
    };
    ASSERT_TRUE(pumpUntil([&] { return window() && order("?") == Result::no_orders; }));
    for (const char* line : {"vanish MySigninName", "signout", "rename me Somebody", "exit"}) {
        EXPECT_EQ(order(line), Result::no_orders) << line;
    }
    EXPECT_EQ(Process(clientProgram() + u" /send signout").exitStatus(), static_cast<DWORD>(Result::no_orders));
    {
        Object messenger = Object::create(u"Messenger.UIAutomation");
        EXPECT_EQ(messenger.get(u"MySigninName").toText(), u"me@x");
        EXPECT_EQ(messenger.get(u"MyFriendlyName").toText(), u"me");
    }
    PostMessageW(window(), WM_ENDSESSION, TRUE, 0); // its close box would only hide it
    EXPECT_EQ(client.exitStatus(), 0U);
}

TEST(Registering, IsDoneByAnOrdinaryStartWhereNobodyIsRegistered) {
    ASSERT_EQ(Process(clientProgram() + u" /unregserver").exitStatus(), 0U);
    EXPECT_THROW(Object::create(u"Messenger.UIAutomation"), murmelix::com::Error);
    {
        const RunningClient client(u"/signin me@x");
        EXPECT_EQ(Object::create(u"Messenger.UIAutomation").get(u"MySigninName").toText(), u"me@x");
    }
    EXPECT_EQ(Process(clientProgram() + u" /regserver").exitStatus(), 0U)
        << "what is there already may be written again";
}

TEST(Registering, NeverReplacesAnothersRegistration) {
    constexpr wchar_t key[] = L"Software\\Classes\\Messenger.UIAutomation\\CLSID";
    const std::u16string other = u"{00000000-1111-2222-3333-444444444444}";
    const auto set = [&](const std::u16string& clsid) {
        return RegSetKeyValueW(HKEY_LOCAL_MACHINE, key, nullptr, REG_SZ, wide(clsid),
                               static_cast<DWORD>((clsid.size() + 1) * 2));
    };
    ASSERT_EQ(set(other), ERROR_SUCCESS);
    EXPECT_EQ(Process(clientProgram() + u" /regserver").exitStatus(), 22U);
    Process client(clientProgram() + u" /signin me@x");
    EXPECT_TRUE(pumpUntil([] { return FindWindowW(L"MessengerClientMain", nullptr) != nullptr; }));
    PostMessageW(FindWindowW(L"MessengerClientMain", nullptr), WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(client.exitStatus(), 0U);
    EXPECT_EQ(Process(clientProgram() + u" /unregserver").exitStatus(), 0U);
    std::array<wchar_t, 64> now{};
    DWORD bytes = sizeof now;
    RegGetValueW(HKEY_LOCAL_MACHINE, key, nullptr, RRF_RT_REG_SZ, nullptr, now.data(), &bytes);
    EXPECT_EQ(std::u16string(murmelix::com::narrow(now.data(), std::wcslen(now.data()))), other);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"Software\\Classes\\Messenger.UIAutomation");
    EXPECT_EQ(Process(clientProgram() + u" /regserver").exitStatus(), 0U);
}

TEST(Examples, OfTheMessengerWritesWhatIsSaid) {
    const RunningClient client(u"/signin me@x /friendly Mia");
    ASSERT_EQ(client.command("add ann@x Ann"), 1);
    ASSERT_EQ(client.command("add bob@x Bob"), 1);
    const auto all = murmelix::test::examples();
    ASSERT_EQ(all.size(), 10U);
    EXPECT_EQ(murmelix::test::outputOfScript(all.back(), u""), all.back().output);
}

TEST_F(Members, AnswerAScript) {
    const std::u16string script = temporaryFile(u"script.vbs");
    {
        std::ofstream out(std::filesystem::path(wide(script)), std::ios::binary);
        out << "Set m = CreateObject(\"Messenger.UIAutomation\")\r\n"
               "names = m.MyFriendlyName\r\n"
               "For Each c In m.MyContacts\r\n"
               "names = names & \",\" & c.FriendlyName\r\n"
               "Next\r\n"
               "Set w = m.InstantMessage(m.MyContacts.Item(1))\r\n"
               "If names = \"Mia,Ann,Bob :)\" And w.Contacts.Item(0).SigninName = \"bob@x\" And Len(w.History) > 10 "
               "Then WScript.Quit 7\r\n"
               "WScript.Quit 8\r\n";
    }
    EXPECT_EQ(Process(u"cscript.exe //nologo \"" + script + u"\"").exitStatus(), 7U);
    std::filesystem::remove(std::filesystem::path(wide(script)));
}

} // namespace

} // namespace messenger_client
