#include "support/FontPackages.h"
#include "support/TempDir.h"

#include <KWFontService17/FS_FontInfo.h>

#include <gtest/gtest.h>

#include <hb-ot.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

// What fonts say of formulas, as HarfBuzz reads it.

namespace KWFontService_NS {
namespace {

using namespace KWTest;

using Variants = std::vector<hb_ot_math_glyph_variant_t>;

class HarfBuzzFont {
public:
    explicit HarfBuzzFont(const Bytes& file) {
        hb_blob_t* blob = hb_blob_create(reinterpret_cast<const char*>(file.data()),
                                         static_cast<unsigned int>(file.size()),
                                         HB_MEMORY_MODE_DUPLICATE, nullptr, nullptr);
        face_.reset(hb_face_create(blob, 0));
        hb_blob_destroy(blob);
        font_.reset(hb_font_create(face_.get())); // answers in font units
    }

    bool hasData() const { return hb_ot_math_has_data(face_.get()) != 0; }
    int constant(int index) const {
        return hb_ot_math_get_constant(font_.get(), static_cast<hb_ot_math_constant_t>(index));
    }
    int italicsCorrection(unsigned short gid) const {
        return hb_ot_math_get_glyph_italics_correction(font_.get(), gid);
    }
    Variants variants(unsigned short gid, bool vertical) const {
        const hb_direction_t direction = vertical ? HB_DIRECTION_TTB : HB_DIRECTION_LTR;
        Variants all(
            hb_ot_math_get_glyph_variants(font_.get(), gid, direction, 0, nullptr, nullptr));
        auto count = static_cast<unsigned int>(all.size());
        hb_ot_math_get_glyph_variants(font_.get(), gid, direction, 0, &count, all.data());
        return all;
    }
    unsigned int glyphCount() const { return hb_face_get_glyph_count(face_.get()); }
    int unitsPerEm() const { return static_cast<int>(hb_face_get_upem(face_.get())); }

private:
    template <auto destroy>
    struct Destroyer {
        void operator()(auto* object) const { destroy(object); }
    };
    std::unique_ptr<hb_face_t, Destroyer<hb_face_destroy>> face_;
    std::unique_ptr<hb_font_t, Destroyer<hb_font_destroy>> font_;
};

/// The choice among variants that grow.
unsigned short chosen(const Variants& variants, int size) {
    const auto at = [&variants](auto place) {
        return static_cast<unsigned short>(variants[static_cast<std::size_t>(place)].glyph);
    };
    const auto count = std::ssize(variants);
    if (size > 0) {
        const auto tooSmall = std::ranges::count_if(
            variants, [size](const auto& variant) { return variant.advance < size; });
        return at(std::min(tooSmall, count - 1));
    }
    const auto fitting = std::ranges::count_if(
        variants, [size](const auto& variant) { return variant.advance <= -size; });
    const auto choice = std::min(fitting, count - 1);
    return choice == 0 ? FS_NO_GLYPH : at(choice - 1);
}

class MathOfPackagedFonts : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        const std::filesystem::path path = packagedFont(GetParam());
        ASSERT_TRUE(font.createFont(KWUri(UnicodeString::fromUTF8(path.string()))));
        theirs = std::make_unique<HarfBuzzFont>(readFile(path));
        ASSERT_TRUE(theirs->hasData());
        ASSERT_TRUE(font.hasMATHInfo());
        ASSERT_EQ(font.getUnitsPerEm(), theirs->unitsPerEm());
    }
    float em() const { return static_cast<float>(theirs->unitsPerEm()); }

    FS_FontInfo font;
    std::unique_ptr<HarfBuzzFont> theirs;
};

TEST_P(MathOfPackagedFonts, EveryConstantIsTheirs) {
    for (int i = 0; i <= HB_OT_MATH_CONSTANT_RADICAL_DEGREE_BOTTOM_RAISE_PERCENT; ++i) {
        const bool percentage = i <= HB_OT_MATH_CONSTANT_SCRIPT_SCRIPT_PERCENT_SCALE_DOWN ||
                                i == HB_OT_MATH_CONSTANT_RADICAL_DEGREE_BOTTOM_RAISE_PERCENT;
        EXPECT_FLOAT_EQ(font.getMATHConstant(static_cast<FS_MATHConstants>(i)),
                        static_cast<float>(theirs->constant(i)) / (percentage ? 100.0F : em()))
            << i;
    }
}

TEST_P(MathOfPackagedFonts, EveryItalicsCorrectionIsTheirs) {
    for (unsigned int gid = 0; gid < theirs->glyphCount(); ++gid) {
        const auto glyph = static_cast<unsigned short>(gid);
        const float correction = font.getItalicsCorrection(glyph);
        // They answer 0 for a glyph that is not listed.
        EXPECT_FLOAT_EQ(std::isnan(correction) ? 0.0F : correction,
                        static_cast<float>(theirs->italicsCorrection(glyph)) / em())
            << gid;
    }
}

TEST_P(MathOfPackagedFonts, EveryVariantIsChosenFromTheirs) {
    const int operatorHeight = theirs->constant(HB_OT_MATH_CONSTANT_DISPLAY_OPERATOR_MIN_HEIGHT);
    ASSERT_GT(operatorHeight, 0);
    for (unsigned int gid = 0; gid < theirs->glyphCount(); ++gid) {
        const auto glyph = static_cast<unsigned short>(gid);
        for (const bool vertical : {true, false}) {
            const auto ours = [&](int size) {
                return vertical ? font.getMATHVariantV(glyph, size)
                                : font.getMATHVariantH(glyph, size);
            };
            const Variants variants = theirs->variants(glyph, vertical);
            if (variants.empty()) {
                for (const int size : {-1000, 0, 1, 1000})
                    EXPECT_EQ(ours(size), FS_NO_GLYPH) << gid << ' ' << size;
                continue;
            }
            ASSERT_TRUE(std::ranges::is_sorted(variants, {}, &hb_ot_math_glyph_variant_t::advance))
                << gid << ": the choice here is for variants that grow";
            EXPECT_EQ(ours(0), chosen(variants, operatorHeight)) << gid;
            for (const auto& variant : variants)
                for (const int size : {variant.advance - 1, variant.advance, variant.advance + 1}) {
                    if (size <= 0)
                        continue;
                    EXPECT_EQ(ours(size), chosen(variants, size)) << gid << ' ' << size;
                    EXPECT_EQ(ours(-size), chosen(variants, -size)) << gid << ' ' << -size;
                }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Interop, MathOfPackagedFonts,
                         testing::Values("DejaVuMathTeXGyre", "TeXGyreTermesMath", "DejaVuSans"),
                         [](const auto& paramInfo) { return std::string(paramInfo.param); });

/// How much there is to compare in the fonts above.
TEST(MathOfTheTeXGyreFonts, HasCorrectionsAndVariantsInBothDirections) {
    for (const char* name : {"DejaVuMathTeXGyre", "TeXGyreTermesMath"}) {
        const HarfBuzzFont font(readFile(packagedFont(name)));
        int corrections = 0;
        int tall = 0;
        int wide = 0;
        for (unsigned int gid = 0; gid < font.glyphCount(); ++gid) {
            const auto glyph = static_cast<unsigned short>(gid);
            corrections += font.italicsCorrection(glyph) != 0;
            tall += font.variants(glyph, true).size() > 1;
            wide += font.variants(glyph, false).size() > 1;
        }
        EXPECT_GT(corrections, 400) << name;
        EXPECT_GT(tall, 60) << name;
        EXPECT_GT(wide, 60) << name;
    }
}

} // namespace
} // namespace KWFontService_NS
