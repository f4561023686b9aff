// Objects served from their tables, called as automation calls them.
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/com/client.h"
#include "common/com/dual.h"
#include "common/com/server.h"
#include "common/text.h"

namespace murmelix::com {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// An object with a default value, and whatever happens when it is asked for it.
class Valued final : public Served {
  public:
    explicit Valued(std::function<Variant()> value) : value_(std::move(value)) {}

  private:
    std::span<const Member> members() const override {
        static const Members<Valued> all{property(L"Value", DISPID_VALUE, &Valued::value)};
        return all;
    }
    Variant value() { return value_(); }

    std::function<Variant()> value_;
};

// What a caller names, asked for it as one likes.
struct Doubled {
    static Doubled of(const Variant& given) { return {2 * plain(given).toInt32()}; }
    std::int32_t number;
};

class Base : public Served {
  public:
    std::vector<std::string> log;

  protected:
    static const Members<Base>& baseMembers() {
        static const Members<Base> all{property(L"Name", 1, &Base::name, &Base::setName),
                                       property(L"Fixed", 2, [](const Base&) { return 7; })};
        return all;
    }
    std::span<const Member> members() const override { return baseMembers(); }
    void entering(const Member& member) override {
        log.push_back("enter " + toUtf8(narrow(member.name, std::wcslen(member.name))));
    }

  private:
    const std::u16string& name() const { return name_; }
    void setName(std::u16string name) { name_ = std::move(name); }

    std::u16string name_ = u"first";
};

class Thing final : public Base {
    std::span<const Member> members() const override {
        static const Members<Thing> all{
            baseMembers(),
            {method(L"Say", 10, &Thing::say, {L"What", L"Times", L"Loud"}),
             method(L"Take", 11, &Thing::take, {L"Object"}), method(L"Nothing", 12, &Thing::nothing),
             method(L"Double", 13, [](Thing&, Doubled doubled) { return doubled.number; }, {L"Number"}),
             method(L"Kind", 14, [](Thing&, const Variant& any) { return std::int32_t{any.type()}; }, {L"Any"}),
             property(L"Item", 15, &Thing::item, &Thing::setItem, {L"Index"}),
             method(L"Fail", 16, [](Thing&) { throw Error(E_ACCESSDENIED, u"not for you"); }),
             method(L"Small", 17, [](Thing&, std::int16_t small) { return small; }, {L"Small"})}};
        return all;
    }
    std::u16string say(const std::u16string& what, std::optional<std::int32_t> times, std::optional<bool> loud) {
        std::u16string all;
        for (std::int32_t i = 0; i < times.value_or(1); ++i) {
            all += what;
        }
        return loud.value_or(false) ? all + u"!" : all;
    }
    bool take(const Ptr<IDispatch>& object) { return static_cast<bool>(object); }
    void nothing() { log.emplace_back("nothing"); }
    std::int32_t item(std::int32_t index) { return index * 10; }
    void setItem(std::int32_t index, std::int32_t value) {
        log.push_back(std::to_string(index) + "=" + std::to_string(value));
    }
};

struct ServedTest : testing::Test {
    Apartment apartment;
    Ptr<Thing> thing = make<Thing>();
    UINT wrong = 99;

    // Arguments in declared order, the first `names.size()` of them named; by dispatch id.
    HRESULT invoke(DISPID id, WORD flags, std::vector<Variant> arguments, std::vector<DISPID> names = {},
                   Variant* result = nullptr, std::u16string* description = nullptr) {
        std::vector<VARIANT> raw;
        for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
            raw.push_back(argument->raw());
        }
        if (names.empty() && (flags & DISPATCH_PROPERTYPUT)) {
            names.push_back(DISPID_PROPERTYPUT);
        }
        DISPPARAMS parameters{raw.data(), names.data(), static_cast<UINT>(raw.size()), static_cast<UINT>(names.size())};
        EXCEPINFO exception{};
        const HRESULT done = thing->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                           result ? result->out() : nullptr, &exception, &wrong);
        const Bstr words = [&] {
            Bstr owned;
            *owned.out() = exception.bstrDescription;
            return owned;
        }();
        if (description) {
            *description = words.text();
        }
        return done == DISP_E_EXCEPTION ? exception.scode : done;
    }
    std::u16string said(std::vector<Variant> arguments, std::vector<DISPID> names = {}) {
        Variant result;
        EXPECT_EQ(invoke(10, DISPATCH_METHOD, std::move(arguments), std::move(names), &result), S_OK);
        return result.toText();
    }
};

TEST_F(ServedTest, PropertiesAreReadAndWritten) {
    Object object{Ptr<IDispatch>(thing.get())};
    EXPECT_EQ(object.get(u"Name").toText(), u"first");
    object.put(u"name", Variant(u"second"));
    EXPECT_EQ(object.get(u"NAME").toText(), u"second");
    EXPECT_EQ(object.get(u"Fixed").toInt32(), 7);
    EXPECT_EQ(invoke(2, DISPATCH_PROPERTYPUT, {Variant(8)}), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(99, DISPATCH_METHOD, {}), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(object.get(u"Item", {Variant(4)}).toInt32(), 40);
    EXPECT_EQ(invoke(15, DISPATCH_PROPERTYPUT, {Variant(3), Variant(5)}), S_OK);
    EXPECT_EQ(thing->log.back(), "3=5");
}

TEST_F(ServedTest, ArgumentsMayBeNamedAndLeftOut) {
    EXPECT_EQ(said({Variant(u"a")}), u"a");
    EXPECT_EQ(said({Variant(u"a"), Variant(2), Variant(true)}), u"aa!");
    EXPECT_EQ(said({Variant(u"a"), Variant::omitted(), Variant(true)}), u"a!");
    EXPECT_EQ(said({Variant(u"a"), Variant(true)}, {2}), u"a!");
    EXPECT_EQ(invoke(10, DISPATCH_METHOD, {}), DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(invoke(10, DISPATCH_METHOD, {Variant(true)}, {2}), DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(invoke(10, DISPATCH_METHOD, {Variant(true)}, {3}), DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(invoke(10, DISPATCH_METHOD, std::vector<Variant>(4, Variant(1))), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(invoke(1, DISPATCH_PROPERTYPUT, {Variant::omitted()}), DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(invoke(12, DISPATCH_METHOD, {Variant(1)}), DISP_E_BADPARAMCOUNT);
}

TEST_F(ServedTest, WhatAnArgumentIsNotIsToldOfThatArgument) {
    EXPECT_EQ(invoke(10, DISPATCH_METHOD, {Variant(u"a"), Variant(u"many"), Variant(true)}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong, 1U) << "counted from the last";
    EXPECT_EQ(invoke(17, DISPATCH_METHOD, {Variant(70000)}), DISP_E_OVERFLOW);
    EXPECT_EQ(invoke(11, DISPATCH_METHOD, {Variant(u"text")}), DISP_E_TYPEMISMATCH);
    EXPECT_THAT(thing->log, IsEmpty());
    Variant result;
    EXPECT_EQ(invoke(11, DISPATCH_METHOD, {Variant(static_cast<IDispatch*>(nullptr))}, {}, &result), S_OK);
    EXPECT_FALSE(result.toBool());
}

TEST_F(ServedTest, AnErrorIsTheCallsResult) {
    std::u16string description;
    EXPECT_EQ(invoke(16, DISPATCH_METHOD, {}, {}, nullptr, &description), E_ACCESSDENIED);
    EXPECT_EQ(description, u"not for you");
}

TEST_F(ServedTest, WhatGoesWrongInACallByATableIsToldInWords) {
    Variant result;
    EXPECT_EQ(callMember(*thing.get(), IID_IDispatch, 16, DISPATCH_METHOD, {}, result), E_ACCESSDENIED);
    Ptr<IErrorInfo> told;
    ASSERT_EQ(GetErrorInfo(0, told.out()), S_OK);
    Bstr words;
    EXPECT_EQ(told->GetDescription(words.out()), S_OK);
    EXPECT_EQ(words.text(), u"not for you");
    EXPECT_EQ(callMember(*thing.get(), IID_IDispatch, 99, DISPATCH_METHOD, {}, result), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(GetErrorInfo(0, told.out()), S_FALSE) << "the result says it all";
}

TEST_F(ServedTest, ObjectsAreAskedForTheirValuesBeforeTheMemberIsEntered) {
    const auto asked = [&](const char* name, Variant value) {
        return Variant(make<Valued>([this, name, value] {
            thing->log.emplace_back(name);
            return value;
        }));
    };
    EXPECT_EQ(said({asked("what", u"b"), asked("times", Variant(3)), asked("loud", Variant(true))}), u"bbb!");
    EXPECT_THAT(thing->log, ElementsAre("what", "times", "loud", "enter Say"));
    thing->log.clear();
    EXPECT_EQ(invoke(1, DISPATCH_PROPERTYPUT, {asked("name", u"c")}), S_OK);
    EXPECT_THAT(thing->log, ElementsAre("name", "enter Name"));
    thing->log.clear();
    Variant result;
    EXPECT_EQ(invoke(13, DISPATCH_METHOD, {asked("number", Variant(21))}, {}, &result), S_OK);
    EXPECT_EQ(result.toInt32(), 42);
    // An object that is wanted as one is not asked.
    thing->log.clear();
    EXPECT_EQ(invoke(11, DISPATCH_METHOD, {asked("never", Variant(0))}, {}, &result), S_OK);
    EXPECT_TRUE(result.toBool());
    EXPECT_EQ(invoke(14, DISPATCH_METHOD, {asked("never", Variant(0))}, {}, &result), S_OK);
    EXPECT_EQ(result.toInt32(), VT_DISPATCH);
    EXPECT_THAT(thing->log, ElementsAre("enter Take", "enter Kind"));
}

TEST_F(ServedTest, AnObjectWithoutAPlainValueIsATypeError) {
    EXPECT_EQ(invoke(10, DISPATCH_METHOD, {Variant(thing)}), DISP_E_TYPEMISMATCH) << "it has no default value";
    EXPECT_EQ(invoke(10, DISPATCH_METHOD, {Variant(static_cast<IDispatch*>(nullptr))}), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(invoke(10, DISPATCH_METHOD, {Variant(make<Valued>([this] { return Variant(thing); }))}),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(invoke(10, DISPATCH_METHOD, {Variant(make<Valued>([]() -> Variant { throw Error(E_FAIL); }))}),
              DISP_E_TYPEMISMATCH);
    EXPECT_THAT(thing->log, IsEmpty());
}

TEST_F(ServedTest, ReferencesAreFollowedAndArraysRefused) {
    VARIANT text;
    VariantInit(&text);
    Bstr letters(u"abc");
    text.vt = VT_BSTR;
    text.bstrVal = letters.get();
    VARIANT reference;
    VariantInit(&reference);
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &text;
    DISPPARAMS parameters{&reference, nullptr, 1, 0};
    Variant result;
    const auto say = [&] {
        return thing->Invoke(10, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, result.out(), nullptr,
                             nullptr);
    };
    EXPECT_EQ(say(), S_OK);
    EXPECT_EQ(result.toText(), u"abc");
    reference.pvarVal = nullptr;
    EXPECT_EQ(say(), DISP_E_TYPEMISMATCH);
    reference.vt = VT_ARRAY | VT_UI1;
    reference.parray = SafeArrayCreateVector(VT_UI1, 0, 10);
    EXPECT_EQ(say(), DISP_E_TYPEMISMATCH);
    SafeArrayDestroy(reference.parray);
    reference.vt = VT_BYREF | VT_ARRAY | VT_BSTR;
    reference.pparray = nullptr;
    EXPECT_EQ(say(), DISP_E_TYPEMISMATCH);
}

TEST_F(ServedTest, TextsHaveALongestLength) {
    std::u16string description;
    EXPECT_EQ(said({Variant(std::u16string(longest_text, u'x'))}).size(), longest_text);
    const Variant longer(std::u16string(longest_text + 1, u'x'));
    EXPECT_EQ(invoke(10, DISPATCH_METHOD, {longer}, {}, nullptr, &description), E_INVALIDARG);
    EXPECT_EQ(description, u"A text has at most 1048576 letters.");
    EXPECT_EQ(invoke(10, DISPATCH_METHOD, {Variant(make<Valued>([&] { return longer; }))}), E_INVALIDARG);
}

} // namespace
} // namespace murmelix::com
