#pragma once

#include "platform/Platform.h"

#include <optional>
#include <string>
#include <vector>

namespace KWPlatform {

/// One text value of a key, read only.
std::optional<RegistryText> readRegistryText(RegistryHive hive, const std::u16string& key,
                                             const std::u16string& name);

/// All text values of a key by their index; values of other types are passed over.
std::vector<RegistryText> readRegistryTexts(RegistryHive hive, const std::u16string& key);

} // namespace KWPlatform
