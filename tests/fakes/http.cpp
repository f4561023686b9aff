#include "tests/fakes/http.h"

#include "tests/fakes/fakes.h"

namespace murmelix {

namespace fakes {

Http& http() {
    return state().http;
}

} // namespace fakes

namespace platform {

HttpAnswer httpGet(const HttpRequest& request) {
    fakes::Http& http = fakes::http();
    http.requests.push_back(request);
    if (http.while_asked) {
        http.while_asked();
    }
    if (http.answers.empty()) {
        return {HttpFailure::unreachable};
    }
    HttpAnswer answer = std::move(http.answers.front());
    http.answers.pop_front();
    return answer;
}

} // namespace platform

} // namespace murmelix
