#include "type1/NameKeys.h"

#include "common/AsciiChars.h"
#include "common/TextView.h"

#include <unicode/locid.h>

#include <string>

namespace KWFontService_NS {

// Most names are ASCII, which needs no tables.

UnicodeString normaliseFontName(const UnicodeString& name) {
    std::u16string kept;
    kept.reserve(static_cast<std::size_t>(name.length()));
    bool ascii = true;
    for (const char16_t unit : KWCommonNS::toView(name)) {
        if (unit == u' ' || unit == u'-' || unit == u'\u3000')
            continue;
        ascii = ascii && unit < 0x80;
        kept.push_back(KWCommonNS::toAsciiUpper(unit));
    }
    UnicodeString result = KWCommonNS::toText(kept);
    return ascii ? result : result.toUpper(icu::Locale::getRoot());
}

UnicodeString lowerFileName(const UnicodeString& fileName) {
    const std::u16string_view units = KWCommonNS::toView(fileName);
    for (const char16_t unit : units) {
        if (unit >= 0x80)
            return UnicodeString(fileName).toLower(icu::Locale::getRoot());
    }
    return KWCommonNS::toText(KWCommonNS::lowerAscii(units));
}

} // namespace KWFontService_NS
