// A sign-in that takes its time: connecting, synchronising, signed in. It goes on by a clock of the caller, or, held,
// by command alone.
#pragma once

#include <optional>
#include <string>

#include "companions/messenger/chat/client.h"

namespace messenger_client {

class SigningIn {
  public:
    explicit SigningIn(Client& client);

    // Milliseconds from the beginning to the end; 0: no stage is seen.
    void setTime(long milliseconds) { time_ = milliseconds; }
    void hold(bool held) { held_ = held; }

    // Signs out, or gives another sign-in up, first. `now` in milliseconds.
    void begin(std::u16string_view signin, std::u16string_view friendly, Status status, long long now);
    const std::u16string& signin() const { return wanted_.signin; }
    const std::u16string& friendly() const { return wanted_.friendly; }
    // When the next stage is due; nothing while held or not signing in.
    std::optional<long long> dueAt() const;
    // Enters the stages that are due.
    void advance(long long now);

    // The rest is for a sign-in under way; false where there is none.
    bool next(long long now);
    bool finish();
    bool fail(long result);
    bool cancel() { return fail(signin_cancelled); }

  private:
    struct Wanted {
        std::u16string signin, friendly;
        Status status = Status::online;
    };

    Client& client_;
    Wanted wanted_;
    long time_ = 900;
    long long stage_began_ = 0;
    bool held_ = false;
};

} // namespace messenger_client
