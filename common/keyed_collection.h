// A collection with an order and a key for every item: positions count from 1. Finding a key among n takes log n.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace murmelix {

// Thrown by KeyedCollection: a key or position that is not there, or a key that is there already.
class CollectionError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

template <class T>
class KeyedCollection {
  public:
    std::size_t Count() const { return entries_.size(); }

    bool contains(std::u16string_view key) const { return position(key) != 0; }

    // Position of a key, 0 when it is not there.
    std::size_t position(std::u16string_view key) const {
        if (entries_.size() <= few) {
            const auto entry = std::ranges::find(entries_, key, &Entry::key);
            return entry == entries_.end() ? 0 : static_cast<std::size_t>(entry - entries_.begin()) + 1;
        }
        const auto found = numbers_.find(key);
        if (found == numbers_.end()) {
            return 0;
        }
        const auto entry = std::ranges::lower_bound(entries_, found->second, {}, &Entry::number);
        return static_cast<std::size_t>(entry - entries_.begin()) + 1;
    }

    // At the end; CollectionError when the key is there.
    void Add(T item, std::u16string key) {
        if (contains(key)) {
            throw CollectionError("the key is already associated with an element");
        }
        entries_.push_back({next_number_++, std::move(key), std::move(item)});
        if (entries_.size() > few) {
            for (std::size_t i = numbers_.empty() ? 0 : entries_.size() - 1; i < entries_.size(); ++i) {
                numbers_.emplace(entries_[i].key, entries_[i].number);
            }
        }
    }

    T& Item(std::u16string_view key) { return entries_[indexOf(key)].item; }
    const T& Item(std::u16string_view key) const { return entries_[indexOf(key)].item; }
    T& Item(std::size_t at) { return entries_[checked(at)].item; }
    const T& Item(std::size_t at) const { return entries_[checked(at)].item; }
    const std::u16string& KeyAt(std::size_t at) const { return entries_[checked(at)].key; }

    void Remove(std::u16string_view key) { removeIndex(indexOf(key)); }
    void Remove(std::size_t at) { removeIndex(checked(at)); }
    void Clear() {
        const auto gone = std::exchange(entries_, {});
        numbers_.clear();
    }

  private:
    static constexpr std::size_t few = 16; // entries are compared sooner than looked up

    // In the order of their numbers, which grow with every item added.
    struct Entry {
        std::uint64_t number;
        std::u16string key;
        T item;
    };

    std::size_t indexOf(std::u16string_view key) const {
        const std::size_t at = position(key);
        if (at == 0) {
            throw CollectionError("no element has the key");
        }
        return at - 1;
    }
    std::size_t checked(std::size_t at) const {
        if (at < 1 || at > entries_.size()) {
            throw CollectionError("no element has the position");
        }
        return at - 1;
    }
    void removeIndex(std::size_t index) {
        // Letting go of an object of another program lets events in, which use the collection: it goes last of all.
        [[maybe_unused]] const T gone = std::move(entries_[index].item);
        numbers_.erase(entries_[index].key);
        if (entries_.size() - 1 <= few) {
            numbers_.clear();
        }
        entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
    }

    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::u16string_view key) const { return std::hash<std::u16string_view>()(key); }
    };

    std::vector<Entry> entries_;
    std::unordered_map<std::u16string, std::uint64_t, Hash, std::equal_to<>> numbers_; // by key; empty for few
    std::uint64_t next_number_ = 0;
};

} // namespace murmelix
