#pragma once

#include <KWFontService17/FS_Export.h>

#include <KWCommon15/KWMemStream.h>
#include <KWCommon15/KWValue.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace KWFontService_NS {

/// The number of an operator of two bytes, 12 and this one.
constexpr int type1Escape(std::uint8_t second) {
    return 12 << 8 | second;
}
inline constexpr int kType1Seac = type1Escape(6);

/// What `seac` makes a glyph of: two others, by their codes in StandardEncoding.
struct Type1Seac {
    int base = 0;
    int accent = 0;
};
/// The first `seac` of a charstring; nothing when it has none with two numbers before it.
/// @param charString  decrypted, without its lead bytes
std::optional<Type1Seac> findType1Seac(std::span<const std::uint8_t> charString);

/// Takes a Type 1 charstring apart (Adobe Type 1 Font Format, chapter 6): an integer for each
/// number, a name for each operator. 12 with a byte that means nothing is "?12-%d" with its number,
/// and a single byte that means nothing "?%d". What is cut off at the end is left out.
/// @param charString  decrypted, without its lead bytes
/// @param tokens      appended to
/// @return            the number of the last operator, -1 for none
int scanCharString(std::span<const std::uint8_t> charString,
                   std::vector<KWCommonNS::KWValue>& tokens);

/// The same for a charstring in a stream.
/// @param plain  false: the whole contents are one, encrypted, which is decrypted in place; true:
///               what follows the stream's position is one, decrypted
int scanCharString(KWCommonNS::KWMemStream& stream, std::vector<KWCommonNS::KWValue>& tokens,
                   bool plain);

} // namespace KWFontService_NS
