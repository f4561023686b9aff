#include "tests/fakes/files.h"

#include <algorithm>

#include "common/text.h"
#include "platform/automation_server.h"
#include "platform/files.h"
#include "tests/fakes/fakes.h"

namespace murmelix {

namespace fakes {

Files& files() {
    return state().files;
}

} // namespace fakes

namespace platform {

namespace {

const std::u16string access_denied = u"Access denied (5)";
const std::u16string disk_full = u"The disk is full (112)";
const std::u16string not_found = u"File not found (2)";

} // namespace

std::u16string windowsDirectory() {
    return u"C:\\WINDOWS";
}

bool fileExists(const std::u16string& path) {
    return fakes::files().content.contains(path);
}

bool sameContent(const std::u16string& a, const std::u16string& b) {
    const auto& files = fakes::files().content;
    const auto first = files.find(a), second = files.find(b);
    return first != files.end() && second != files.end() && first->second == second->second;
}

std::optional<std::string> readFile(const std::u16string& path, std::size_t most) {
    const auto found = fakes::files().content.find(path);
    const bool readable = found != fakes::files().content.end() && found->second.size() <= most;
    return readable ? std::optional(found->second) : std::nullopt;
}

std::vector<std::u16string> filesIn(const std::u16string& directory, const std::u16string& ending) {
    std::vector<std::u16string> names;
    for (const auto& [path, content] : fakes::files().content) {
        const std::size_t parting = path.rfind(u'\\');
        if (path.substr(0, parting) == directory && path.ends_with(ending)) {
            names.push_back(path.substr(parting + 1));
        }
    }
    return names;
}

Refusal makeDirectory(const std::u16string& path) {
    return fileExists(path) || fakes::files().refused.contains(path) ? Refusal(access_denied) : Refusal();
}

Refusal copyFile(const std::u16string& from, const std::u16string& to) {
    fakes::Files& files = fakes::files();
    const auto source = files.content.find(from);
    if (source == files.content.end()) {
        return not_found;
    }
    if (files.refused.contains(to)) {
        return access_denied;
    }
    if (files.full.contains(to)) {
        files.content[to] = source->second.substr(0, source->second.size() / 2);
        return disk_full;
    }
    files.content[to] = source->second;
    return {};
}

Refusal moveFile(const std::u16string& from, const std::u16string& to) {
    fakes::Files& files = fakes::files();
    if (files.refused.contains(to)) {
        return access_denied;
    }
    auto moved = files.content.extract(from);
    if (!moved) {
        return not_found;
    }
    files.content[to] = moved.mapped();
    return {};
}

Refusal deleteFile(const std::u16string& path) {
    if (fakes::files().refused.contains(path)) {
        return access_denied;
    }
    return fakes::files().content.erase(path) ? Refusal() : Refusal(not_found);
}

bool removeEmptyDirectory(const std::u16string& path) {
    const auto first = fakes::files().content.lower_bound(path + u"\\");
    return first == fakes::files().content.end() || !first->first.starts_with(path + u"\\");
}

std::optional<WriteFailure> writeFile(const std::u16string& path, std::string_view bytes) {
    fakes::Files& files = fakes::files();
    if (files.refused.contains(path)) {
        return WriteFailure{5, access_denied};
    }
    const bool full = files.full.contains(path);
    std::string& content = files.content[path];
    const std::string_view written = bytes.substr(0, full ? bytes.size() / 2 : bytes.size());
    content.replace(0, std::min(content.size(), written.size()), written);
    return full ? std::optional(WriteFailure{112, disk_full}) : std::nullopt;
}

ProgramEnd runAndWait(const std::u16string& path, const std::u16string& arguments, unsigned) {
    fakes::Files& files = fakes::files();
    files.started.push_back({path, arguments});
    return files.run ? files.run(files.started.back()) : ProgramEnd{0};
}

std::u16string registeredServer(const std::u16string& prog_id) {
    const auto found = fakes::files().served_by.find(prog_id);
    return found == fakes::files().served_by.end() ? std::u16string() : found->second;
}

} // namespace platform

} // namespace murmelix
