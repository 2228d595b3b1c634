#include "platform/RegistryValue.h"

#include <cstddef>
#include <utility>

namespace KWPlatform {

namespace {

constexpr std::size_t kEntryKindUnits = 2;

} // namespace

RegistryText registryTextOf(std::u16string name, RegistryType type, std::u16string_view data) {
    if (type == RegistryType::string)
        data = data.substr(0, data.find(u'\0')); // what lies behind the end is no text
    else
        data = data.substr(0, data.find_last_not_of(u'\0') + 1);
    return {std::move(name), type, std::u16string(data)};
}

std::u16string registeredFontFile(const RegistryText& value) {
    std::u16string_view text = value.text;
    if (value.type == RegistryType::multiString) {
        if (text.size() < kEntryKindUnits)
            return {};
        text.remove_prefix(kEntryKindUnits);
    }
    return std::u16string(text.substr(0, text.find(u'\0')));
}

} // namespace KWPlatform
