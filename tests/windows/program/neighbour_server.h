// The test program as another process: it serves a Messenger and an Agent of the tests' own.
#pragma once

namespace murmelix::test {

inline constexpr const char16_t* messenger_prog_id = u"MurmelixTest.Messenger";
inline constexpr const char16_t* agent_prog_id = u"MurmelixTest.Agent";
// Processes of their own, which die.
inline constexpr const char16_t* mortal_messenger_prog_id = u"MurmelixTest.MortalMessenger";
inline constexpr const char16_t* mortal_agent_prog_id = u"MurmelixTest.MortalAgent";
inline constexpr const char16_t* vanishing_messenger_prog_id = u"MurmelixTest.VanishingMessenger";
inline constexpr const char16_t* returning_messenger_prog_id = u"MurmelixTest.ReturningMessenger";
inline constexpr const char16_t* vanishing_agent_prog_id = u"MurmelixTest.VanishingAgent";
// Sign-in names that have an effect.
inline constexpr const char16_t* ask_for_events = u"events@test";
inline constexpr const char16_t* ask_for_death = u"death@test";

// Registers this program as their server, for as long as it lives.
class NeighbourRegistration {
  public:
    NeighbourRegistration();
    ~NeighbourRegistration();
    NeighbourRegistration(const NeighbourRegistration&) = delete;
    NeighbourRegistration& operator=(const NeighbourRegistration&) = delete;
};

// Serves one of the classes until it is killed, or for a minute.
int serveNeighbour(int number);

} // namespace murmelix::test
