// The imitated disk, the programs on it that can be started, and the automation servers that are registered.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/child.h"

namespace murmelix::fakes {

struct Started {
    std::u16string path, arguments;
    bool operator==(const Started&) const = default;
};

struct Files {
    std::map<std::u16string, std::string> content;      // by path
    std::set<std::u16string> refused;                   // paths that nothing is written to, moved to or deleted at
    std::set<std::u16string> full;                      // a copy to them fails half-way
    std::map<std::u16string, std::u16string> served_by; // command lines by ProgID
    std::vector<Started> started;
    std::function<platform::ProgramEnd(const Started&)> run; // without it a program ends with status 0
};

Files& files();

} // namespace murmelix::fakes
