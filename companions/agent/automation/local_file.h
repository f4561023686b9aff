// Which files a client may name. One on another machine can keep whoever opens it waiting for minutes, and a device or
// a pipe for ever: the server opens files of this machine alone, and says so.
#pragma once

#include <string>
#include <string_view>

namespace agent::automation {

// The path that a client names, as it is or by a "file:" address. Error for the form that reaches another machine, a
// device or a pipe ("\\server\…", "\\.\…", "\\?\…", with either slash), for one on a drive that is another
// machine's, and for an address of nothing that can be a path. The drive of the Windows directory is this machine's,
// wherever it is kept.
std::u16string localPath(std::u16string_view named);

} // namespace agent::automation
