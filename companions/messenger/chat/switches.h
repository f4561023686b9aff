// The command line.
//   (none)                 the main window. The account that signs in automatically does so; without one the window
//                          asks who signs in; where no account is remembered it is the demo account
//   /conversation FILE     signed in at once; a conversation window that replays a chat log
//   /participants N        keep the N most frequent writers of the log (3)
//   /messages N            end the replay after N messages
//   /speed X               replay X times as fast (1); 0: everything at once
//   /wait                  the replay begins half a second after a program first read the conversation's History
//   /exit-when-done        end when the replay is done
//   /log FILE              write one line per event (see event_log.h)
//   /signin NAME           signed in at once as that account; /friendly NAME its name for people
//   /signedout             start signed out
//   /connect ADDRESS       signs in to a chat network at once: irc://server:port/channel, ircs://… or twitch:channel
//   /nick NAME             is asked for there, where the address needs one
//   /connect MS            a sign-in takes so long (900); 0: none; hold: until the command "signing finish" (control.h)
//   /idle MINUTES          online becomes idle when nothing was touched for so long (10); 0: never
//   /left /top /width /height N   place of the conversation window on the screen, in pixels
//   /edits A+B             window classes of the history and of the input box of conversations, as different releases
//   have
//                          them (RichEdit20W+RichEdit20W): A of RichEdit20A and RichEdit20W, B of these and InkEdit
//   /orders                take control commands (see control.h) from any program of this desktop: for tests alone
//   /send COMMAND          hand a control command to the running client; its result is the exit status
//   /regserver /unregserver       write or remove the registration of Messenger.UIAutomation, which an ordinary start
//                                 writes where nobody has
//   -Embedding             started by COM
// A switch may begin with "/" or "-"; letter case does not matter.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "companions/messenger/chat/replay.h"
#include "companions/messenger/irc/address.h"

namespace messenger_client {

enum class EditClass { rich_edit_20a, rich_edit_20w, ink_edit };

struct EditClasses {
    EditClass history = EditClass::rich_edit_20w, input = EditClass::rich_edit_20w;
};

struct Switches {
    enum class Task { run, register_server, unregister_server, send };

    Task task = Task::run;
    bool embedding = false;
    std::u16string conversation;
    ReplayOptions replay;
    bool wait = false;
    bool exit_when_done = false;
    std::u16string log;
    std::u16string signin;
    std::u16string friendly;
    bool signed_out = false;
    std::optional<irc::Address> address;
    std::u16string nick;
    long connect = 900; // milliseconds
    bool hold = false;
    double idle = 10; // minutes
    std::optional<int> left, top, width, height;
    EditClasses edits;
    bool orders = false;
    std::u16string command;
    std::u16string error; // what is wrong with the command line; empty where it is good
};

// `arguments` without the program's own name.
Switches parseSwitches(const std::vector<std::u16string>& arguments);

} // namespace messenger_client
