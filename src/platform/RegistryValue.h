#pragma once

#include "platform/Platform.h"

#include <string>
#include <string_view>

/// @file
/// What the data of a registry value say. No call to a system, so that it is tested on all of them.

namespace KWPlatform {

/// @param data the code units as the registry stores them; closing NULs may be there or not
RegistryText registryTextOf(std::u16string name, RegistryType type, std::u16string_view data);

/// The font file that a value of a font list names; empty when it names none.
///
/// A multi-string of the Type 1 list begins with a string of one letter, the kind of the entry: its
/// two units are passed over, and the text up to the next NUL is the file.
std::u16string registeredFontFile(const RegistryText& value);

} // namespace KWPlatform
