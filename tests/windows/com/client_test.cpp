// Automation objects called by name: which of them are asked for the ids of the names, and what happens to objects that
// have others.
#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/com/client.h"
#include "common/com/counted.h"
#include "common/text.h"

namespace murmelix::com {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// An object whose members give what they are told to, and which counts what it is asked.
class Counting final : public Counted<IDispatch> {
  public:
    struct Member {
        DISPID id;
        std::function<Variant(std::int32_t argument)> value;
    };
    using Members = std::map<std::u16string, Member>;
    explicit Counting(Members members) : members_(std::move(members)) {}

    static inline std::vector<std::string> asked; // the names whose ids were asked for, by any caller of any object
    static inline int calls;                      // of members

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override {
        const std::u16string name(narrow(names[0], std::char_traits<wchar_t>::length(names[0])));
        asked.push_back(toUtf8(name));
        const auto found = members_.find(name);
        *id = found == members_.end() ? DISPID_UNKNOWN : found->second.id;
        return found == members_.end() ? DISP_E_UNKNOWNNAME : S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT* result, EXCEPINFO*,
                                     UINT*) override {
        const Ptr<IDispatch> alive(this);
        ++calls;
        const auto found = std::ranges::find_if(members_, [id](const auto& member) { return member.second.id == id; });
        if (found == members_.end()) {
            return DISP_E_MEMBERNOTFOUND;
        }
        try {
            *result = found->second.value(given->cArgs == 1 ? Variant(given->rgvarg[0]).toInt32() : 0).detach();
        } catch (const Error& error) {
            return error.result();
        }
        return S_OK;
    }

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IDispatch); }

    Members members_;
};

Ptr<IDispatch> counting(Counting::Members members) {
    return Ptr<IDispatch>::adopt(new Counting(std::move(members)));
}

Counting::Member value(DISPID id, Variant held) {
    return {id, [held](std::int32_t) { return held; }};
}

Ptr<IDispatch> person(const std::u16string& name) {
    return counting({{u"Name", value(1, name)}, {u"Address", value(2, name + u"@x")}});
}

// A thing has a name and an address, too: under ids that mean something else where a person has them.
Ptr<IDispatch> thing(const std::u16string& name) {
    return counting({{u"Name", value(2, name)}, {u"Address", value(1, u"a shelf")}});
}

using Item = std::function<Ptr<IDispatch>(std::int32_t)>;
Ptr<IDispatch> listOf(Item item) {
    return counting({{u"Item", {0, [item](std::int32_t index) { return Variant(item(index)); }}}});
}

Ptr<IDispatch> house(Item people, Item things) {
    return counting({{u"People", {10, [people](std::int32_t) { return Variant(listOf(people)); }}},
                     {u"Things", {11, [things](std::int32_t) { return Variant(listOf(things)); }}}});
}

std::u16string numbered(std::int32_t index) {
    return u"person" + toText(index);
}

class ClientTest : public testing::Test {
  protected:
    ClientTest() {
        Counting::asked.clear();
        Counting::calls = 0;
    }
    static Object item(Object& list, std::int32_t index) { return list.object(u"Item", {Variant(index)}); }
    static std::u16string text(Object object, const char16_t* name) { return object.get(name).toText(); }

    const Apartment apartment_;
    Object all{house([](std::int32_t index) { return person(numbered(index)); },
                     [](std::int32_t) { return thing(u"a thing"); })};
};

TEST_F(ClientTest, ThousandItemsOfAListAreAskedForTheirIdsOnce) {
    for (int filling = 0; filling < 2; ++filling) {
        Object people = all.object(u"People");
        for (std::int32_t i = 0; i < 1000; ++i) {
            Object one = item(people, i);
            ASSERT_EQ(text(one, u"Name"), numbered(i));
            ASSERT_EQ(text(one, u"Address"), numbered(i) + u"@x");
        }
    }
    EXPECT_THAT(Counting::asked, ElementsAre("People", "Item", "Name", "Address"));
    EXPECT_EQ(Counting::calls, 2 * (1 + 3 * 1000));
}

TEST_F(ClientTest, ObjectsThatOtherMembersGiveAreAskedForTheirOwn) {
    Object people = all.object(u"People"), things = all.object(u"Things");
    EXPECT_EQ(text(item(people, 0), u"Name"), u"person0");
    EXPECT_EQ(text(item(things, 0), u"Name"), u"a thing");
    EXPECT_EQ(text(item(things, 0), u"Address"), u"a shelf");
    EXPECT_EQ(text(item(people, 1), u"Address"), u"person1@x");
    EXPECT_EQ(text(item(people, 1), u"Name"), u"person1");
}

TEST_F(ClientTest, ObjectsOfAnotherServerAreAskedForTheirOwn) {
    Object other(house([](std::int32_t) { return thing(u"a thing"); }, nullptr));
    Object ours = all.object(u"People"), theirs = other.object(u"People");
    EXPECT_EQ(text(item(ours, 0), u"Name"), u"person0");
    EXPECT_EQ(text(item(theirs, 0), u"Name"), u"a thing");
    EXPECT_EQ(text(item(ours, 1), u"Name"), u"person1");
}

TEST_F(ClientTest, ItemThatDoesNotKnowAnIdOfTheOthersIsAskedForItsOwn) {
    Object list(listOf([](std::int32_t index) {
        return index == 1 ? counting({{u"Name", value(71, u"the odd one")}, {u"Address", value(72, u"elsewhere")}})
                          : person(numbered(index));
    }));
    Object first = item(list, 0), odd = item(list, 1), last = item(list, 2);
    EXPECT_EQ(text(first, u"Name"), u"person0");
    EXPECT_EQ(text(odd, u"Name"), u"the odd one");
    EXPECT_EQ(text(odd, u"Name"), u"the odd one");
    EXPECT_EQ(text(odd, u"Address"), u"elsewhere");
    EXPECT_EQ(text(last, u"Name"), u"person2");
    EXPECT_EQ(text(last, u"Address"), u"person2@x") << "what the odd one told concerns it alone";
    EXPECT_THAT(Counting::asked, ElementsAre("Item", "Name", "Name", "Address", "Address"));
}

TEST_F(ClientTest, WhatTheOddOneGivesIsAskedForItsOwn) {
    const auto owner = [](DISPID id, Ptr<IDispatch> owned) {
        return counting({{u"Owned", value(id, Variant(owned))}});
    };
    Object list(listOf(
        [&](std::int32_t index) { return index == 0 ? owner(5, person(u"person")) : owner(6, thing(u"a thing")); }));
    Object first = item(list, 0), odd = item(list, 1);
    EXPECT_EQ(text(first.object(u"Owned"), u"Name"), u"person");
    EXPECT_EQ(text(odd.object(u"Owned"), u"Name"), u"a thing");
}

TEST_F(ClientTest, CopiesShareWhatTheyHaveLearned) {
    Object one(person(u"Ann"));
    Object copy = one;
    EXPECT_EQ(text(one, u"Name"), u"Ann");
    EXPECT_EQ(text(copy, u"Name"), u"Ann");
    EXPECT_THAT(Counting::asked, ElementsAre("Name"));
}

HRESULT failureOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const Error& error) {
        return error.result();
    }
    return S_OK;
}

TEST_F(ClientTest, NameThatNobodyKnowsFailsEachTime) {
    Object one(person(u"Ann"));
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(failureOf([&] { one.get(u"Age"); }), DISP_E_UNKNOWNNAME);
    }
    EXPECT_THAT(Counting::asked, ElementsAre("Age", "Age"));
    EXPECT_EQ(Counting::calls, 0);
    EXPECT_EQ(text(one, u"Name"), u"Ann");
}

TEST_F(ClientTest, ItemThatHasNoSuchMemberFails) {
    Object list(listOf([](std::int32_t index) { return index == 0 ? person(u"Ann") : counting({}); }));
    EXPECT_EQ(text(item(list, 0), u"Name"), u"Ann");
    EXPECT_EQ(failureOf([&] { item(list, 1).get(u"Name"); }), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(text(item(list, 0), u"Name"), u"Ann");
}

TEST_F(ClientTest, MemberThatDeniesItselfIsCalledOnceMoreByNobody) {
    Object one(counting({{u"Shy", {3, [](std::int32_t) -> Variant { throw Error(DISP_E_MEMBERNOTFOUND); }}}}));
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(failureOf([&] { one.get(u"Shy"); }), DISP_E_MEMBERNOTFOUND);
    }
    EXPECT_EQ(Counting::calls, 2);
}

TEST_F(ClientTest, NothingIsNoObject) {
    Object none, list(listOf([](std::int32_t) { return Ptr<IDispatch>(); }));
    EXPECT_FALSE(none);
    EXPECT_FALSE(Object(Ptr<IDispatch>()));
    EXPECT_EQ(none.dispatch(), nullptr);
    EXPECT_EQ(failureOf([&] { none.get(u"Name"); }), E_POINTER);
    EXPECT_EQ(failureOf([&] { none.object(u"Name"); }), E_POINTER);
    EXPECT_EQ(failureOf([&] { item(list, 0); }), E_POINTER);
}

// A call lets events in, and they may end whoever calls.
TEST_F(ClientTest, ObjectMayEndInTheMiddleOfItsCall) {
    auto one = std::make_unique<Object>();
    *one = Object(counting({{u"Owned", {3, [&](std::int32_t) {
                                            one.reset();
                                            return Variant(person(u"Ann"));
                                        }}}}));
    Object owned = one->object(u"Owned");
    EXPECT_FALSE(one);
    EXPECT_EQ(text(owned, u"Name"), u"Ann");
}

} // namespace
} // namespace murmelix::com
