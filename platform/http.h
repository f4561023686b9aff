// Asking a web server for something.
#pragma once

#include <cstddef>
#include <string>

#include "common/address.h"

namespace murmelix::platform {

struct HttpRequest {
    WebAddress address;
    std::u16string agent;       // what the program calls itself
    std::size_t most_bytes = 0; // of the answer's content
    unsigned milliseconds = 0;  // for everything together
};

enum class HttpFailure {
    none,
    no_such_host,
    unreachable, // offline, refused, or broken off before it was complete
    not_trusted, // a secure server that cannot prove to be the one it is taken for
    timed_out,
    too_long,
    not_http, // what came is no answer, or one whose end could not be told from a connection that broke
};

struct HttpAnswer {
    HttpFailure failure = HttpFailure::none; // what follows is empty where there is one
    int status = 0;
    std::u16string location = {}; // of a redirect, as the server has it
    std::string content = {};     // of an answer with status 200
    // Whether the content is as many bytes as were announced. What came in chunks is all of it on Windows; Wine takes a
    // connection that broke among them for their end.
    bool measured = true;
};

// GET, with nothing in the request but the address and the agent: no cookie, no user's name. Redirects are not
// followed.
HttpAnswer httpGet(const HttpRequest& request);

} // namespace murmelix::platform
