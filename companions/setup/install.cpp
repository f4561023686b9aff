#include "companions/setup/install.h"

#include <algorithm>

#include "platform/files.h"

namespace setup {

namespace platform = murmelix::platform;

namespace {

Result failure(const std::u16string& what, const std::u16string& why) {
    return {Outcome::failed, what + u": " + why};
}

} // namespace

Result installFile(const std::u16string& from, const std::u16string& to, Existing other_content,
                   const std::u16string& earlier) {
    if (platform::fileExists(to)) {
        if (platform::sameContent(from, to)) {
            return {Outcome::done, to + u" is there already."};
        }
        if (other_content == Existing::kept && !platform::sameContent(earlier, to)) {
            return {Outcome::kept, to + u" is another file of this name and is left as it is."};
        }
    }
    const std::u16string directory = to.substr(0, to.rfind(u'\\'));
    if (const auto refusal = platform::makeDirectory(directory)) {
        return failure(directory + u" cannot be made", *refusal);
    }
    const std::u16string half_done = to + u".new";
    if (const auto refusal = platform::copyFile(from, half_done)) {
        platform::deleteFile(half_done);
        return failure(from + u" cannot be copied to " + half_done, *refusal);
    }
    if (const auto refusal = platform::moveFile(half_done, to)) {
        platform::deleteFile(half_done);
        return failure(to + u" cannot be written", *refusal);
    }
    return {Outcome::done, to + u" is installed."};
}

Result removeFile(const std::u16string& path, const std::vector<std::u16string>& originals) {
    if (!platform::fileExists(path)) {
        return {Outcome::done, path + u" is not there."};
    }
    if (std::ranges::none_of(originals, [&](const auto& original) { return platform::sameContent(path, original); })) {
        return {Outcome::kept, path + u" is another file of this name and is left as it is."};
    }
    if (const auto refusal = platform::deleteFile(path)) {
        return failure(path + u" cannot be removed", *refusal);
    }
    return {Outcome::done, path + u" is removed."};
}

Result removeFolder(const std::u16string& path) {
    return {Outcome::done,
            path + (platform::removeEmptyDirectory(path) ? u" is removed." : u" holds other files and stays.")};
}

} // namespace setup
