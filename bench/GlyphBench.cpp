#include "bench/Subjects.h"

#include <KWFontService17/FS_GlyphBMP.h>
#include <KWFontService17/FS_GlyphBMPSetting.h>

#include FT_GLYPH_H

#include <benchmark/benchmark.h>

namespace KWBench {

namespace {

using KWFontService_NS::FS_GlyphBMP;
using KWFontService_NS::FS_GlyphBMPSetting;
using KWFontService_NS::KWError;
using KWFontService_NS::UnicodeString;

struct Text {
    Subject& (*subject)();
    const UnicodeString& (*text)();
};
constexpr Text kLatin{latinSubject, latinText};
constexpr Text kCjk{cjkSubject, cjkText};

std::vector<unsigned short> glyphsOf(const Text& text) {
    std::vector<unsigned short> glyphs(static_cast<std::size_t>(text.text().length()));
    int count = 0;
    text.subject().ours.getGlyphIDs(text.text(), glyphs.data(), count, false, nullptr);
    glyphs.resize(static_cast<std::size_t>(count));
    return glyphs;
}

void mapOurs(benchmark::State& state, Text text) {
    const UnicodeString& characters = text.text();
    std::vector<unsigned short> glyphs(static_cast<std::size_t>(characters.length()));
    const auto& font = text.subject().ours;
    for (auto _ : state) {
        int count = 0;
        font.getGlyphIDs(characters, glyphs.data(), count, false, nullptr);
        benchmark::DoNotOptimize(glyphs.data());
    }
}

void mapHarfBuzz(benchmark::State& state, Text text) {
    const std::vector<hb_codepoint_t> characters = codePoints(text.text());
    hb_font_t* font = text.subject().font.get();
    for (auto _ : state) {
        for (const hb_codepoint_t ch : characters) {
            hb_codepoint_t glyph = 0;
            hb_font_get_nominal_glyph(font, ch, &glyph);
            benchmark::DoNotOptimize(glyph);
        }
    }
}

void widthOurs(benchmark::State& state, Text text) {
    const std::vector<unsigned short> glyphs = glyphsOf(text);
    const auto& font = text.subject().ours;
    for (auto _ : state) {
        for (const unsigned short gid : glyphs)
            benchmark::DoNotOptimize(font.getGlyphWidth(gid, 0, false));
    }
}

void widthHarfBuzz(benchmark::State& state, Text text) {
    const std::vector<unsigned short> glyphs = glyphsOf(text);
    hb_font_t* font = text.subject().font.get();
    for (auto _ : state) {
        for (const unsigned short gid : glyphs)
            benchmark::DoNotOptimize(hb_font_get_glyph_h_advance(font, gid));
    }
}

void textWidthOurs(benchmark::State& state, Text text) {
    const auto& font = text.subject().ours;
    for (auto _ : state)
        benchmark::DoNotOptimize(font.getTextWidth(text.text(), -1000, false, nullptr));
}

void textWidthHarfBuzz(benchmark::State& state, Text text) {
    const std::vector<hb_codepoint_t> characters = codePoints(text.text());
    hb_font_t* font = text.subject().font.get();
    for (auto _ : state) {
        hb_position_t width = 0;
        for (const hb_codepoint_t ch : characters) {
            hb_codepoint_t glyph = 0;
            hb_font_get_nominal_glyph(font, ch, &glyph);
            width += hb_font_get_glyph_h_advance(font, glyph);
        }
        benchmark::DoNotOptimize(width);
    }
}

BENCHMARK_CAPTURE(mapOurs, latin, kLatin)->Name("getGlyphIDs/latin/ours");
BENCHMARK_CAPTURE(mapHarfBuzz, latin, kLatin)->Name("getGlyphIDs/latin/HarfBuzz");
BENCHMARK_CAPTURE(mapOurs, cjk, kCjk)->Name("getGlyphIDs/cjk/ours");
BENCHMARK_CAPTURE(mapHarfBuzz, cjk, kCjk)->Name("getGlyphIDs/cjk/HarfBuzz");
BENCHMARK_CAPTURE(widthOurs, latin, kLatin)->Name("getGlyphWidth/latin/ours");
BENCHMARK_CAPTURE(widthHarfBuzz, latin, kLatin)->Name("getGlyphWidth/latin/HarfBuzz");
BENCHMARK_CAPTURE(widthOurs, cjk, kCjk)->Name("getGlyphWidth/cjk/ours");
BENCHMARK_CAPTURE(widthHarfBuzz, cjk, kCjk)->Name("getGlyphWidth/cjk/HarfBuzz");
BENCHMARK_CAPTURE(textWidthOurs, latin, kLatin)->Name("getTextWidth/latin/ours");
BENCHMARK_CAPTURE(textWidthHarfBuzz, latin, kLatin)->Name("getTextWidth/latin/HarfBuzz");
BENCHMARK_CAPTURE(textWidthOurs, cjk, kCjk)->Name("getTextWidth/cjk/ours");
BENCHMARK_CAPTURE(textWidthHarfBuzz, cjk, kCjk)->Name("getTextWidth/cjk/HarfBuzz");

void kernOurs(benchmark::State& state) {
    const std::vector<unsigned short> glyphs = glyphsOf(kLatin);
    const auto& font = latinSubject().ours;
    for (auto _ : state) {
        for (std::size_t i = 1; i < glyphs.size(); ++i)
            benchmark::DoNotOptimize(font.getPairKerningValue(glyphs[i - 1], glyphs[i], 0, false));
    }
}
BENCHMARK(kernOurs)->Name("getPairKerningValue/latin/ours");

void kernFreeType(benchmark::State& state) {
    const std::vector<unsigned short> glyphs = glyphsOf(kLatin);
    const FT_Face face = latinSubject().ftFace;
    for (auto _ : state) {
        for (std::size_t i = 1; i < glyphs.size(); ++i) {
            FT_Vector kerning;
            FT_Get_Kerning(face, glyphs[i - 1], glyphs[i], FT_KERNING_UNSCALED, &kerning);
            benchmark::DoNotOptimize(kerning);
        }
    }
}
BENCHMARK(kernFreeType)->Name("getPairKerningValue/latin/FreeType");

constexpr unsigned int kDpi = 300;
constexpr int kPoints = 12;

std::vector<unsigned short> inkedGlyphs(const Text& text) {
    std::vector<unsigned short> glyphs;
    const std::vector<unsigned short> all = glyphsOf(text);
    const FT_Face face = text.subject().ftFace;
    for (const unsigned short gid : all) {
        const bool ink =
            FT_Load_Glyph(face, gid, FT_LOAD_NO_SCALE) == 0 && face->glyph->outline.n_points > 0;
        if (ink && glyphs.size() < 200)
            glyphs.push_back(gid);
    }
    return glyphs;
}

void drawOurs(benchmark::State& state, Text text) {
    const std::vector<unsigned short> glyphs = inkedGlyphs(text);
    const auto& font = text.subject().ours;
    const FS_GlyphBMPSetting setting;
    FS_GlyphBMP bitmap;
    KWError error;
    for (auto _ : state) {
        for (const unsigned short gid : glyphs) {
            font.drawGlyph(gid, kPoints, kDpi, &bitmap, setting, error);
            benchmark::DoNotOptimize(bitmap.getRows());
        }
    }
}

/// The least that gives the same bytes: load, render in black and white, spread bits to bytes.
void drawFreeType(benchmark::State& state, Text text) {
    const std::vector<unsigned short> glyphs = inkedGlyphs(text);
    const FT_Face face = text.subject().ftFace;
    FT_Set_Char_Size(face, 0, kPoints * 64, 0, kDpi);
    for (auto _ : state) {
        for (const unsigned short gid : glyphs) {
            FT_Load_Glyph(face, gid, FT_LOAD_NO_BITMAP);
            FT_Render_Glyph(face->glyph, FT_RENDER_MODE_MONO);
            const FT_Bitmap& source = face->glyph->bitmap;
            std::unique_ptr<unsigned char[]> pixels(new unsigned char[source.rows * source.width]);
            unsigned char* out = pixels.get();
            for (unsigned int y = 0; y < source.rows; ++y) {
                const unsigned char* row =
                    source.buffer + static_cast<std::ptrdiff_t>(y) * source.pitch;
                for (unsigned int x = 0; x < source.width; ++x)
                    *out++ = (row[x >> 3] & (0x80 >> (x & 7))) != 0 ? 0xFF : 0;
            }
            benchmark::DoNotOptimize(pixels.get());
        }
    }
}

BENCHMARK_CAPTURE(drawOurs, latin, kLatin)
    ->Name("drawGlyph/latin/ours")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(drawFreeType, latin, kLatin)
    ->Name("drawGlyph/latin/FreeType")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(drawOurs, cjk, kCjk)->Name("drawGlyph/cjk/ours")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(drawFreeType, cjk, kCjk)
    ->Name("drawGlyph/cjk/FreeType")
    ->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace KWBench
