// From the bytes of a font to its first shaped line, as far as the layout tables go: we read GDEF,
// GSUB and GPOS; HarfBuzz makes a face and shapes one line, since it reads them by and by.

#include "bench/Subjects.h"

#include "layout/TTI_Gdef.h"
#include "layout/TTI_LayoutTable.h"
#include "support/FontTables.h"

#include <benchmark/benchmark.h>

#include <hb-ot.h>

#include <cstdint>
#include <filesystem>
#include <vector>

namespace KWBench {

namespace {

using KWFontService_NS::TTI_Gdef;
using KWFontService_NS::TTI_LayoutTable;

using HbBuffer = std::unique_ptr<hb_buffer_t, Deleter<hb_buffer_destroy>>;

struct Line {
    const char* font;
    const char* text;
};
constexpr Line kLatin{"DejaVuSerif", "The official affair of fifty waffles, efficiently filed."};
constexpr Line kLibertine{"LinLibertine",
                          "The official affair of fifty waffles, efficiently filed."};
constexpr Line kArabic{"Amiri", "بِسْمِ ٱللَّهِ ٱلرَّحْمَـٰنِ ٱلرَّحِيمِ"};

void loadOurs(benchmark::State& state, Line line) {
    const std::filesystem::path path = KWTest::packagedFont(line.font);
    const KWTest::Bytes gdefBytes = KWTest::fontTable(path, "GDEF");
    const KWTest::Bytes gsubBytes = KWTest::fontTable(path, "GSUB");
    const KWTest::Bytes gposBytes = KWTest::fontTable(path, "GPOS");
    for (auto _ : state) {
        TTI_Gdef gdef;
        gdef.read(KWCommonNS::ByteView(gdefBytes.data(), gdefBytes.size()));
        TTI_LayoutTable gpos;
        benchmark::DoNotOptimize(gpos.read(gposBytes.vector(), TTI_LayoutTable::Kind::Gpos));
        TTI_LayoutTable gsub;
        benchmark::DoNotOptimize(gsub.read(gsubBytes.vector(), TTI_LayoutTable::Kind::Gsub));
    }
}

void loadHarfBuzz(benchmark::State& state, Line line) {
    const std::filesystem::path path = KWTest::packagedFont(line.font);
    const HbBlob blob(hb_blob_create_from_file(path.c_str()));
    for (auto _ : state) {
        const HbFace face(hb_face_create(blob.get(), 0));
        const HbFont font(hb_font_create(face.get()));
        const HbBuffer buffer(hb_buffer_create());
        hb_buffer_add_utf8(buffer.get(), line.text, -1, 0, -1);
        hb_buffer_guess_segment_properties(buffer.get());
        hb_shape(font.get(), buffer.get(), nullptr, 0);
        benchmark::DoNotOptimize(hb_buffer_get_length(buffer.get()));
    }
}

BENCHMARK_CAPTURE(loadOurs, serif, kLatin)->Name("loadLayout/DejaVuSerif/ours");
BENCHMARK_CAPTURE(loadHarfBuzz, serif, kLatin)->Name("loadLayout/DejaVuSerif/HarfBuzz");
BENCHMARK_CAPTURE(loadOurs, libertine, kLibertine)->Name("loadLayout/LinLibertine/ours");
BENCHMARK_CAPTURE(loadHarfBuzz, libertine, kLibertine)->Name("loadLayout/LinLibertine/HarfBuzz");
BENCHMARK_CAPTURE(loadOurs, arabic, kArabic)->Name("loadLayout/Amiri/ours");
BENCHMARK_CAPTURE(loadHarfBuzz, arabic, kArabic)->Name("loadLayout/Amiri/HarfBuzz");

} // namespace

} // namespace KWBench
