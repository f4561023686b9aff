#include "tests/fakes/system.h"

#include <algorithm>

#include "platform/message_box.h"
#include "tests/fakes/fakes.h"

namespace murmelix {

namespace fakes {

System& system() {
    return state().system;
}

MessageBoxes& messageBoxes() {
    return state().message_boxes;
}

} // namespace fakes

namespace platform {

bool isPreviousInstance() {
    return fakes::system().previous_instance;
}

std::u16string programDirectory() {
    return fakes::system().program_directory;
}

std::u16string commandLine() {
    return fakes::system().command_line;
}

std::uint32_t windowsDirectory(std::size_t buffer_size, std::string& buffer) {
    buffer.assign(buffer_size, ' ');
    const std::string& directory = fakes::system().windows_directory;
    if (directory.empty()) {
        return 0;
    }
    if (directory.size() + 1 > buffer_size) {
        return static_cast<std::uint32_t>(directory.size() + 1);
    }
    std::copy_n(directory.c_str(), directory.size() + 1, buffer.begin());
    return static_cast<std::uint32_t>(directory.size());
}

void shellExecute(const std::u16string& verb, const std::u16string& file, const std::u16string& parameters,
                  const std::u16string& directory) {
    fakes::system().shell_calls.push_back({verb, file, parameters, directory});
}

bool directoryExists(const std::u16string& path) {
    return fakes::system().directories.contains(path);
}

std::vector<std::u16string> subdirectories(const std::u16string& path) {
    const auto found = fakes::system().subdirectories.find(path);
    return found == fakes::system().subdirectories.end() ? std::vector<std::u16string>{} : found->second;
}

ProgramVersion programVersion() {
    return fakes::system().version;
}

std::optional<ProgramVersion> versionOf(const std::u16string& path) {
    const auto found = fakes::system().versions.find(path);
    return found == fakes::system().versions.end() ? std::nullopt : std::optional(found->second);
}

void endProcess() {
    fakes::system().ended = true;
    throw fakes::ProcessEnded{};
}

std::u16string siteHost() {
    return fakes::system().site_host;
}

std::u16string supportAddress() {
    return fakes::system().support_address;
}

int messageBox(const std::u16string& text, int style, const std::u16string& title) {
    fakes::MessageBoxes& boxes = fakes::messageBoxes();
    boxes.shown.push_back({text, style, title});
    if (boxes.while_open) {
        boxes.while_open();
    }
    if (boxes.answers.empty()) {
        return (style & mb_yes_no) ? answer_no : answer_ok;
    }
    const int answer = boxes.answers.front();
    boxes.answers.pop_front();
    return answer;
}

} // namespace platform

} // namespace murmelix
