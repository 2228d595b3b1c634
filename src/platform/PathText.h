#pragma once

#include <optional>
#include <string>
#include <string_view>

/// @file
/// Bytes as UTF-16 and back without loss.
///
/// Well-formed UTF-8 is decoded; every other byte `b` is the lone code unit U+DC00 + b, that is
/// U+DC80 to U+DCFF. Decoded text that is encoded again gives the same bytes.

namespace KWPlatform {

std::u16string decodeBytes(std::string_view bytes);

/// @return nothing for a text with a lone surrogate outside U+DC80 to U+DCFF
std::optional<std::string> encodeBytes(std::u16string_view text);

} // namespace KWPlatform
