#include "KWCommon15/KWLang.h"

#include <unicode/uloc.h>

namespace KWCommonNS {

KWLang::KWLang(const icu::Locale& locale) : id_(static_cast<LanguageID>(locale.getLCID())) {}

icu::Locale KWLang::getLocale() const {
    if (id_ == 0)
        return icu::Locale::getRoot();
    char name[ULOC_FULLNAME_CAPACITY];
    UErrorCode status = U_ZERO_ERROR;
    uloc_getLocaleForLCID(id_, name, ULOC_FULLNAME_CAPACITY, &status);
    if (U_FAILURE(status) || status == U_STRING_NOT_TERMINATED_WARNING)
        return icu::Locale::getRoot();
    return icu::Locale(name);
}

icu::Locale KWLang::getDefaultLocale() {
    return icu::Locale::getDefault();
}

} // namespace KWCommonNS
