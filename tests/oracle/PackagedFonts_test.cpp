#include "LayoutComparison.h"
#include "LayoutParser.h"
#include "RandomLayout.h"

#include "support/FontPackages.h"
#include "support/Paths.h"
#include "support/SfntBuilder.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace KWTest::oracle {
namespace {

using KWFontService_NS::FS_FontInfo;

/// Every lookup of every language system of real fonts, over runs that it may like.
class PackagedFonts : public testing::TestWithParam<std::string_view> {
protected:
    void compareSystems(Case::Call byOrder, Case::Call byFeature) {
        open(packagedFont(GetParam()));
        const Layout& layout = Case{.call = byOrder}.kind() == Kind::Gsub ? font_.gsub : font_.gpos;
        if (layout.lookups.empty())
            return; // IPAGothic and TeXGyreTermesMath substitute only
        int applied = 0;
        for (const auto& [script, language] : systems(layout)) {
            LayoutComparison asked = comparison(script, language);
            compareOrder(asked, {.call = byOrder});
            compareFeatures(asked, {.call = byFeature});
            for (const auto& [type, number] : asked.counts().applied)
                applied += number;
            EXPECT_LE(asked.counts().undefined * 100, asked.counts().cases);
        }
        EXPECT_GT(applied, 10) << "the runs would otherwise be none that a lookup likes";
    }

private:
    void open(const std::filesystem::path& path) {
        ASSERT_TRUE(info_.createFont(fileUri(path)));
        font_ = parseFont(readFile(path));
        glyphs_ = glyphsOf(font_);
        ASSERT_FALSE(glyphs_.empty());
    }

    LayoutComparison comparison(Tag script, Tag language) {
        LayoutComparison::LibraryHandle handle(info_.getGSUBGPOSInfo(script, language));
        return LayoutComparison(font_, std::move(handle), script, language);
    }
    static std::vector<std::pair<Tag, Tag>> systems(const Layout& layout) {
        std::vector<std::pair<Tag, Tag>> found;
        for (const auto& [script, languages] : layout.scripts) {
            for (const auto& [language, system] : languages)
                found.emplace_back(script, language);
        }
        return found;
    }

    void compareOrder(LayoutComparison& comparison, Case asked) {
        const int size = comparison.orderSize(asked.kind());
        for (asked.index = 0; asked.index < size; ++asked.index) {
            for (int i = 0; i < kTimes; ++i)
                check(comparison, asked);
        }
    }
    void compareFeatures(LayoutComparison& comparison, Case asked) {
        for (const Tag tag : comparison.features(asked.kind())) {
            asked.tag = tag;
            for (int i = 0; i < kTimes; ++i)
                check(comparison, asked);
        }
    }
    void check(LayoutComparison& comparison, Case asked) {
        if (reports_ == kMaxReports)
            return;
        RandomRuns runs(font_, glyphs_, rng_);
        asked.line = runs.line(comparison.lookupsOf(asked), 12);
        asked.alternate = static_cast<int>(rng_.below(3));
        asked.rtl = rng_.chance(2);
        if (asked.call == Case::Call::ProcessGSUB3)
            asked.words = runs.words(asked.line.size());
        if (asked.byFeature() && !asked.line.empty())
            asked.index =
                static_cast<int>(rng_.below(static_cast<std::uint32_t>(asked.line.size())));
        const std::string difference = comparison.check(asked);
        if (!difference.empty()) {
            ++reports_;
            ADD_FAILURE() << difference;
        }
    }

    static constexpr int kMaxReports = 3;
    static constexpr int kTimes = 4;

    FS_FontInfo info_;
    Font font_;
    std::vector<Glyph> glyphs_;
    Rng rng_{1};
    int reports_ = 0;
};

TEST_P(PackagedFonts, SubstituteAsTheRulesSay) {
    compareSystems(Case::Call::ProcessGSUB3, Case::Call::ProcessGSUB);
}

TEST_P(PackagedFonts, PositionAsTheRulesSay) {
    compareSystems(Case::Call::ProcessGPOS3, Case::Call::ProcessGPOS);
}

INSTANTIATE_TEST_SUITE_P(Layout, PackagedFonts,
                         testing::Values("DejaVuSans", "LiberationSans", "LinLibertine", "Amiri",
                                         "LohitDevanagari", "TeXGyreTermesMath", "LMRoman10",
                                         "IPAGothic", "NimbusSans"),
                         [](const auto& font) {
                             std::string name;
                             for (const char c : font.param)
                                 name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
                             return name;
                         });

} // namespace
} // namespace KWTest::oracle
