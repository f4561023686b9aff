// A collection with an order and a key for every item: positions count from 1.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
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
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            if (entries_[i].key == key)
                return i + 1;
        }
        return 0;
    }

    // At the end; CollectionError when the key is there.
    void Add(T item, std::u16string key) {
        if (contains(key))
            throw CollectionError("the key is already associated with an element");
        entries_.push_back({std::move(key), std::move(item)});
    }

    T& Item(std::u16string_view key) { return entries_[indexOf(key)].item; }
    const T& Item(std::u16string_view key) const { return entries_[indexOf(key)].item; }
    T& Item(std::size_t at) { return entries_[checked(at)].item; }
    const T& Item(std::size_t at) const { return entries_[checked(at)].item; }
    const std::u16string& KeyAt(std::size_t at) const { return entries_[checked(at)].key; }

    void Remove(std::u16string_view key) { removeIndex(indexOf(key)); }
    void Remove(std::size_t at) { removeIndex(checked(at)); }
    void Clear() { entries_.clear(); }

  private:
    struct Entry {
        std::u16string key;
        T item;
    };

    std::size_t indexOf(std::u16string_view key) const {
        const std::size_t at = position(key);
        if (at == 0)
            throw CollectionError("no element has the key");
        return at - 1;
    }
    std::size_t checked(std::size_t at) const {
        if (at < 1 || at > entries_.size())
            throw CollectionError("no element has the position");
        return at - 1;
    }
    void removeIndex(std::size_t index) { entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index)); }

    std::vector<Entry> entries_;
};

} // namespace murmelix
