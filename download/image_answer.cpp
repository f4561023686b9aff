#include "download/image_answer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "common/ansi.h"
#include "common/text.h"

namespace murmelix {

namespace {

constexpr std::string_view line_end = "\r\n", header_end = "\r\n\r\n";
constexpr std::string_view good_status = "200 OK\r\n";
constexpr std::string_view length_field = "\r\nContent-Length:";
constexpr double unknown_length = 1;

// Of a file's name, its ending included, in every file system of Windows.
constexpr std::size_t longest_file_name = 255;
constexpr std::size_t ending_length = 4; // ".gif"

bool isDevice(std::u16string_view name) {
    const std::u16string_view stem = trim(name.substr(0, name.find(u'.')));
    static constexpr std::array<std::u16string_view, 4> devices{u"con", u"prn", u"aux", u"nul"};
    const auto same = [stem](std::u16string_view device) { return sameText(stem, device, LetterCase::ignored); };
    const bool numbered = stem.size() == 4 && stem[3] >= u'0' && stem[3] <= u'9' &&
                          (sameText(stem.substr(0, 3), u"com", LetterCase::ignored) ||
                           sameText(stem.substr(0, 3), u"lpt", LetterCase::ignored));
    return numbered || std::any_of(devices.begin(), devices.end(), same);
}

bool isStem(std::u16string_view name) {
    const auto isRefused = [](char16_t unit) {
        return unit < u' ' || unit == 0x7F || find(u"\\/:*?\"<>|", {&unit, 1}, 0, LetterCase::matters) != npos;
    };
    return !name.empty() && name.size() <= longest_file_name - ending_length && name != u"." && name != u".." &&
           std::none_of(name.begin(), name.end(), isRefused) && !isDevice(name);
}

} // namespace

std::optional<std::int32_t> ImageAnswer::take(std::string_view bytes) {
    // What ends the header can have begun in what came before.
    const std::size_t from = received_.size() - std::min(received_.size(), header_end.size() - 1);
    received_ += bytes;
    if (!hasHeader()) {
        header_end_ = received_.find(header_end, from);
    }
    if (!header_done_) {
        if (found()) {
            readLength();
            header_done_ = true;
        }
        return std::nullopt;
    }
    const double percent = static_cast<double>(body().size()) / content_length_ * 100;
    if (!std::isfinite(percent)) {
        return std::nullopt; // it is said to have no length
    }
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::nearbyint(std::clamp(percent, static_cast<double>(Limits::min()), static_cast<double>(Limits::max()))));
}

bool ImageAnswer::tooLong() const {
    return hasHeader() ? header_end_ > longest_header || body().size() > longest_image
                       : received_.size() > longest_header;
}

bool ImageAnswer::found() const {
    return header().find(good_status) != std::string_view::npos;
}

std::string_view ImageAnswer::body() const {
    return hasHeader() ? std::string_view(received_).substr(header_end_ + header_end.size()) : std::string_view();
}

// With the first character of the empty line that ends it: a status line that nothing follows is not whole.
std::string_view ImageAnswer::header() const {
    return hasHeader() ? std::string_view(received_).substr(0, header_end_ + 1) : std::string_view();
}

void ImageAnswer::readLength() {
    const std::size_t field = header().find(length_field);
    if (field == std::string_view::npos) {
        content_length_ = unknown_length;
        return;
    }
    const std::size_t start = field + length_field.size();
    const std::size_t end = received_.find(line_end, start);
    content_length_ = leadingNumber(fromAnsi(std::string_view(received_).substr(start, end - start)));
}

std::string imageRequest(const std::u16string& character) {
    return toAnsi(u"GET /murmelix/download/charimgs/" + toLower(character) + u".gif HTTP/1.0\r\n" +
                  u"Accept: */*\r\nAccept: image/gif\r\n\r\n");
}

bool isFileName(std::u16string_view name) {
    // The code page may hold a letter for one that looks like it, or a "?" for none.
    return isStem(name) && isStem(fromAnsi(toAnsi(name)));
}

} // namespace murmelix
