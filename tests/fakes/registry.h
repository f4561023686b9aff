// A registry in memory: a tree of keys with typed values, what was asked of it, and its refusals.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace murmelix::fakes {

struct RegistryValue {
    std::uint32_t type;
    std::string data;
};

class Registry {
  public:
    // Values of a key in the order they were made; paths and names ignore letter case, as the system's do.
    using Values = std::vector<std::pair<std::string, RegistryValue>>;

    bool unwritable = false; // creating keys, writing and deleting values fail
    bool unreadable = false; // opening, querying and enumerating fail
    int fail_at = 0;         // the n-th operation from now on fails (1: the next); 0: none

    // One line an operation: "open PATH", "create PATH", "query NAME", "set NAME=DATA", "enumerate INDEX", "delete
    // NAME".
    std::vector<std::string> log;

    // Prepares and looks at contents without the program's operations.
    void put(const std::string& path, const std::string& name, std::uint32_t type, const std::string& data);
    void putText(const std::string& path, const std::string& name, const std::string& text);
    std::optional<RegistryValue> value(const std::string& path, const std::string& name) const;
    std::optional<std::string> text(const std::string& path, const std::string& name) const; // without the closing NUL
    const Values* key(const std::string& path) const;                                        // null when missing
    std::size_t keyCount() const { return keys_.size(); }

    // Of the imitated system: tells whether the operation may go on.
    bool enter(std::string operation, bool writes);
    Values* open(const std::string& path, bool create);

  private:
    std::map<std::string, Values> keys_; // by path in lower case, "" being the hive
};

Registry& registry();

} // namespace murmelix::fakes
