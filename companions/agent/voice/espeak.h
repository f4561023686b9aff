// The speech program espeak-ng as an engine; how the program is started is the platform's.
#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "companions/agent/voice/voice.h"

namespace agent::voice {

// One run of the program to its end: what it wrote to its standard output; nothing when it could not be started, did
// not end in time, was stopped, or told a failure by its exit code.
struct ProgramRun {
    std::vector<std::string> arguments; // letters, digits, "-" and "+" alone
    std::string input;                  // for its standard input
};
using RunProgram = std::function<std::optional<std::vector<std::uint8_t>>(const ProgramRun&, const std::stop_token&,
                                                                          std::string& error)>;

// The languages that `espeak-ng --voices` lists, other names in parentheses included.
std::set<std::string, std::less<>> listedLanguages(std::string_view voices);

// The program's name for a Windows language; for a dialect that it lacks, that of the language's most usual form. Empty
// for a language without one.
std::string_view espeakLanguage(std::uint16_t language_id);

// Arguments that make the program speak its standard input in this manner, as a wave file on its standard output.
std::vector<std::string> espeakArguments(const Manner& manner);

// The text as the program takes it: UTF-8, nothing in it that the program would take for a command.
std::string espeakText(std::u16string_view text, Delivery delivery = Delivery::normal);

class Espeak : public Engine {
  public:
    // Asks the program for its languages.
    explicit Espeak(RunProgram run);
    bool hasVoice() const { return !languages_.empty(); }
    bool speaks(std::uint16_t language_id) const override;
    std::vector<std::u16string> voices(std::uint16_t language_id) const override;
    std::optional<Wave> synthesise(const std::u16string& text, const Manner& manner, const std::stop_token& stop,
                                   std::string& error) override;

  private:
    RunProgram run_;
    std::set<std::string, std::less<>> languages_;
};

} // namespace agent::voice
