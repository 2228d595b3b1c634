#include "bench/RatioReporter.h"
#include "bench/Subjects.h"
#include "support/Paths.h"

#include <KWCommon15/KWPtr.h>

// fcfreetype.h leans on fontconfig.h, so it comes behind it.
#include <fontconfig/fontconfig.h>

#include <fontconfig/fcfreetype.h>
#include <hb-ot.h>

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace KWBench {

namespace {

using KWCommonNS::KWPtr;
using KWFontService_NS::FS_BaseFont;
using KWFontService_NS::KWUri;

std::vector<KWUri> installedUris() {
    std::vector<KWUri> uris;
    for (const auto& path : installedFonts())
        uris.push_back(KWTest::fileUri(path));
    return uris;
}

void scanOurs(benchmark::State& state) {
    const std::vector<KWUri> uris = installedUris();
    for (auto _ : state) {
        for (const KWUri& uri : uris)
            benchmark::DoNotOptimize(scanFile(uri));
    }
    state.counters["files"] = static_cast<double>(uris.size());
}
BENCHMARK(scanOurs)->Name("scan/installed/ours")->Unit(benchmark::kMillisecond);

/// The same names and the same style, in every language that the font has them in.
void scanHarfBuzz(benchmark::State& state) {
    for (auto _ : state) {
        for (const auto& path : installedFonts()) {
            const HbBlob blob(hb_blob_create_from_file(path.c_str()));
            const HbFace face(hb_face_create(blob.get(), 0));
            unsigned int count = 0;
            const hb_ot_name_entry_t* entries = hb_ot_name_list_names(face.get(), &count);
            std::array<std::uint16_t, 4096> text;
            for (unsigned int i = 0; i < count; ++i) {
                switch (entries[i].name_id) {
                case 0:
                case 1:
                case 2:
                case 3:
                case 4:
                case 6:
                case 8:
                case 13:
                case 16:
                case 17:
                case 20: {
                    unsigned int size = text.size();
                    hb_ot_name_get_utf16(face.get(), entries[i].name_id, entries[i].language, &size,
                                         text.data());
                    benchmark::DoNotOptimize(text);
                    break;
                }
                default:
                    break;
                }
            }
            const HbFont font(hb_font_create(face.get()));
            for (const hb_style_tag_t tag : {HB_STYLE_TAG_WEIGHT, HB_STYLE_TAG_WIDTH,
                                             HB_STYLE_TAG_ITALIC, HB_STYLE_TAG_SLANT_ANGLE})
                benchmark::DoNotOptimize(hb_style_get_value(font.get(), tag));
            hb_font_extents_t extents;
            hb_font_get_h_extents(font.get(), &extents);
            benchmark::DoNotOptimize(extents);
        }
    }
}
BENCHMARK(scanHarfBuzz)->Name("scan/installed/HarfBuzz")->Unit(benchmark::kMillisecond);

void scanFontconfig(benchmark::State& state) {
    for (auto _ : state) {
        for (const auto& path : installedFonts()) {
            FcFontSet* set = FcFontSetCreate();
            int count = 0;
            FcFreeTypeQueryAll(reinterpret_cast<const FcChar8*>(path.c_str()),
                               static_cast<unsigned>(-1), nullptr, &count, set);
            FcFontSetDestroy(set);
        }
    }
}
BENCHMARK(scanFontconfig)
    ->Name("scan/installed/fontconfig")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 33)
/// Not a time: what the heap holds for each face that was scanned and not loaded.
void scannedHeap(benchmark::State& state) {
    const std::vector<KWUri> uris = installedUris();
    for (auto _ : state) {
        std::vector<KWPtr<FS_BaseFont>> fonts;
        fonts.reserve(uris.size());
        const std::size_t before = mallinfo2().uordblks;
        for (const KWUri& uri : uris) {
            if (KWPtr<FS_BaseFont> font = scanFile(uri))
                fonts.push_back(std::move(font));
        }
        const double perFace =
            static_cast<double>(mallinfo2().uordblks - before) / static_cast<double>(fonts.size());
        state.counters["bytes_per_face"] = perFace;
        std::array<char, 120> line;
        std::snprintf(line.data(), line.size(),
                      "heap of a scanned face: %.0f bytes on average of %zu", perFace,
                      fonts.size());
        addFigure(line.data());
    }
}
BENCHMARK(scannedHeap)->Name("scan/heap/ours")->Iterations(1);
#endif

} // namespace

} // namespace KWBench
