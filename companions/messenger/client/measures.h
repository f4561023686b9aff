// Lengths that the client's windows share, in twips.
#pragma once

namespace messenger_client {

inline constexpr int pixel = 15; // at 96 dots an inch
inline constexpr int margin = 8 * pixel;

// The list of people beside a conversation; a narrower window does without it.
inline constexpr int people_width = 150 * pixel;
inline constexpr int width_for_people = 430 * pixel;

} // namespace messenger_client
