#pragma once

#include "KWCommon15/KWExport.h"

#include <unicode/locid.h>

#include <cstdint>

namespace KWCommonNS {

/// A natural language, known by its Windows language identifier.
class KWCOMMON_API KWLang {
public:
    /// Windows language identifier (primary and sub-language, without sort order), as in the
    /// OpenType `name` table; 1033 is US English, 0 no language.
    using LanguageID = std::uint16_t;

    /// No language.
    constexpr KWLang() = default;
    /// The language of an identifier, which need not be known.
    constexpr explicit KWLang(LanguageID id) : id_(id) {}
    /// The language of a locale; none when Windows has no identifier for it.
    explicit KWLang(const icu::Locale& locale);

    /// The identifier; 0 for no language.
    constexpr LanguageID getLanguageID() const { return id_; }

    /// The ICU locale of this language; the root locale for no language or an unknown identifier.
    icu::Locale getLocale() const;

    /// The process's default locale, as ICU has it at the time of the call. Any thread may ask.
    static icu::Locale getDefaultLocale();

    friend constexpr bool operator==(KWLang, KWLang) = default;

private:
    LanguageID id_ = 0;
};

} // namespace KWCommonNS
