#pragma once

#include <KWCommon15/KWMemStream.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace KWFontService_NS {

// The encryption of Type 1 font programs (Adobe Type 1 Font Format, chapter 7).

inline constexpr std::uint16_t kEexecKey = 55665;
inline constexpr std::uint16_t kCharStringKey = 4330;

/// Bytes without a meaning at the start of an eexec section and of a charstring. Charstrings of a
/// font with another `lenIV` have as many as that says; it is not looked at.
inline constexpr std::size_t kType1LeadBytes = 4;

void type1Decrypt(std::span<std::uint8_t> bytes, std::uint16_t key);
void type1Encrypt(std::span<std::uint8_t> bytes, std::uint16_t key);

// The whole contents of a stream in place, its lead bytes included. Both positions are at the start
// afterwards.
void eexecDecrypt(KWCommonNS::KWMemStream& stream);
void eexecEncrypt(KWCommonNS::KWMemStream& stream);
void charStringDecrypt(KWCommonNS::KWMemStream& stream);

} // namespace KWFontService_NS
