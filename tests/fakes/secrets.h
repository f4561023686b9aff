// The imitated keeping of secrets.
#pragma once

namespace murmelix::fakes {

struct Secrets {
    bool refused = false;    // the system protects nothing
    bool other_user = false; // what was protected cannot be read any more
};

Secrets& secrets();

} // namespace murmelix::fakes
