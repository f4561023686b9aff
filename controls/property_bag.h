// What a form keeps of a control's design-time properties: values by name. What it holds may come from anywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <variant>

namespace murmelix {

using PropertyValue = std::variant<bool, std::int64_t, std::u16string>;

class PropertyBag {
  public:
    // Nothing is kept of a value that equals its default.
    void WriteProperty(const std::u16string& name, const PropertyValue& value, const PropertyValue& default_value);

    // The default where there is none of the name, none of the default's type, or a number not from `least` to `most`.
    bool ReadProperty(const std::u16string& name, bool default_value) const;
    std::u16string ReadProperty(const std::u16string& name, const char16_t* default_value) const;
    std::int64_t ReadProperty(const std::u16string& name, std::int64_t default_value, std::int64_t least,
                              std::int64_t most) const;

    bool contains(const std::u16string& name) const { return values_.contains(name); }
    std::size_t Count() const { return values_.size(); }

  private:
    template <class T>
    const T* find(const std::u16string& name) const;

    std::map<std::u16string, PropertyValue> values_;
};

} // namespace murmelix
