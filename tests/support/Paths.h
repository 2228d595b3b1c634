#pragma once

#include "KWCommon15/KWUri.h"

#include <unicode/unistr.h>

#include <filesystem>
#include <string>

namespace KWTest {

/// A path as the text that the library takes.
icu::UnicodeString pathText(const std::filesystem::path& path);

/// A path as posix writes it, whatever system wrote it: "/" between its parts and no drive. For
/// expectations that are about something else.
std::string posixForm(std::string path);

/// The local path of a URI in that form.
std::string posixPath(const KWCommonNS::KWUri& uri);

/// A file as a URI.
KWCommonNS::KWUri fileUri(const std::filesystem::path& path);

} // namespace KWTest
