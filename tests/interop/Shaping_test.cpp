// The example's shaping beside HarfBuzz: the same glyphs at the same places.

#include "support/FontPackages.h"
#include "typeset/ArabicJoining.h"
#include "typeset/Shaper.h"

#include <gtest/gtest.h>

#include <hb-ot.h>
#include <hb.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <vector>

using namespace typeset;
using namespace KWFontService_NS;

namespace {

/// A glyph where it is drawn, in font units from the left end of its run, y upwards.
struct Drawn {
    int gid = 0;
    int x = 0;
    int y = 0;

    friend bool operator==(const Drawn&, const Drawn&) = default;
    friend void PrintTo(const Drawn& glyph, std::ostream* out) {
        *out << glyph.gid << '@' << glyph.x << ',' << glyph.y;
    }
};

struct Lines {
    std::vector<Drawn> glyphs;
    int width = 0;
};

Lines shapedHere(const FontSet& fonts, const icu::UnicodeString& text) {
    const TextRuns split = splitIntoRuns(text, fonts, 0, false);
    EXPECT_EQ(split.runs.size(), 1U) << "the text is more than one run";
    const TextRun& run = split.runs.front();
    std::vector<GlyphIDPosition> glyphs =
        Shaper(fonts).shape({text, run, joiningForms(text), FeaturePlan(), 0});
    if (run.rightToLeft())
        std::reverse(glyphs.begin(), glyphs.end());
    Lines line;
    for (const GlyphIDPosition& glyph : glyphs) {
        line.glyphs.push_back(
            {glyph.getGlyphID(), line.width + glyph.getMoveX1(), -glyph.getMoveY()});
        line.width += glyph.getMoveX();
    }
    return line;
}

template <auto Destroy>
struct Destroyer {
    template <typename T>
    void operator()(T* thing) const {
        Destroy(thing);
    }
};

Lines shapedByHarfBuzz(const std::string& path, const icu::UnicodeString& text) {
    const std::unique_ptr<hb_blob_t, Destroyer<hb_blob_destroy>> blob(
        hb_blob_create_from_file(path.c_str()));
    const std::unique_ptr<hb_face_t, Destroyer<hb_face_destroy>> face(
        hb_face_create(blob.get(), 0));
    const std::unique_ptr<hb_font_t, Destroyer<hb_font_destroy>> font(hb_font_create(face.get()));
    const std::unique_ptr<hb_buffer_t, Destroyer<hb_buffer_destroy>> buffer(hb_buffer_create());
    hb_buffer_add_utf16(buffer.get(), reinterpret_cast<const std::uint16_t*>(text.getBuffer()),
                        text.length(), 0, text.length());
    hb_buffer_guess_segment_properties(buffer.get());
    hb_buffer_set_language(buffer.get(), hb_language_from_string("und", -1));
    hb_shape(font.get(), buffer.get(), nullptr, 0);
    unsigned count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer.get(), &count);
    const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer.get(), &count);
    Lines line;
    for (unsigned i = 0; i < count; ++i) {
        line.glyphs.push_back({static_cast<int>(infos[i].codepoint),
                               line.width + positions[i].x_offset, positions[i].y_offset});
        line.width += positions[i].x_advance;
    }
    return line;
}

void expectTheSame(const char* name, const std::vector<const char16_t*>& texts) {
    const std::string path = KWTest::packagedFont(name).string();
    const FontSet fonts{{openFont(path)}};
    for (const char16_t* words : texts) {
        const icu::UnicodeString text(words);
        const Lines here = shapedHere(fonts, text);
        const Lines there = shapedByHarfBuzz(path, text);
        std::string utf8;
        text.toUTF8String(utf8);
        EXPECT_EQ(here.glyphs, there.glyphs) << name << ": " << utf8;
        EXPECT_EQ(here.width, there.width) << name << ": " << utf8;
    }
}

} // namespace

TEST(Shaping, LatinIsSetAsByHarfBuzz) {
    const std::vector<const char16_t*> texts{
        u"The office offers fine flowers, baffled by waffles and fjords.",
        u"AVATAR WAVE Tomorrow LYTE Yvonne. Ta Te To, P. V. \u201CA\u201D",
        u"x\u030C q\u0303 m\u0308\u0304 \u1EA1\u0304\u0301 i\u030A \u012F\u0301 j\u0303",
        u"0123456789 (a) [b] {c}"};
    for (const char* font : {"DejaVuSerif", "DejaVuSans", "LiberationSerif", "Amiri"})
        expectTheSame(font, texts);
}

TEST(Shaping, GreekAndCyrillicAreSetAsByHarfBuzz) {
    const std::vector<const char16_t*> texts{
        u"\u03A4\u03B1 \u03B3\u03C1\u03AC\u03BC\u03BC\u03B1\u03C4\u03B1 \u0391\u03A5\u03A4\u039F",
        u"\u0413\u0434\u0435 \u0436\u0435 \u0423\u0422\u0420\u041E? \u0451 \u0438\u0301 "
        u"\u044B\u0300"};
    for (const char* font : {"DejaVuSerif", "DejaVuSans", "LiberationSerif"})
        expectTheSame(font, texts);
}

TEST(Shaping, ArabicIsSetAsByHarfBuzz) {
    const std::vector<const char16_t*> texts{
        u"\u0643\u062A\u0627\u0628 "
        u"\u0639\u0631\u0628\u064A "
        u"\u062C\u0645\u064A\u0644",
        u"\u0627\u0644\u0633\u0644\u0627\u0645 "
        u"\u0639\u0644\u064A\u0643\u0645",
        u"\u0643\u0650\u062A\u064E\u0627\u0628\u064C "
        u"\u0639\u064E\u0631\u064E\u0628\u0650\u064A\u0651\u064C "
        u"\u062C\u064E\u0645\u0650\u064A\u0644\u064C\u060C "
        u"\u0644\u064E\u0627 "
        u"\u062A\u064E\u0646\u0652\u0641\u064E\u0635\u0650\u0644\u064F "
        u"\u062D\u064F\u0631\u064F\u0648\u0641\u064F\u0647\u064F.",
        u"\u0628\u0650\u0633\u0652\u0645\u0650 "
        u"\u0627\u0644\u0644\u0651\u064E\u0647\u0650 "
        u"\u0627\u0644\u0631\u0651\u064E\u062D\u0652\u0645\u064E\u0670\u0646\u0650 "
        u"\u0627\u0644\u0631\u0651\u064E\u062D\u0650\u064A\u0645\u0650",
        u"\u0627\u0644\u0633\u0651\u064E\u0644\u064E\u0627\u0645\u064F "
        u"\u064A\u064E\u0642\u0652\u0631\u064E\u0623\u064F "
        u"\u0648\u064E\u064A\u064E\u0643\u0652\u062A\u064F\u0628\u064F "
        u"\u0627\u0644\u0648\u064E\u0644\u064E\u062F\u064F "
        u"\u0627\u0644\u062F\u0651\u064E\u0631\u0652\u0633\u064E "
        u"\u0641\u0650\u064A "
        u"\u0627\u0644\u0628\u064E\u064A\u0652\u062A\u0650"};
    for (const char* font : {"DejaVuSans", "Amiri"})
        expectTheSame(font, texts);
}
