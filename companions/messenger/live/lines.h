// The lines of a live conversation as its window shows them: the last ones, some of which are to be read aloud.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace messenger_client {

using LineNumber = unsigned long long;

struct LiveLine {
    enum class Kind {
        message,
        action,       // "* writer text"
        notice,       // of a server or a program; without a writer the client's own
        announcement, // subscriptions and the like
        news,         // what comes after it is new to who looked away
    };
    Kind kind = Kind::notice;
    std::u16string writer = {}; // the name, to be shown
    std::u16string text = {};
    std::u16string signin = {}; // the writer's; empty where nobody wrote it
    std::u16string id = {};     // the server's; empty where it has none
    long long time = 0;         // milliseconds since 1970
    bool told = false;          // it is in the history, from which it is read
    bool gone = false;          // without a text: it was taken out
    LineNumber number = 0;      // in order of arrival, from 1
    bool altered = false;       // told or gone since somebody looked last
};

class LiveLines {
  public:
    static constexpr std::size_t most = 5'000;

    // The number that it gets. The oldest line goes where there are too many.
    LineNumber add(LiveLine line);
    // Numbers that are not there (any more) do nothing.
    void tell(LineNumber number);
    void remove(LineNumber number);
    void removeThose(const std::function<bool(const LiveLine&)>& chosen);

    // Null where it is not there (any more). Good until the next line.
    const LiveLine* find(LineNumber number) const;
    // The first one that is there, and the one that comes next: all between them are there.
    LineNumber first() const { return next_ - lines_.size(); }
    LineNumber next() const { return next_; }
    // Which were told or removed since the last call, each once.
    std::vector<LineNumber> takeAltered();

  private:
    LiveLine* get(LineNumber number);
    void alter(LiveLine& line);

    std::deque<LiveLine> lines_;
    LineNumber next_ = 1;
    std::vector<LineNumber> altered_;
};

} // namespace messenger_client
