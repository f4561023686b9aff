// Any course of a conversation that is read. The input is a sequence of deeds, parted by bytes 0xFF: a letter that says
// what happens, and the text of it. What each tick hands on is compared with a plain look at the same history.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/settings.h"
#include "app/shell_state.h"
#include "characters/character_state.h"
#include "characters/emoticons.h"
#include "common/text.h"
#include "messenger/msn_control.h"
#include "tests/fakes/fakes.h"
#include "tests/fuzz/bytes.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace murmelix;
using Text = std::u16string;

constexpr std::int32_t window_handle = 1;
constexpr std::size_t most_deeds = 200, longest_history = 10'000;

Text folded(Text text) {
    return toLower(std::u16string_view(text));
}

// Positions from 1; 0: not there.
std::size_t positionOf(const Text& wanted, const Text& text, std::size_t from) {
    const std::size_t found = from - 1 <= text.size() ? folded(text).find(folded(wanted), from - 1) : Text::npos;
    return found == Text::npos ? 0 : found + 1;
}

bool opens(const Text& name, const Text& head) {
    std::size_t at = positionOf(name, head, 1);
    if (at == 0) {
        at = positionOf(MarkEmoticons(name, false), head, 1);
    }
    return at == 1 || at == 2;
}

// The reader of a history as it is told in words.
struct PlainReader {
    std::optional<std::size_t> position; // from 1; nothing: wherever the history that can be read next ends
    Text writer;

    struct Tick {
        Text key, text, chunk;
    };

    std::optional<Tick> tick(const fakes::Window& window, bool history_fails, bool people_fail) {
        if (history_fails) {
            return {};
        }
        const Text& history = window.history;
        if (!position) {
            position = history.size() + 2;
        }
        if (history.size() <= *position) {
            writer.clear();
            return {};
        }
        std::size_t end = positionOf(u"\r\n", history, *position);
        if (end != 0) {
            end = positionOf(u"\r\n", history, end + 2);
        }
        if (end == 0) {
            end = history.size();
        }
        Tick tick;
        tick.chunk = history.substr(*position - 1, end - *position + 2);
        position = end + 2;
        std::size_t head = positionOf(u"\r", tick.chunk, 1);
        head = head == 0 ? 4 : head;
        const Text who = people_fail ? Text() : writerOf(tick.chunk.substr(0, head), window);
        writer = who.empty() ? writer : who;
        tick.key = writer;
        tick.text = who.empty() ? tick.chunk : tick.chunk.substr(std::min(head + 1, tick.chunk.size()));
        return tick;
    }

    static Text writerOf(const Text& head, const fakes::Window& window) {
        for (const auto& contact : window.contacts) {
            if (opens(contact->friendly_name, head)) {
                return contact->signin_name;
            }
        }
        return opens(fakes::messenger().friendly_name, head) ? fakes::messenger().signin_name : Text();
    }
};

class World {
  public:
    World() : monitor_(host()) {
        window_ = std::make_shared<fakes::Window>(window_handle);
        window_->contacts = {contact(u"Ann"), contact(u"Bob")};
        fakes::messenger().events.OnIMWindowCreated(window_);
        start();
    }

    void happen(std::string_view deed, bool raw) {
        if (deed.empty()) {
            return;
        }
        const char what = deed[0];
        const Text text = Bytes::text(deed.substr(1), raw);
        const std::size_t number = text.empty() ? 0 : text[0];
        auto& contacts = window_->contacts;
        switch (what) {
        case 's': // somebody says something
            window_->say(contacts.empty() ? u"Me" : contacts[number % contacts.size()]->friendly_name,
                         text.substr(std::min(text.size(), std::size_t{1})));
            break;
        case 'm':
            window_->say(fakes::messenger().friendly_name, text);
            break;
        case 'a':
            window_->history += text;
            break;
        case 'r':
            window_->history = text;
            break;
        case 'c':
            contacts.push_back(contact(text));
            break;
        case 'l':
            if (!contacts.empty()) {
                contacts.erase(contacts.begin() + static_cast<std::ptrdiff_t>(number % contacts.size()));
            }
            break;
        case 'n':
            if (!contacts.empty()) {
                contacts.back()->friendly_name = text;
            }
            break;
        case 'i':
            fakes::messenger().friendly_name = text;
            break;
        case 'f': // the client fails from now on
            history_fails_ = (number & 1) != 0;
            people_fail_ = (number & 2) != 0;
            break;
        case 'x': // what stops the reading in the middle of a tick
            tick([call = number % 8](int calls) {
                if (static_cast<std::size_t>(calls) == call) {
                    stop();
                }
            });
            start();
            break;
        case 'g':
            start();
            break;
        default:
            tick();
        }
        if (window_->history.size() > longest_history) {
            window_->history.clear();
        }
    }

    // To the end of what there is.
    void readAll() {
        history_fails_ = people_fail_ = false;
        for (std::size_t ticks = 0; tick(); ++ticks) {
            require(ticks <= window_->history.size(), "there is an end");
        }
    }

  private:
    static std::shared_ptr<fakes::Contact> contact(const Text& name) {
        return std::make_shared<fakes::Contact>(name + u"@x", name);
    }

    static MonitorHost host() {
        MonitorHost host;
        host.addConversation = [](const Text&, const Text&, const Text&, bool) {};
        host.editConversationText = [](const Text&, const Text&) {};
        host.removeConversation = [](const Text&) {};
        host.conversationCount = [] { return 1; };
        host.startConvButtClick = host.deleteSystemTrayIcon = host.resetReadingWindow = host.unloadSecondaryWindows =
            host.main = [] {};
        host.enableStartConvButt = host.showSignOut = host.enableReadMoniter = [](bool) {};
        host.userCaption = [] { return Text(); };
        host.setUserCaption = [](const Text&) {};
        return host;
    }

    void start() {
        IsReadingConversation = 1;
        ReadingWindowHandle = window_handle;
        setFailing();
        monitor_.StartAtEndOf(*window_);
        plain_ = {};
        if (!history_fails_) {
            plain_.position = window_->history.size() + 2;
        }
    }

    static void stop() {
        IsReadingConversation = 0;
        ReadingWindowHandle = 0;
    }

    void setFailing() const {
        auto& failing = fakes::neighbours().failing;
        failing.clear();
        if (history_fails_) {
            failing.insert("History");
        }
        if (people_fail_) {
            failing.insert("Contacts");
        }
    }

    template <class During>
    void tick(During during) {
        setFailing();
        int calls = 0;
        fakes::neighbours().during = [&](std::string_view) { during(calls++); };
        const auto captured = monitor_.CaptureNewText();
        fakes::neighbours().during = nullptr;
        require(IsReadingConversation || !captured, "a reading that has ended hands nothing on");
    }

    bool tick() {
        setFailing();
        const auto before = plain_.position;
        const auto expected = plain_.tick(*window_, history_fails_, people_fail_);
        const auto captured = monitor_.CaptureNewText();
        require(captured.has_value() == expected.has_value(), "what is new is found, and nothing else");
        if (captured) {
            require(captured->key == expected->key && captured->text == expected->text, "it is its writer's");
            require(before && *plain_.position > *before, "it is read once");
        }
        require(monitor_.currentUser == plain_.writer, "who wrote last is known");
        require(!plain_.position || monitor_.LastReadPosition == static_cast<std::int32_t>(*plain_.position),
                "it is known how far it was read");
        return captured.has_value();
    }

    std::shared_ptr<fakes::Window> window_;
    bool history_fails_ = false, people_fail_ = false;
    PlainReader plain_;
    MSNControl monitor_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const bool raw = (bytes.byte() & 1) != 0;
    fakes::reset();
    World world;
    for (std::size_t deeds = 0; !bytes.empty() && deeds < most_deeds; ++deeds) {
        world.happen(bytes.until('\xFF'), raw);
    }
    world.readAll();
    fakes::messenger().events = {};
    return 0;
}
