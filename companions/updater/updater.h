// updater.exe ADDRESS: where a newer version than that of Murmelix.exe beside it is published, says so and opens the
// download page where the user wants it. It asks for version.txt in the folder ADDRESS, at most once a day and user,
// and says nothing where it has nothing to say. It fetches no program and starts none.
#pragma once

#include <string>
#include <vector>

namespace updater {

enum ExitStatus : int {
    exit_offered = 0,      // a newer version; whatever the user wanted
    exit_no_address = 2,   // the arguments: the one case besides in which a box is shown
    exit_no_program = 3,   // no Murmelix.exe with a version beside it
    exit_asked_lately = 4, // less than a day ago
    exit_not_noted = 5,    // the time could not be stored: it would be asked at every start
    exit_none_newer = 6,
    exit_unreachable = 7, // offline, refused, broken off
    exit_no_such_host = 8,
    exit_not_trusted = 9,
    exit_timed_out = 10,
    exit_refused = 11,        // the server's status is neither 200 nor a redirect
    exit_redirected = 12,     // too often, or to where it is not asked
    exit_not_as_expected = 13 // no answer, or no version.txt
};

int run(const std::vector<std::u16string>& arguments);

} // namespace updater
