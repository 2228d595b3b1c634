#pragma once

#include "KWCommon15/KWUri.h"

#include <unicode/unistr.h>

#include <filesystem>

namespace KWTest {

/// A path as the text that the library takes.
icu::UnicodeString pathText(const std::filesystem::path& path);

/// A file as a URI.
KWCommonNS::KWUri fileUri(const std::filesystem::path& path);

} // namespace KWTest
