// The calls on characters that commands make, as the fake Agent server records them.
#pragma once

#include <string>
#include <vector>

#include "tests/fakes/agent.h"

namespace murmelix::test {

using fakes::AgentCall;

inline AgentCall stopCall(std::u16string key) {
    return {.key = std::move(key), .call = u"Stop", .text = u"play"};
}

inline AgentCall playCall(std::u16string key, std::u16string animation) {
    return {.key = std::move(key), .call = u"Play", .animation = std::move(animation)};
}

inline AgentCall speakCall(std::u16string key, std::u16string text) {
    return {.key = std::move(key), .call = u"Speak", .text = std::move(text)};
}

inline AgentCall soundCall(std::u16string key, const std::u16string& sound) {
    return {.key = std::move(key), .call = u"Speak", .text = u" ", .url = u"S:\\sounds\\default\\" + sound + u".wav"};
}

inline AgentCall showCall(std::u16string key) {
    return {.key = std::move(key), .call = u"Show"};
}

inline AgentCall hideCall(std::u16string key) {
    return {.key = std::move(key), .call = u"Hide"};
}

// The calls of one command.
inline std::vector<AgentCall> speakCalls(const std::u16string& key, const std::u16string& text) {
    return {stopCall(key), playCall(key, u"restpose"), speakCall(key, text)};
}

inline std::vector<AgentCall> soundCalls(const std::u16string& key, const std::u16string& sound) {
    return {stopCall(key), playCall(key, u"restpose"), soundCall(key, sound)};
}

inline std::vector<AgentCall> listenCalls(const std::u16string& key) {
    return {stopCall(key), playCall(key, u"StartListening")};
}

template <class... Lists>
std::vector<AgentCall> joined(const Lists&... lists) {
    std::vector<AgentCall> all;
    (all.insert(all.end(), lists.begin(), lists.end()), ...);
    return all;
}

} // namespace murmelix::test
