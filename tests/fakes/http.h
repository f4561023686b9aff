// The imitated web.
#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "platform/http.h"

namespace murmelix::fakes {

struct Http {
    std::vector<platform::HttpRequest> requests;
    std::deque<platform::HttpAnswer> answers; // to the requests to come; without one, nobody can be reached
    std::function<void()> while_asked;        // runs before the answer
};

Http& http();

} // namespace murmelix::fakes
