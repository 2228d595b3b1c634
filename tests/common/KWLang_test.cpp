#include "KWCommon15/KWLang.h"

#include <gtest/gtest.h>

using namespace KWCommonNS;

namespace {

TEST(KWLang, ALocaleHasItsWindowsIdentifier) {
    EXPECT_EQ(KWLang(icu::Locale::getUS()).getLanguageID(), 1033);
    EXPECT_EQ(KWLang(icu::Locale::getJapan()).getLanguageID(), 1041);
    EXPECT_EQ(KWLang(icu::Locale("zh_TW")).getLanguageID(), 1028);
}

TEST(KWLang, TheSortOrderIsNoPartOfTheIdentifier) {
    EXPECT_EQ(KWLang(icu::Locale("de_DE@collation=phonebook")).getLanguageID(), 1031);
}

TEST(KWLang, AnIdentifierHasItsLocale) {
    EXPECT_STREQ(KWLang(1033).getLocale().getName(), "en_US");
    EXPECT_STREQ(KWLang(1041).getLocale().getName(), "ja_JP");
}

TEST(KWLang, NoLanguageIsTheRootLocale) {
    EXPECT_EQ(KWLang().getLanguageID(), 0);
    EXPECT_EQ(KWLang().getLocale(), icu::Locale::getRoot());
    EXPECT_EQ(KWLang(0xFFFF).getLocale(), icu::Locale::getRoot());
}

TEST(KWLang, TheDefaultLocaleIsThatOfTheProcess) {
    const icu::Locale before = KWLang::getDefaultLocale();
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale::getKorea(), status);
    const icu::Locale during = KWLang::getDefaultLocale();
    icu::Locale::setDefault(before, status);
    EXPECT_TRUE(U_SUCCESS(status));
    EXPECT_EQ(during, icu::Locale::getKorea());
    EXPECT_EQ(during.getLCID(), 1042U);
    EXPECT_EQ(KWLang::getDefaultLocale(), before);
}

TEST(KWLang, EqualIdentifiersAreEqualLanguages) {
    EXPECT_EQ(KWLang(1033), KWLang(icu::Locale::getUS()));
    EXPECT_NE(KWLang(1033), KWLang(1041));
}

} // namespace
