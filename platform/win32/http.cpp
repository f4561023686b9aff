#include "platform/http.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

#include <windows.h>

#include <winhttp.h>

#include "common/com/handles.h"
#include "common/text.h"

namespace murmelix::platform {

using com::wide;

namespace {

constexpr DWORD most_header_bytes = 16 * 1024; // of an answer; servers themselves refuse requests with more
constexpr std::size_t longest_header = 4096;   // of one that is looked at; the longest is an address

class Handle {
  public:
    explicit Handle(HINTERNET handle) : handle_(handle) {}
    ~Handle() {
        if (handle_) {
            WinHttpCloseHandle(handle_);
        }
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    HINTERNET get() const { return handle_; }
    explicit operator bool() const { return handle_ != nullptr; }

  private:
    HINTERNET handle_;
};

// What the system's threads tell of the call that is under way, and the buffer they fill. It lives until the system has
// told of the request's end, which may be long after the request was given up.
struct Progress {
    std::mutex mutex;
    std::condition_variable changed;
    bool finished = false;
    DWORD error = ERROR_SUCCESS;
    DWORD bytes_read = 0;
    std::array<char, 4096> buffer{};

    void finish(DWORD its_error, DWORD its_bytes) {
        const std::lock_guard lock(mutex);
        finished = true;
        error = its_error;
        bytes_read = its_bytes;
        changed.notify_all();
    }
};

using Shared = std::shared_ptr<Progress>;

void CALLBACK onStatus(HINTERNET, DWORD_PTR context, DWORD status, void* information, DWORD length) {
    auto* shared = reinterpret_cast<Shared*>(context);
    if (!shared) {
        return;
    }
    switch (status) {
    case WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE:
    case WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE:
        (*shared)->finish(ERROR_SUCCESS, 0);
        break;
    case WINHTTP_CALLBACK_STATUS_READ_COMPLETE:
        (*shared)->finish(ERROR_SUCCESS, length);
        break;
    case WINHTTP_CALLBACK_STATUS_REQUEST_ERROR:
        (*shared)->finish(static_cast<const WINHTTP_ASYNC_RESULT*>(information)->dwError, 0);
        break;
    case WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING: // the last of all
        std::unique_ptr<Shared>{shared};
        break;
    default:
        break;
    }
}

HttpFailure failureOf(DWORD error) {
    switch (error) {
    case ERROR_WINHTTP_NAME_NOT_RESOLVED:
        return HttpFailure::no_such_host;
    case ERROR_WINHTTP_TIMEOUT:
        return HttpFailure::timed_out;
    case ERROR_WINHTTP_INVALID_SERVER_RESPONSE:
    case ERROR_WINHTTP_HEADER_SIZE_OVERFLOW:
    case ERROR_WINHTTP_HEADER_COUNT_EXCEEDED:
    case ERROR_WINHTTP_HEADER_NOT_FOUND:
        return HttpFailure::not_http;
    case ERROR_WINHTTP_CLIENT_AUTH_CERT_NEEDED:
    case ERROR_WINHTTP_SECURE_FAILURE:
    case ERROR_WINHTTP_SECURE_CERT_CN_INVALID:
    case ERROR_WINHTTP_SECURE_CERT_DATE_INVALID:
    case ERROR_WINHTTP_SECURE_CERT_REVOKED:
    case ERROR_WINHTTP_SECURE_CERT_REV_FAILED:
    case ERROR_WINHTTP_SECURE_CERT_WRONG_USAGE:
    case ERROR_WINHTTP_SECURE_CHANNEL_ERROR:
    case ERROR_WINHTTP_SECURE_INVALID_CA:
    case ERROR_WINHTTP_SECURE_INVALID_CERT:
        return HttpFailure::not_trusted;
    default:
        return HttpFailure::unreachable;
    }
}

// One request by asynchronous calls, of which none lasts longer than the request's time: the calls that wait have times
// for each of their steps only, and a server that sends a byte now and then would never exceed one.
class Exchange {
  public:
    explicit Exchange(const HttpRequest& request);
    HttpAnswer answer();

  private:
    // Begins a call and waits for its end; its error.
    template <class Call>
    DWORD step(Call begin);
    void setOption(DWORD option, DWORD value) { WinHttpSetOption(request_.get(), option, &value, sizeof value); }
    std::optional<std::u16string> header(DWORD which) const;
    std::optional<std::uint64_t> announcedLength() const;
    // Comes in chunks, the last of which says so.
    bool isChunked() const;
    enum class End { at_length, at_last_chunk };
    HttpFailure read(std::uint64_t most, End end, std::string& content);

    std::chrono::steady_clock::time_point deadline_;
    std::size_t most_bytes_;
    Shared progress_ = std::make_shared<Progress>();
    DWORD_PTR context_ = 0;
    // In this order: the request is closed first.
    Handle session_, connection_, request_;
};

Exchange::Exchange(const HttpRequest& request)
    : deadline_(std::chrono::steady_clock::now() + std::chrono::milliseconds(request.milliseconds)),
      most_bytes_(request.most_bytes),
      session_(WinHttpOpen(wide(request.agent), WINHTTP_ACCESS_TYPE_DEFAULT_PROXY, WINHTTP_NO_PROXY_NAME,
                           WINHTTP_NO_PROXY_BYPASS, WINHTTP_FLAG_ASYNC)),
      connection_(session_ ? WinHttpConnect(session_.get(), wide(request.address.host), request.address.port, 0)
                           : nullptr),
      request_(connection_ ? WinHttpOpenRequest(connection_.get(), L"GET", wide(request.address.path), nullptr,
                                                WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES,
                                                request.address.secure ? WINHTTP_FLAG_SECURE : 0)
                           : nullptr) {
    if (!request_) {
        return;
    }
    // A step that was given up ends soon after, too.
    const auto most = static_cast<int>(request.milliseconds);
    WinHttpSetTimeouts(request_.get(), most, most, most, most);
    // Without being told, Windows would give the user's name and password to servers of the intranet.
    setOption(WINHTTP_OPTION_DISABLE_FEATURE, WINHTTP_DISABLE_AUTHENTICATION | WINHTTP_DISABLE_REDIRECTS);
    setOption(WINHTTP_OPTION_MAX_RESPONSE_HEADER_SIZE, most_header_bytes);
    auto shared = std::make_unique<Shared>(progress_);
    context_ = reinterpret_cast<DWORD_PTR>(shared.get());
    if (!WinHttpSetOption(request_.get(), WINHTTP_OPTION_CONTEXT_VALUE, &context_, sizeof context_)) {
        context_ = 0;
        return;
    }
    shared.release(); // until the request's end is told
    WinHttpSetStatusCallback(request_.get(), onStatus,
                             WINHTTP_CALLBACK_FLAG_ALL_COMPLETIONS | WINHTTP_CALLBACK_FLAG_HANDLES, 0);
}

template <class Call>
DWORD Exchange::step(Call begin) {
    {
        const std::lock_guard lock(progress_->mutex);
        progress_->finished = false;
    }
    if (!begin()) {
        return GetLastError();
    }
    std::unique_lock lock(progress_->mutex);
    if (!progress_->changed.wait_until(lock, deadline_, [this] { return progress_->finished; })) {
        return ERROR_WINHTTP_TIMEOUT;
    }
    return progress_->error;
}

std::optional<std::u16string> Exchange::header(DWORD which) const {
    std::array<wchar_t, longest_header> text{};
    DWORD bytes = sizeof text;
    if (!WinHttpQueryHeaders(request_.get(), which, WINHTTP_HEADER_NAME_BY_INDEX, text.data(), &bytes,
                             WINHTTP_NO_HEADER_INDEX)) {
        return {};
    }
    return std::u16string(com::narrow(text.data(), bytes / sizeof(wchar_t)));
}

std::optional<std::uint64_t> Exchange::announcedLength() const {
    const auto text = header(WINHTTP_QUERY_CONTENT_LENGTH);
    if (!text) {
        return {};
    }
    const std::string digits = toUtf8(*text);
    std::uint64_t length = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), length);
    if (error != std::errc() || end != digits.data() + digits.size()) {
        return {};
    }
    return length;
}

bool Exchange::isChunked() const {
    const auto encoding = header(WINHTTP_QUERY_TRANSFER_ENCODING);
    return encoding && sameText(*encoding, u"chunked", LetterCase::ignored);
}

HttpFailure Exchange::read(std::uint64_t most, End end, std::string& content) {
    while (content.size() < most) {
        const auto wanted =
            static_cast<DWORD>(std::min<std::uint64_t>(most - content.size(), progress_->buffer.size()));
        const DWORD error =
            step([&] { return WinHttpReadData(request_.get(), progress_->buffer.data(), wanted, nullptr); });
        if (error != ERROR_SUCCESS) {
            return failureOf(error);
        }
        if (progress_->bytes_read == 0) {
            return end == End::at_last_chunk ? HttpFailure::none : HttpFailure::unreachable;
        }
        content.append(progress_->buffer.data(), progress_->bytes_read);
    }
    return HttpFailure::none;
}

HttpAnswer Exchange::answer() {
    if (!context_) {
        return {HttpFailure::unreachable};
    }
    DWORD error = step([this] {
        return WinHttpSendRequest(request_.get(), WINHTTP_NO_ADDITIONAL_HEADERS, 0, WINHTTP_NO_REQUEST_DATA, 0, 0,
                                  context_);
    });
    if (error == ERROR_SUCCESS) {
        error = step([this] { return WinHttpReceiveResponse(request_.get(), nullptr); });
    }
    DWORD status = 0, size = sizeof status;
    if (error == ERROR_SUCCESS &&
        !WinHttpQueryHeaders(request_.get(), WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                             WINHTTP_HEADER_NAME_BY_INDEX, &status, &size, WINHTTP_NO_HEADER_INDEX)) {
        error = ERROR_WINHTTP_INVALID_SERVER_RESPONSE;
    }
    if (error != ERROR_SUCCESS) {
        return {failureOf(error)};
    }
    HttpAnswer answer{HttpFailure::none, static_cast<int>(status),
                      header(WINHTTP_QUERY_LOCATION).value_or(std::u16string()), std::string()};
    if (status != HTTP_STATUS_OK) {
        return answer;
    }
    // Servers that compress or make what they send cannot tell its length beforehand: it comes in chunks. Without
    // either the end of the content could not be told from a connection that broke.
    const bool chunked = isChunked();
    const auto length = chunked ? std::optional<std::uint64_t>(most_bytes_ + 1) : announcedLength();
    if (!length) {
        return {HttpFailure::not_http};
    }
    answer.measured = !chunked;
    if (!chunked && *length > most_bytes_) {
        return {HttpFailure::too_long};
    }
    const HttpFailure failure = read(*length, chunked ? End::at_last_chunk : End::at_length, answer.content);
    if (failure == HttpFailure::none && answer.content.size() > most_bytes_) {
        return {HttpFailure::too_long};
    }
    return failure == HttpFailure::none ? answer : HttpAnswer{failure};
}

} // namespace

HttpAnswer httpGet(const HttpRequest& request) {
    // On a thread of its own, because Wine receives within the call where Windows only begins to. One that does not
    // come back in time is left to itself.
    std::packaged_task<HttpAnswer()> asking([request] { return Exchange(request).answer(); });
    auto answer = asking.get_future();
    try {
        std::thread(std::move(asking)).detach();
    } catch (const std::system_error&) {
        return {HttpFailure::unreachable};
    }
    const bool in_time = answer.wait_for(std::chrono::milliseconds(request.milliseconds)) == std::future_status::ready;
    return in_time ? answer.get() : HttpAnswer{HttpFailure::timed_out};
}

} // namespace murmelix::platform
