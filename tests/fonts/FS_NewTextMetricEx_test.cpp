#include "fonts/MetricFields.h"

#include <KWFontService17/FS_WindowsRecords.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <type_traits>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

using Metric = FS_NewTextMetricEx;
using ScriptTest = bool (Metric::*)() const;

/// A bit of one of the six words that a font declares what it serves with.
struct Bit {
    std::size_t word; // 0 to 3 Unicode ranges, 4 and 5 code pages
    unsigned int place;

    friend bool operator==(const Bit&, const Bit&) = default;
};
constexpr std::size_t kWords = 6;
constexpr std::size_t kCodePages = 4;

// Places as OpenType counts them within a word.
constexpr Bit R1(unsigned int place) {
    return {0, place};
}
constexpr Bit R2(unsigned int place) {
    return {1, place};
}
constexpr Bit R3(unsigned int place) {
    return {2, place};
}
constexpr Bit C(unsigned int place) {
    return {kCodePages, place};
}

Metric declaring(std::initializer_list<Bit> bits) {
    NEWTEXTMETRICEXW record{};
    for (const Bit& bit : bits) {
        auto& word = bit.word < kCodePages ? record.ntmFontSig.fsUsb[bit.word]
                                           : record.ntmFontSig.fsCsb[bit.word - kCodePages];
        word |= decltype(record.ntmFontSig.fsUsb[0] + 0){1} << bit.place;
    }
    return record;
}

template <class Visit>
void forEachBit(const Visit& visit) {
    for (std::size_t word = 0; word < kWords; ++word) {
        for (unsigned int place = 0; place < 32; ++place)
            visit(Bit{word, place});
    }
}

// --- records ------------------------------------------------------------------------------------

TEST(NewTextMetricEx, AFreshRecordIsAllZeroAndOfVariablePitch) {
    const Metric metric;
    for (const double field : metricFields(metric))
        EXPECT_EQ(field, 0);
    EXPECT_FALSE(metric.isFixedPitch()) << "the bit for a variable pitch is set";
    EXPECT_FALSE(metric.hasValue());
    EXPECT_FALSE(metric.hasTypoInfo());
    EXPECT_FALSE(metric.hasVertTypoInfo());
    EXPECT_FALSE(metric.isItalic());
    EXPECT_FALSE(metric.checkFSCharSet(0xFFFFFFFF));
}

TEST(NewTextMetricEx, IsAPlainValue) {
    EXPECT_TRUE(std::is_trivially_copyable_v<Metric>);
    EXPECT_TRUE(std::is_trivially_destructible_v<Metric>);
    const Metric metric = declaring({C(3)});
    Metric copy;
    copy = metric;
    EXPECT_EQ(metricFields(copy), metricFields(metric));
}

TEST(NewTextMetricEx, TakesTheValuesOfAWindowsRecord) {
    NEWTEXTMETRICEXW record{};
    record.ntmTm.tmHeight = 1111;
    record.ntmTm.tmAscent = 900;
    record.ntmTm.tmDescent = 210;
    record.ntmTm.tmInternalLeading = 111;
    record.ntmTm.tmExternalLeading = 33;
    record.ntmTm.tmAveCharWidth = 450;
    record.ntmTm.tmMaxCharWidth = 1200;
    record.ntmTm.tmItalic = 1;
    record.ntmTm.tmPitchAndFamily = 0x10;
    record.ntmFontSig.fsUsb[0] = 1;
    record.ntmFontSig.fsUsb[3] = 0x80000000;
    record.ntmFontSig.fsCsb[0] = 5;
    const Metric metric(record);
    EXPECT_EQ(metric.getAscent(), 900);
    EXPECT_EQ(metric.getDescent(), 210);
    EXPECT_EQ(metric.getInternalLeadingA(), 55.5F) << "half of it, the half unit included";
    EXPECT_EQ(metric.getInternalLeadingD(), 55.5F);
    EXPECT_EQ(metric.getAveCharWidth(), 450);
    EXPECT_EQ(metric.getMaxCharWidth(), 1200);
    EXPECT_TRUE(metric.isFixedPitch());
    EXPECT_TRUE(metric.isSerifLike());
    EXPECT_TRUE(metric.checkUSB(USB_BasicLatin));
    EXPECT_TRUE(metric.checkUSB(static_cast<UnicodeSubsetBitFields>(127)));
    EXPECT_EQ(metric.getCodePageBits0(), 5U);
    EXPECT_TRUE(metric.hasValue());
}

TEST(NewTextMetricEx, WhatAWindowsRecordDoesNotGiveIsZero) {
    NEWTEXTMETRICEXW record{};
    record.ntmTm.tmAscent = 900;
    record.ntmTm.tmExternalLeading = 33;
    record.ntmTm.tmItalic = 1;
    const Metric metric(record);
    EXPECT_EQ(metric.getCapHeight(), 0);
    EXPECT_EQ(metric.getExternalLeading(), 0);
    EXPECT_EQ(metric.getItalicAngle(), 0);
    EXPECT_FALSE(metric.isItalic());
    EXPECT_FALSE(metric.isSymbolFont());
    for (const float corner : metric.getFontBBox())
        EXPECT_EQ(corner, 0);
    EXPECT_FALSE(metric.hasTypoInfo());
    EXPECT_EQ(metric.getTypoDescender(), 0);
    EXPECT_FALSE(metric.hasVertTypoInfo());
    EXPECT_TRUE(metric.isInUnicodeRange('A'));
}

TEST(NewTextMetricEx, PitchAndFamilyAreReadByTheirBits) {
    const auto of = [](int value) {
        NEWTEXTMETRICEXW record{};
        record.ntmTm.tmPitchAndFamily = static_cast<unsigned char>(value);
        return Metric(record);
    };
    EXPECT_TRUE(of(0x00).isFixedPitch());
    EXPECT_FALSE(of(0x01).isFixedPitch());
    EXPECT_TRUE(of(0x8E).isFixedPitch()) << "bit 0 alone counts";
    for (int family = 0; family < 8; ++family) {
        const Metric metric = of(0x8F | (family << 4));
        EXPECT_EQ(metric.isSerifLike(), family == 1) << family;
        EXPECT_EQ(metric.isScriptLike(), family == 4) << family;
    }
}

TEST(NewTextMetricEx, UnicodeSubsetBitsAreCountedThroughTheFourWords) {
    forEachBit([](const Bit& set) {
        const Metric metric = declaring({set});
        for (unsigned int n = 0; n < 128; ++n) {
            EXPECT_EQ(metric.checkUSB(static_cast<UnicodeSubsetBitFields>(n)),
                      set.word < kCodePages && n == 32 * set.word + set.place)
                << n;
        }
    });
}

TEST(NewTextMetricEx, AUnicodeSubsetBitThatThereIsNotIsNotSet) {
    const Metric metric = declaring({C(0), {3, 31}});
    EXPECT_FALSE(metric.checkUSB(static_cast<UnicodeSubsetBitFields>(128)));
    EXPECT_FALSE(metric.checkUSB(static_cast<UnicodeSubsetBitFields>(0xFFFFFFFF)));
}

TEST(NewTextMetricEx, CodePagesAreAskedForAndAddedByMask) {
    Metric metric = declaring({C(3), {kCodePages + 1, 5}});
    EXPECT_TRUE(metric.checkFSCharSet(0x18));
    EXPECT_FALSE(metric.checkFSCharSet(0x30)) << "the second word does not count";
    EXPECT_FALSE(metric.checkFSCharSet(0));
    metric.setCodePageBits0(0x80000001);
    EXPECT_EQ(metric.getCodePageBits0(), 0x80000009) << "none is taken away";
}

TEST(NewTextMetricEx, EveryCharacterIsInRangeWithoutAnEntryOfTheConfiguration) {
    for (const int ch : {-1, 0, 0x41, 0x10FFFF, 0x7FFFFFFF})
        EXPECT_TRUE(Metric().isInUnicodeRange(ch));
}

// --- scripts ------------------------------------------------------------------------------------

struct ScriptRow {
    const char* name;
    ScriptTest test;
    std::vector<Bit> bits; // any of them
};

const ScriptRow kScripts[] = {
    {"isLatin1", &Metric::isLatin1, {R1(0), C(0)}},
    {"isGreek", &Metric::isGreek, {R1(7), C(3)}},
    {"isCyrillic", &Metric::isCyrillic, {R1(9), C(2)}},
    {"isArmenian", &Metric::isArmenian, {R1(10)}},
    {"isHebrew", &Metric::isHebrew, {R1(11), C(5)}},
    {"isArabic", &Metric::isArabic, {R1(13), C(6)}},
    {"isDevanagari", &Metric::isDevanagari, {R1(15)}},
    {"isBengali", &Metric::isBengali, {R1(16)}},
    {"isGurmukhi", &Metric::isGurmukhi, {R1(17)}},
    {"isGujarati", &Metric::isGujarati, {R1(18)}},
    {"isOriya", &Metric::isOriya, {R1(19)}},
    {"isTamil", &Metric::isTamil, {R1(20)}},
    {"isTelugu", &Metric::isTelugu, {R1(21)}},
    {"isKannada", &Metric::isKannada, {R1(22)}},
    {"isMalayalam", &Metric::isMalayalam, {R1(23)}},
    {"isThai", &Metric::isThai, {R1(24), C(16)}},
    {"isLao", &Metric::isLao, {R1(25)}},
    {"isGeorgian", &Metric::isGeorgian, {R1(26)}},
    {"isHiragana", &Metric::isHiragana, {R2(17), C(17)}},
    {"isKatakana", &Metric::isKatakana, {R2(18), C(17)}},
    {"isKorean", &Metric::isKorean, {R2(24), C(19)}},
    {"isMathOperator", &Metric::isMathOperator, {R2(6), R3(25)}},
    {"isTibetan", &Metric::isTibetan, {R3(6)}},
    {"isSyriac", &Metric::isSyriac, {R3(7)}},
    {"isSinhala", &Metric::isSinhala, {R3(9)}},
    {"isMyanmar", &Metric::isMyanmar, {R3(10)}},
    {"isEthiopic", &Metric::isEthiopic, {R3(11)}},
    {"isKhmer", &Metric::isKhmer, {R3(16)}},
};

TEST(NewTextMetricEx, AScriptIsThereByEachOfItsBitsAndByNoOther) {
    for (const ScriptRow& row : kScripts) {
        EXPECT_FALSE((Metric().*row.test)()) << row.name;
        forEachBit([&row](const Bit& bit) {
            EXPECT_EQ((declaring({bit}).*row.test)(), std::ranges::count(row.bits, bit) == 1)
                << row.name << " by bit " << bit.place << " of word " << bit.word;
        });
    }
}

struct CjkRow {
    const char* name;
    ScriptTest test;
    ScriptTest encoding;
    unsigned int codePage;
    std::vector<Bit> blocks; // any of them
};

const CjkRow kCjk[] = {
    {"simplified Chinese",
     &Metric::isChineseSimp,
     &Metric::isChineseSimpEncoding,
     18,
     {R2(27), R2(23), R2(16)}},
    {"traditional Chinese",
     &Metric::isChineseTrad,
     &Metric::isChineseTradEncoding,
     20,
     {R2(27), R2(23), R2(16)}},
    {"Japanese",
     &Metric::isJapanese,
     &Metric::isJapaneseEncoding,
     17,
     {R2(17), R2(18), R2(27), R2(23), R2(16), R3(1)}},
};

TEST(NewTextMetricEx, ACjkScriptTakesItsCodePageAndABlock) {
    for (const CjkRow& row : kCjk) {
        forEachBit([&row](const Bit& block) {
            EXPECT_FALSE((declaring({block}).*row.test)()) << row.name << ": one bit is too little";
            const bool isBlock = std::ranges::count(row.blocks, block) == 1;
            EXPECT_EQ((declaring({C(row.codePage), block}).*row.test)(), isBlock)
                << row.name << " with bit " << block.place << " of word " << block.word;
        });
        for (unsigned int page = 0; page < 32; ++page) {
            for (const Bit& block : row.blocks)
                EXPECT_EQ((declaring({C(page), block}).*row.test)(), page == row.codePage)
                    << row.name << " with code page " << page;
        }
    }
}

TEST(NewTextMetricEx, ACjkEncodingTakesNoOtherCodePage) {
    for (const CjkRow& row : kCjk) {
        const Bit block = row.blocks.front();
        EXPECT_TRUE((declaring({C(row.codePage), block}).*row.encoding)()) << row.name;
        EXPECT_FALSE((declaring({C(row.codePage)}).*row.encoding)()) << row.name;
        forEachBit([&](const Bit& other) {
            const bool isOtherPage = other.word == kCodePages && other.place != row.codePage;
            EXPECT_EQ((declaring({C(row.codePage), block, other}).*row.encoding)(), !isOtherPage)
                << row.name << " with bit " << other.place << " of word " << other.word;
        });
    }
}

TEST(NewTextMetricEx, AKoreanEncodingIsKoreanByEitherBitWithoutAnotherCodePage) {
    EXPECT_TRUE(declaring({C(19)}).isKoreanEncoding());
    EXPECT_TRUE(declaring({R2(24)}).isKoreanEncoding()) << "without any code page";
    EXPECT_FALSE(Metric().isKoreanEncoding());
    for (unsigned int page = 0; page < 32; ++page) {
        EXPECT_EQ(declaring({R2(24), C(page)}).isKoreanEncoding(), page == 19) << page;
        EXPECT_EQ(declaring({C(19), C(page)}).isKoreanEncoding(), page == 19) << page;
    }
    EXPECT_TRUE(declaring({C(19), {kCodePages + 1, 0}}).isKoreanEncoding());
}

TEST(NewTextMetricEx, AJapaneseFontWithLatinIsJapaneseAndNotOfTheJapaneseEncoding) {
    const Metric metric = declaring({C(17), C(0), R2(17)});
    EXPECT_TRUE(metric.isJapanese());
    EXPECT_FALSE(metric.isJapaneseEncoding());
}

} // namespace
} // namespace KWFontService_NS
