// A paragraph from characters to positioned glyphs: we through the public calls, lookup by lookup,
// as a host must; HarfBuzz in one call, with the same features.

#include "bench/Subjects.h"

#include "support/RunShaper.h"
#include "support/SfntBuilder.h"

#include <benchmark/benchmark.h>

#include <unicode/unistr.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace KWBench {

namespace {

using KWFontService_NS::FS_FontInfo;
using KWFontService_NS::GlyphIDArray2;
using KWFontService_NS::UnicodeString;
using KWTest::RunShaper;
using HbBuffer = std::unique_ptr<hb_buffer_t, Deleter<hb_buffer_destroy>>;

struct Paragraph {
    const char* font;
    const char* script;
    const char* text;
    bool arabic = false;
};

constexpr const char* kEnglish =
    "The official affair of fifty waffles, efficiently filed, was a flat failure: Toward the "
    "first of five offices the staff flew, afflicted by fjords, and \"AVATAR\" was worn To Yale. "
    "Re\u0301sume\u0301, na\u00EFve and co\u0302te\u0301 were set with Ty, We, Va and Lo; if it "
    "fits, "
    "it sits. Fifteen different flowers offer effective comfort, and the wafer-thin muffin flips. ";
constexpr const char* kVerse =
    "بِسْمِ ٱللَّهِ ٱلرَّحْمَـٰنِ ٱلرَّحِيمِ ٱلْحَمْدُ لِلَّهِ رَبِّ ٱلْعَـٰلَمِينَ ٱلرَّحْمَـٰنِ ٱلرَّحِيمِ مَـٰلِكِ يَوْمِ ٱلدِّينِ "
    "إِيَّاكَ نَعْبُدُ وَإِيَّاكَ نَسْتَعِينُ ٱهْدِنَا ٱلصِّرَٰطَ ٱلْمُسْتَقِيمَ ";

const Paragraph kSerif{"DejaVuSerif", "latn", kEnglish};
const Paragraph kLibertine{"LinLibertine", "latn", kEnglish};
const Paragraph kAmiriLatin{"Amiri", "latn", kEnglish};
const Paragraph kAmiri{"Amiri", "arab", kVerse, true};

Subject& subjectOf(const char* font) {
    static std::map<std::string, Subject> subjects;
    return subjects.try_emplace(font, KWTest::packagedFont(font)).first->second;
}

UnicodeString textOf(const Paragraph& paragraph) {
    UnicodeString text;
    while (text.length() < 1000)
        text += UnicodeString::fromUTF8(paragraph.text);
    return text;
}

RunShaper::Plan planOf(const Paragraph& paragraph) {
    return {.script = paragraph.script,
            .features = RunShaper::commonFeatures(),
            .rtl = paragraph.arabic,
            .joining = paragraph.arabic};
}

void shapeOurs(benchmark::State& state, const Paragraph& paragraph) {
    const UnicodeString text = textOf(paragraph);
    RunShaper shaper(subjectOf(paragraph.font).ours, planOf(paragraph));
    for (auto _ : state)
        benchmark::DoNotOptimize(shaper.shape(text).data());
    state.SetItemsProcessed(state.iterations() * text.length());
}

void shapeHarfBuzz(benchmark::State& state, const Paragraph& paragraph) {
    const std::vector<hb_codepoint_t> text = codePoints(textOf(paragraph));
    const HbBuffer buffer(hb_buffer_create());
    for (auto _ : state) {
        hb_buffer_clear_contents(buffer.get());
        hb_buffer_add_codepoints(buffer.get(), text.data(), static_cast<int>(text.size()), 0, -1);
        hb_buffer_set_direction(buffer.get(),
                                paragraph.arabic ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
        hb_buffer_set_script(buffer.get(), paragraph.arabic ? HB_SCRIPT_ARABIC : HB_SCRIPT_LATIN);
        hb_shape(subjectOf(paragraph.font).font.get(), buffer.get(), nullptr, 0);
        benchmark::DoNotOptimize(hb_buffer_get_length(buffer.get()));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

/// Every lookup of the order over a run of which no glyph is covered.
void missOurs(benchmark::State& state, const Paragraph& paragraph) {
    const FS_FontInfo& font = subjectOf(paragraph.font).ours;
    auto* info = font.getGSUBGPOSInfo(KWTest::tagValue(paragraph.script), 0);
    int lookups = 0;
    while (FS_FontInfo::getGSUBFeatureTag(info, lookups) != 0)
        ++lookups;
    // What some lookup changes is left out.
    GlyphIDArray2 run;
    for (unsigned short gid = 1; gid < 6000 && run.size() < 1000; ++gid) {
        GlyphIDArray2 one;
        GlyphIDArray2 out;
        one.push_back(gid, font.getGlyphClassDef(gid));
        bool covered = false;
        for (int i = 0; i < lookups && !covered; ++i)
            covered = FS_FontInfo::processGSUB3(info, i, one, out, 1);
        if (!covered)
            run.push_back(one[0]);
    }
    GlyphIDArray2 out;
    for (auto _ : state) {
        for (int i = 0; i < lookups; ++i)
            benchmark::DoNotOptimize(FS_FontInfo::processGSUB3(info, i, run, out, 1));
    }
    state.counters["nsPerGlyphAndLookup"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * run.size() * lookups / 1e9,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    FS_FontInfo::deleteGSUBGPOSInfo(info);
}

/// Both threads shape with one font.
void shapeThreaded(benchmark::State& state) {
    const UnicodeString text = textOf(kSerif);
    RunShaper shaper(subjectOf(kSerif.font).ours, planOf(kSerif));
    for (auto _ : state)
        benchmark::DoNotOptimize(shaper.shape(text).data());
    state.SetItemsProcessed(state.iterations() * text.length());
}

BENCHMARK_CAPTURE(shapeOurs, serif, kSerif)->Name("shape/DejaVuSerif/ours");
BENCHMARK_CAPTURE(shapeHarfBuzz, serif, kSerif)->Name("shape/DejaVuSerif/HarfBuzz");
BENCHMARK_CAPTURE(shapeOurs, libertine, kLibertine)->Name("shape/LinLibertine/ours");
BENCHMARK_CAPTURE(shapeHarfBuzz, libertine, kLibertine)->Name("shape/LinLibertine/HarfBuzz");
BENCHMARK_CAPTURE(shapeOurs, amiriLatin, kAmiriLatin)->Name("shape/AmiriLatin/ours");
BENCHMARK_CAPTURE(shapeHarfBuzz, amiriLatin, kAmiriLatin)->Name("shape/AmiriLatin/HarfBuzz");
BENCHMARK_CAPTURE(shapeOurs, amiri, kAmiri)->Name("shape/Amiri/ours");
BENCHMARK_CAPTURE(shapeHarfBuzz, amiri, kAmiri)->Name("shape/Amiri/HarfBuzz");
BENCHMARK_CAPTURE(missOurs, serif, kSerif)->Name("missedLookups/DejaVuSerif/ours");
BENCHMARK_CAPTURE(missOurs, amiri, kAmiri)->Name("missedLookups/Amiri/ours");
BENCHMARK(shapeThreaded)->Name("shapeThreads/DejaVuSerif/ours")->ThreadRange(1, 2)->UseRealTime();

} // namespace

} // namespace KWBench
