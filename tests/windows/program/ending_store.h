// A program that changes matchups in the real registry and ends in the middle of it: this test program itself, started
// with `ending_store_switch` and a number.
#pragma once

#include <string>

namespace murmelix::test {

inline constexpr char ending_store_switch[] = "--end-after";
inline constexpr int ended_in_the_middle = 77; // the exit status
// Below it are the matchups.
inline constexpr char16_t ending_store_path[] = u"Software\\MurmelixTest";

// Loads the matchups, adds that of "cyn@x", gives "bob@x" to "Anna", then removes that of "cyn@x". The process ends,
// whatever it is at, right behind its registry call of that number (0: before the first one). The result is 0 where
// there are no more calls.
int changeMatchupsUntil(int call);

} // namespace murmelix::test
