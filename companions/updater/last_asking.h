// When this user's updater has asked last: below HKEY_CURRENT_USER, beside the program's key, whose subkeys are
// accounts.
#pragma once

namespace updater {

inline constexpr char last_asking_key[] = "Software\\MurmelixUpdater";
inline constexpr char last_asking_value[] = "LastAsked"; // text: seconds since 1970 in decimal

inline constexpr long long seconds_between_askings = 24 * 60 * 60;

// A time that lies in the future, or is none, is no asking.
bool askedLately(long long now);
// False where it cannot be stored.
bool noteAsking(long long now);

} // namespace updater
