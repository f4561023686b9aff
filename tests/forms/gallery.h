// Every window of every program, opened in each of its states: what holds for all of them is tried on all of them.
#pragma once

#include <functional>
#include <string>

#include "ui/form.h"

namespace murmelix::test {

// A window that is shown, in a state that the name tells. It is gone when the call returns.
using Visit = std::function<void(ui::Form& form, const std::string& name)>;

void visitProgram(const Visit& visit);         // Murmelix
void visitMessengerClient(const Visit& visit); // and its windows of live chat
void visitAgentServer(const Visit& visit);
void visitSetup(const Visit& visit);

inline void visitAll(const Visit& visit) {
    visitProgram(visit);
    visitMessengerClient(visit);
    visitAgentServer(visit);
    visitSetup(visit);
}

// A folder for files of the programs, with "\" at its end; each side of the tests has one of its own.
std::u16string galleryFolder();
// A character's file there, and a folder of sounds.
void putCharacter(const std::u16string& name);
void putSoundScheme(const std::u16string& name);
// What is to be done has been done: messages are served, and what was posted.
void settle();

} // namespace murmelix::test
