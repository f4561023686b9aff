#include "controls/property_bag.h"

namespace murmelix {

void PropertyBag::WriteProperty(const std::u16string& name, const PropertyValue& value,
                                const PropertyValue& default_value) {
    if (value == default_value) {
        values_.erase(name);
    } else {
        values_.insert_or_assign(name, value);
    }
}

bool PropertyBag::ReadProperty(const std::u16string& name, bool default_value) const {
    const bool* value = find<bool>(name);
    return value ? *value : default_value;
}

std::u16string PropertyBag::ReadProperty(const std::u16string& name, const char16_t* default_value) const {
    const std::u16string* value = find<std::u16string>(name);
    return value ? *value : default_value;
}

std::int64_t PropertyBag::ReadProperty(const std::u16string& name, std::int64_t default_value, std::int64_t least,
                                       std::int64_t most) const {
    const std::int64_t* value = find<std::int64_t>(name);
    return value && *value >= least && *value <= most ? *value : default_value;
}

template <class T>
const T* PropertyBag::find(const std::u16string& name) const {
    const auto found = values_.find(name);
    return found == values_.end() ? nullptr : std::get_if<T>(&found->second);
}

} // namespace murmelix
