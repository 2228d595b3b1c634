#include "bench/Subjects.h"

#include <KWCommon15/KWMemStream.h>

#include <hb-subset.h>

#include <benchmark/benchmark.h>

namespace KWBench {

namespace {

void embedOurs(benchmark::State& state, Subject& (*subject)()) {
    const auto glyphs = spreadGlyphs(subject(), static_cast<std::size_t>(state.range(0)));
    const auto& font = subject().ours;
    for (auto _ : state) {
        KWCommonNS::KWMemStream output;
        if (!font.getEmbedFont(glyphs, output))
            state.SkipWithError("no subset");
        benchmark::DoNotOptimize(output);
    }
}

void embedHarfBuzz(benchmark::State& state, Subject& (*subject)()) {
    const auto glyphs = spreadGlyphs(subject(), static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        const HbBlob blob(hb_blob_create_from_file(subject().path.c_str()));
        const HbFace face(hb_face_create(blob.get(), 0));
        hb_subset_input_t* input = hb_subset_input_create_or_fail();
        hb_subset_input_set_flags(input, HB_SUBSET_FLAGS_RETAIN_GIDS);
        hb_set_t* wanted = hb_subset_input_glyph_set(input);
        for (const unsigned short gid : glyphs)
            hb_set_add(wanted, gid);
        const HbFace subset(hb_subset_or_fail(face.get(), input));
        if (!subset)
            state.SkipWithError("no subset");
        const HbBlob bytes(subset ? hb_face_reference_blob(subset.get()) : nullptr);
        benchmark::DoNotOptimize(bytes.get());
        hb_subset_input_destroy(input);
    }
}

const int registered = [] {
    const auto pair = [](const char* name, Subject& (*subject)()) {
        for (const int count : {100, 1000, 5000}) {
            const std::string prefix =
                std::string("getEmbedFont/") + name + "-" + std::to_string(count) + "/";
            benchmark::RegisterBenchmark((prefix + "ours").c_str(), embedOurs, subject)
                ->Arg(count)
                ->Unit(benchmark::kMicrosecond);
            benchmark::RegisterBenchmark((prefix + "HarfBuzz").c_str(), embedHarfBuzz, subject)
                ->Arg(count)
                ->Unit(benchmark::kMicrosecond);
        }
    };
    pair("latin", latinSubject);
    pair("cjk", cjkSubsetSubject);
    return 0;
}();

} // namespace

} // namespace KWBench
