#include "embed/CFFTopDict.h"

#include "CffOutput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;

struct Copy {
    Copy(const Bytes& dict, bool isCID, std::uint8_t offSize) {
        KWMemStream output;
        output.append("ab");
        blanks = copyTopDict(
            viewOf(dict), isCID, offSize,
            [](std::uint16_t sid) { return static_cast<std::uint16_t>(sid + 1000); }, output);
        bytes = bytesOf(output).slice(2, output.size() - 2);
    }
    Bytes bytes;
    TopDictBlanks blanks;
};

TEST(CFFTopDict, OffsetsOfANameKeyedFontGetBlanks) {
    const Bytes dict{140, 15, 141, 17, 142, 143, 18, 144, 12, 36, 145, 12, 37};
    const Copy narrow(dict, false, 2);
    EXPECT_EQ(narrow.bytes, (Bytes{28, 0, 0, 15, 28,  0,  0,  17,  28, 0, 0,
                                   28, 0, 0, 18, 144, 12, 36, 145, 12, 37}));
    EXPECT_EQ(narrow.blanks.charset, 1u);
    EXPECT_EQ(narrow.blanks.charStrings, 5u);
    EXPECT_EQ(narrow.blanks.privateSize, 9u);
    EXPECT_EQ(narrow.blanks.privateOffset, 12u);
    EXPECT_FALSE(narrow.blanks.fdArray);
    EXPECT_FALSE(narrow.blanks.fdSelect);
    const Copy wide(dict, false, 4);
    EXPECT_EQ(wide.bytes, (Bytes{29, 0,  0, 0, 0, 15, 29, 0,   0,  0,  0,   17, 28, 0,
                                 0,  29, 0, 0, 0, 0,  18, 144, 12, 36, 145, 12, 37}));
}

TEST(CFFTopDict, OfACIDKeyedFontTheArraysGetThemToo) {
    const Copy copy(Bytes{139, 139, 18, 144, 12, 36, 145, 12, 37}, true, 4);
    EXPECT_EQ(copy.bytes, (Bytes{28, 0, 0,  29, 0,  0, 0, 0, 18, 29, 0, 0,
                                 0,  0, 12, 36, 29, 0, 0, 0, 0,  12, 37}));
    EXPECT_EQ(copy.blanks.fdArray, 10u);
    EXPECT_EQ(copy.blanks.fdSelect, 17u);
}

TEST(CFFTopDict, BlanksMoveTogether) {
    Copy copy(Bytes{140, 15, 139, 139, 18}, false, 2);
    copy.blanks.move(100);
    EXPECT_EQ(copy.blanks.charset, 101u);
    EXPECT_EQ(copy.blanks.privateSize, 105u);
    EXPECT_EQ(copy.blanks.privateOffset, 108u);
    EXPECT_FALSE(copy.blanks.charStrings);
}

TEST(CFFTopDict, OnlyTheLastOperandIsReplaced) {
    EXPECT_EQ(Copy(Bytes{140, 141, 15, 140, 141, 16, 142, 143, 144, 18}, false, 2).bytes,
              (Bytes{140, 28, 0, 0, 15, 140, 142, 28, 0, 0, 28, 0, 0, 18}));
    EXPECT_EQ(Copy(Bytes{15, 16, 0, 18, 140, 5}, false, 2).bytes,
              (Bytes{28, 0, 0, 15, 28, 0, 0, 28, 0, 0, 18, 140, 5}));
}

TEST(CFFTopDict, CustomStringsOfNameKeyedFontsGetTheirNewNumbers) {
    const Bytes dict =
        joined(cffInteger(391), Bytes{3}, cffInteger(390), Bytes{4}, cffInteger(70000), Bytes{1});
    EXPECT_EQ(Copy(dict, false, 2).bytes,
              joined(Bytes{28, 5, 111, 3}, cffInteger(390), Bytes{4}, cffInteger(70000), Bytes{1}));
    EXPECT_EQ(Copy(dict, true, 4).bytes, dict);
    EXPECT_THAT(stringsOfTopDict(viewOf(dict)), ElementsAre(391));
}

TEST(CFFTopDict, WhatIsCutOffAtTheEndIsLeftOut) {
    EXPECT_EQ(Copy(Bytes{140, 5, 141, 29, 0}, false, 2).bytes, (Bytes{140, 5}));
    EXPECT_EQ(Copy(Bytes{140, 5, 141}, false, 2).bytes, (Bytes{140, 5}));
}

} // namespace
} // namespace KWFontService_NS
