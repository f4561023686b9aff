// Events on their way to sinks in other apartments, which take them, hang or go.
#include <algorithm>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <olectl.h>

#include "common/com/client.h"
#include "common/com/server.h"
#include "common/text.h"
#include "tests/windows/support/process.h"

namespace murmelix::com {
namespace {

using namespace std::chrono_literals;
using test::pumpUntil;
using testing::ElementsAre;

constexpr IID iid_events{0x1D8F2B60, 0x3A7C, 0x4E51, {0x9B, 0x02, 0x6C, 0x44, 0xE1, 0x7A, 0x90, 0x35}};
// Far longer than anything here takes: what ends a wait is its event.
constexpr std::chrono::seconds patience{60};

class Source final : public Served {
  public:
    EventSource events{*this, iid_events};
    DWORD called_on = 0;

  private:
    std::span<const Member> members() const override {
        static const Members<Source> all{
            method(L"Call", 1, [](Source& self) { self.called_on = GetCurrentThreadId(); })};
        return all;
    }
    void* interfaceFor(REFIID iid) override {
        return IsEqualIID(iid, IID_IConnectionPointContainer) ? events.container() : nullptr;
    }
};

// Threads with an apartment each. A sink that was heard with must be let go of before its apartment ends: they end
// together, at the end of a test.
class Apartments {
  public:
    // Runs messages on a new thread until the end.
    static void begin(std::function<void()> first) {
        std::promise<DWORD> begun;
        auto id = begun.get_future();
        std::thread thread([&begun, first = std::move(first)] {
            const Apartment apartment;
            MSG message;
            PeekMessageW(&message, nullptr, WM_USER, WM_USER, PM_NOREMOVE);
            begun.set_value(GetCurrentThreadId());
            first();
            while (GetMessageW(&message, nullptr, 0, 0) > 0) {
                DispatchMessageW(&message);
            }
        });
        threads().push_back({std::move(thread), id.get()});
    }
    static void end() {
        for (auto& [thread, id] : threads()) {
            PostThreadMessageW(id, WM_QUIT, 0, 0);
            thread.join();
        }
        threads().clear();
    }

  private:
    static std::vector<std::pair<std::thread, DWORD>>& threads() {
        static std::vector<std::pair<std::thread, DWORD>> all;
        return all;
    }
};

// A neighbour: a sink in an apartment of its own.
class Listener {
  public:
    using Handler = std::function<void(DISPID, std::vector<Variant>&)>;

    Listener(IDispatch* source, Handler handler) : state_(std::make_shared<State>()) {
        state_->handler = std::move(handler);
        check(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, source, state_->source.out()));
        Apartments::begin([state = state_] { state->listen(state); });
        EXPECT_TRUE(pumpUntil([this] { return state_->listening.load(); }));
    }
    ~Listener() {
        PostMessageW(state_->window, WM_CLOSE, 0, 0);
        EXPECT_TRUE(pumpUntil([this] { return !state_->listening; }));
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    // "5 text 7"
    std::vector<std::string> heard() {
        const std::lock_guard lock(state_->mutex);
        return state_->heard;
    }
    bool soon(const std::string& line) {
        return pumpUntil([&] {
            const auto lines = heard();
            return std::find(lines.begin(), lines.end(), line) != lines.end();
        });
    }

  private:
    struct State {
        Handler handler;
        Ptr<IStream> source;
        Subscription subscription;
        HWND window = nullptr; // closing it ends the subscription
        std::atomic<bool> listening = false;
        std::mutex mutex;
        std::vector<std::string> heard;

        void listen(const std::shared_ptr<State>& self) {
            void* found = nullptr;
            check(CoGetInterfaceAndReleaseStream(source.detach(), IID_IDispatch, &found));
            const auto owned = Ptr<IDispatch>::adopt(static_cast<IDispatch*>(found));
            subscription = Subscription(owned.get(), iid_events, [self](DISPID event, std::vector<Variant>& given) {
                std::string line = std::to_string(event);
                for (const Variant& argument : given) {
                    line += argument.type() == VT_DISPATCH ? " object" : " " + toUtf8(argument.toText());
                }
                {
                    const std::lock_guard lock(self->mutex);
                    self->heard.push_back(line);
                }
                if (self->handler) {
                    self->handler(event, given);
                }
            });
            window = CreateWindowExW(0, L"Static", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
            SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
            SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&received));
            listening = true;
        }
        static LRESULT CALLBACK received(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
            if (message == WM_CLOSE) {
                auto& state = *reinterpret_cast<State*>(GetWindowLongPtrW(window, GWLP_USERDATA));
                DestroyWindow(window);
                state.subscription = {};
                state.listening = false;
                return 0;
            }
            return DefWindowProcW(window, message, wparam, lparam);
        }
    };

    std::shared_ptr<State> state_;
};

// Hangs in its first event until it is let go.
struct Hanging {
    std::promise<void> let_go;
    std::shared_future<void> go = let_go.get_future().share();
    std::atomic<bool> in_event = false;
    Listener listener;

    explicit Hanging(IDispatch* source)
        : listener(source, [this](DISPID, std::vector<Variant>&) {
              in_event = true;
              go.wait();
          }) {}
};

struct EventSourceTest : testing::Test {
    Apartment apartment;
    Ptr<Source> source = make<Source>();

    ~EventSourceTest() override {
        source.reset();
        EXPECT_TRUE(waitForSinksToEnd(patience));
        Apartments::end();
    }
    void fire(DISPID event, const std::vector<Variant>& arguments = {}) { source->events.fire(event, arguments); }
};

TEST_F(EventSourceTest, EventsArriveInOrderWithTheirArguments) {
    Listener listener(source.get(), nullptr);
    fire(1, {Variant(u"one"), Variant(1)});
    fire(2, {Variant(true)});
    fire(3);
    ASSERT_TRUE(waitForEvents(patience));
    EXPECT_THAT(listener.heard(), ElementsAre("1 one 1", "2 True", "3"));
}

TEST_F(EventSourceTest, AnObjectIsCalledInItsOwnApartment) {
    std::atomic<bool> called = false;
    Listener listener(source.get(), [&](DISPID, std::vector<Variant>& given) {
        Object(given.at(0).toObject()).call(u"Call");
        called = true;
    });
    fire(1, {Variant(source), Variant(static_cast<IDispatch*>(nullptr))});
    ASSERT_TRUE(pumpUntil([&] { return called.load(); }));
    EXPECT_THAT(listener.heard(), ElementsAre("1 object object"));
    EXPECT_EQ(source->called_on, GetCurrentThreadId());
}

TEST_F(EventSourceTest, ASinkThatHangsMakesNobodyElseWait) {
    Hanging hanging(source.get());
    Listener other(source.get(), nullptr);
    fire(1);
    ASSERT_TRUE(pumpUntil([&] { return hanging.in_event.load(); }));
    fire(2);
    EXPECT_TRUE(other.soon("2"));
    EXPECT_FALSE(allEventsDelivered());
    EXPECT_FALSE(waitForEvents(10ms));
    hanging.let_go.set_value();
    EXPECT_TRUE(waitForEvents(patience));
    EXPECT_THAT(hanging.listener.heard(), ElementsAre("1", "2"));
}

TEST_F(EventSourceTest, ASinkThatHangsForLongLosesEventsUntilItAnswers) {
    Hanging hanging(source.get());
    fire(0);
    ASSERT_TRUE(pumpUntil([&] { return hanging.in_event.load(); }));
    for (std::size_t i = 1; i <= most_waiting_events + 50; ++i) {
        fire(static_cast<DISPID>(i), {Variant(source)});
    }
    hanging.let_go.set_value();
    ASSERT_TRUE(waitForEvents(patience));
    fire(9999);
    ASSERT_TRUE(hanging.listener.soon("9999"));
    const auto heard = hanging.listener.heard();
    ASSERT_EQ(heard.size(), 1 + most_waiting_events + 1);
    for (std::size_t i = 1; i <= most_waiting_events; ++i) {
        EXPECT_EQ(heard[i], std::to_string(i) + " object");
    }
}

TEST_F(EventSourceTest, EndingLeavesASinkThatHangsBehind) {
    Hanging hanging(source.get());
    fire(1, {Variant(source)});
    ASSERT_TRUE(pumpUntil([&] { return hanging.in_event.load(); }));
    fire(2, {Variant(source)});
    source->events.close();
    EXPECT_FALSE(waitForSinksToEnd(10ms));
    hanging.let_go.set_value();
    EXPECT_TRUE(waitForSinksToEnd(patience));
    EXPECT_THAT(hanging.listener.heard(), ElementsAre("1 object"));
}

TEST_F(EventSourceTest, ASinkMayGoInItsOwnEvent) {
    Subscription subscription;
    int events = 0;
    subscription = Subscription(source.get(), iid_events, [&](DISPID, std::vector<Variant>&) {
        ++events;
        subscription = {};
    });
    fire(1);
    fire(2);
    ASSERT_TRUE(waitForEvents(patience));
    EXPECT_EQ(events, 1);
    EXPECT_EQ(source->events.sinks(), 0U);
}

TEST_F(EventSourceTest, OneSinkCanBeToldAlone) {
    source->events.onAdded([&](DWORD added) { source->events.fire(7, {}, added); });
    Listener first(source.get(), nullptr);
    Listener second(source.get(), nullptr);
    ASSERT_TRUE(waitForEvents(patience));
    EXPECT_THAT(first.heard(), ElementsAre("7"));
    EXPECT_THAT(second.heard(), ElementsAre("7"));
    source->events.onAdded(nullptr);
}

class Clearing final : public Counted<IDispatch> {
  public:
    std::vector<bool> before;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        EXPECT_EQ(parameters->rgvarg[0].vt, VT_BYREF | VT_BOOL);
        before.push_back(*parameters->rgvarg[0].pboolVal != VARIANT_FALSE);
        *parameters->rgvarg[0].pboolVal = VARIANT_FALSE;
        return S_OK;
    }

  private:
    bool answers(REFIID iid) const override { return IsEqualIID(iid, IID_IDispatch) || IsEqualIID(iid, iid_events); }
};

DWORD advise(Source& source, IUnknown& sink, HRESULT expected = S_OK) {
    Ptr<IConnectionPoint> point;
    const auto container = Ptr<IDispatch>(&source).as<IConnectionPointContainer>(IID_IConnectionPointContainer);
    EXPECT_EQ(container->FindConnectionPoint(iid_events, point.out()), S_OK);
    DWORD cookie = 0;
    EXPECT_EQ(point->Advise(&sink, &cookie), expected);
    return cookie;
}

TEST_F(EventSourceTest, AReferenceCanBeWrittenToByEachSink) {
    const auto first = Ptr<Clearing>::adopt(new Clearing);
    const auto second = Ptr<Clearing>::adopt(new Clearing);
    advise(*source.get(), *first.get());
    advise(*source.get(), *second.get());
    VARIANT_BOOL own = VARIANT_TRUE;
    Variant reference;
    VARIANT& raw = *reference.out();
    raw.vt = VT_BYREF | VT_BOOL;
    raw.pboolVal = &own;
    fire(1, {reference});
    ASSERT_TRUE(waitForEvents(patience));
    EXPECT_THAT(first->before, ElementsAre(true));
    EXPECT_THAT(second->before, ElementsAre(true));
    EXPECT_EQ(own, VARIANT_TRUE);
}

TEST_F(EventSourceTest, MoreSinksThanThereMayBeAreRefused) {
    const auto sink = Ptr<Clearing>::adopt(new Clearing);
    DWORD first = 0;
    for (std::size_t i = 0; i < most_sinks; ++i) {
        const DWORD cookie = advise(*source.get(), *sink.get());
        first = first == 0 ? cookie : first;
    }
    advise(*source.get(), *sink.get(), CONNECT_E_ADVISELIMIT);
    EXPECT_EQ(source->events.sinks(), most_sinks);
}

} // namespace
} // namespace murmelix::com

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
