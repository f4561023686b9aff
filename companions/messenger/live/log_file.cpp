#include "companions/messenger/live/log_file.h"

#include <array>
#include <ctime>
#include <fstream>
#include <memory>

#include "common/text.h"

namespace messenger_client {

namespace {

constexpr std::size_t longest_file_name = 60; // units

} // namespace

std::string logLine(const LiveLine& line) {
    const std::time_t time = line.time != 0 ? static_cast<std::time_t>(line.time / 1000) : std::time(nullptr);
    std::array<char, 32> when{};
    if (const std::tm* const parts = std::localtime(&time)) {
        std::strftime(when.data(), when.size(), "%Y-%m-%d %H:%M:%S ", parts);
    }
    std::u16string text = line.text;
    if (line.kind == LiveLine::Kind::action) {
        text = u"* " + line.writer + u" " + line.text;
    } else if (!line.writer.empty()) {
        text = u"<" + line.writer + u"> " + line.text;
    }
    return when.data() + murmelix::toUtf8(text);
}

std::u16string keepLog(LiveTalk& talk, const std::filesystem::path& file) {
    const auto out = std::make_shared<std::ofstream>(file, std::ios::binary | std::ios::app);
    if (!out->is_open()) {
        return u"The file cannot be written.";
    }
    talk.log = [out](const LiveLine& line) { *out << logLine(line) << "\r\n" << std::flush; };
    return {};
}

std::u16string logFileName(std::u16string_view title) {
    constexpr std::u16string_view refused = u"\\/:*?\"<>|.";
    std::u16string name;
    for (const char16_t unit : title.substr(0, longest_file_name)) {
        name += unit <= u' ' || refused.find(unit) != std::u16string_view::npos ? u'_' : unit;
    }
    return name + u".txt";
}

} // namespace messenger_client
