#include "type1/StandardFonts.h"

#include "type1/NameKeys.h"

#include <gtest/gtest.h>

#include <vector>

namespace KWFontService_NS {
namespace {

struct Row {
    const char* name;
    std::vector<double> numbers;
};

const Row kRows[] = {
    {"Courier", {805, 250, 805, -250, -23, 623, 0}},
    {"Courier-Bold", {801, 250, 801, -250, -113, 749, 0}},
    {"Courier-BoldOblique", {801, 250, 801, -250, -113, 749, -12}},
    {"Courier-Oblique", {805, 250, 805, -250, -23, 623, -12}},
    {"Helvetica", {905, 212, 1037, -325, -665, 2028, 0}},
    {"Helvetica-Bold", {905, 212, 1048, -376, -628, 2034, 0}},
    {"Helvetica-BoldOblique", {905, 212, 1031, -376, -560, 1157, -12}},
    {"Helvetica-Oblique", {905, 212, 1025, -325, -517, 1082, -12}},
    {"Times-Roman", {891, 216, 1007, -307, -568, 2028, 0}},
    {"Times-Bold", {891, 216, 1026, -307, -558, 2034, 0}},
    {"Times-Italic", {891, 216, 1023, -307, -498, 1120, -15.5}},
    {"Times-BoldItalic", {891, 216, 1032, -307, -546, 1206, -15}},
    {"Symbol", {1010, 293, 1010, -293, -180, 1090, 0}},
    {"ZapfDingbats", {857, 143, 820, -143, -1, 981, 0}},
};

TEST(StandardFonts, AllFourteenHaveTheirNumbers) {
    for (const Row& row : kRows) {
        const auto* font = findStandardFont(normaliseFontName(UnicodeString(row.name)));
        ASSERT_NE(font, nullptr) << row.name;
        const std::vector<double> numbers = {
            double(font->ascent), double(font->descent), double(font->top), double(font->bottom),
            double(font->left),   double(font->right),   font->italicAngle};
        EXPECT_EQ(numbers, row.numbers) << row.name;
        EXPECT_STREQ(font->name, row.name);
    }
}

TEST(StandardFonts, NamesAreKeysWithoutHyphensInCapitals) {
    EXPECT_NE(findStandardFont(u"TIMESROMAN"), nullptr);
    EXPECT_EQ(findStandardFont(u"Times-Roman"), nullptr);
    EXPECT_EQ(findStandardFont(u"TIMES"), nullptr);
    EXPECT_EQ(findStandardFont(u""), nullptr);
}

} // namespace
} // namespace KWFontService_NS
