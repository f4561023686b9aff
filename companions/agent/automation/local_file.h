// Which files a client may name. One on another machine can keep whoever opens it waiting for minutes, and a device or
// a pipe for ever: the server opens files of this machine alone, and says so.
#pragma once

#include <string_view>

namespace agent::automation {

// A path of a drive, or one without any. Not the form that reaches another machine, a device or a pipe ("\\server\…",
// "\\.\…", "\\?\…", with either slash).
bool isOnADrive(std::u16string_view path);
// Error for a path that isOnADrive rules out, and for one on a drive that is another machine's. The drive of the
// Windows directory is this machine's, wherever it is kept.
void requireLocal(std::u16string_view path);

} // namespace agent::automation
