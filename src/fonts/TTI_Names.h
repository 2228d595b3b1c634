#pragma once

#include "fonts/SfntReader.h"

#include <KWCommon15/KWLang.h>

#include <cstdint>
#include <vector>

namespace KWFontService_NS {

/// The names of a face (OpenType `name`), by Windows or Macintosh language id.
class TTI_Names {
public:
    using LanguageID = KWCommonNS::KWLang::LanguageID;

    /// The eleven names that are kept, in the order of `kNameIds`.
    enum Which : std::uint8_t {
        Family,
        SubFamily,
        UniqueId,
        Full,
        PostScript,
        PreferredFamily,
        PreferredSubFamily,
        CidFindfont,
        Copyright,
        Manufacturer,
        License,
        kCount
    };

    /// Reads the table. False after reporting what failed, a table without a usable name included.
    /// @param macFont  Macintosh records count in full
    bool read(SfntReader& reader, const TTI_TableRecord& table, bool macFont);

    /// Chooses the record that answers for language 0: that of `systemLanguage`, else US English,
    /// else the lowest language there is. A PostScript name in US English goes before the chosen
    /// record's.
    void chooseDefault(LanguageID systemLanguage);

    /// `language` 0: the default name, else US English, else the lowest language that has it.
    /// Any other language: exactly that one. Empty when there is none.
    UnicodeString get(LanguageID language, Which which) const;
    /// The name of the default record alone, without any fallback.
    UnicodeString getDefault(Which which) const;
    /// Replaces the PostScript name of the default record.
    void setDefaultPostScript(const UnicodeString& name);

    /// The name of exactly that language, 0 (Macintosh English) included; null when there is none.
    const UnicodeString* find(LanguageID language, Which which) const;
    /// The languages that have a record, ascending.
    std::vector<LanguageID> languages() const;
    /// True when every Windows name record that counted was of the symbol encoding.
    bool symbolNamesOnly() const { return symbolNamesOnly_; }

private:
    /// Few of the eleven names of a language are there in most fonts, so only those are stored.
    struct Entry {
        LanguageID language;
        Which which;
        UnicodeString text;
    };

    class Pass;

    bool hasLanguage(LanguageID language) const;

    std::vector<Entry> entries_; ///< sorted by language, then name
    LanguageID defaultLanguage_ = 0;
    bool hasDefault_ = false;
    bool hasDefaultPostScript_ = false;
    bool symbolNamesOnly_ = false;
    UnicodeString defaultPostScript_;
};

} // namespace KWFontService_NS
