#include "bench/RatioReporter.h"
#include "bench/Subjects.h"

#include <KWCommon15/KWMemStream.h>

#include <hb-subset.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <malloc.h>
#include <string>
#include <utility>

namespace KWBench {

namespace {

using Writer = bool (*)(Subject& subject, const std::vector<unsigned short>& glyphs,
                        KWCommonNS::KWMemStream& output);

bool embed(Subject& subject, const std::vector<unsigned short>& glyphs,
           KWCommonNS::KWMemStream& output) {
    return subject.ours.getEmbedFont(glyphs, output);
}
bool makeSubset(Subject& subject, const std::vector<unsigned short>& glyphs,
                KWCommonNS::KWMemStream& output) {
    return subject.ours.makeSubsetFont(glyphs, output);
}

void writeOurs(benchmark::State& state, Subject& (*subject)(), Writer writer) {
    const auto glyphs = spreadGlyphs(subject(), static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        KWCommonNS::KWMemStream output;
        if (!writer(subject(), glyphs, output))
            state.SkipWithError("no subset");
        benchmark::DoNotOptimize(output);
    }
}

void writeHarfBuzz(benchmark::State& state, Subject& (*subject)(), unsigned flags) {
    const auto glyphs = spreadGlyphs(subject(), static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        const HbBlob blob(hb_blob_create_from_file(subject().path.c_str()));
        const HbFace face(hb_face_create(blob.get(), 0));
        hb_subset_input_t* input = hb_subset_input_create_or_fail();
        hb_subset_input_set_flags(input, flags);
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

/// A line of /proc/self/status, in bytes.
std::size_t processStatus(const std::string& key) {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.starts_with(key))
            return std::stoul(line.substr(key.size())) * 1024;
    }
    return 0;
}

/// How far the resident memory rises in one call, beside the table and the output.
void tellPeak(benchmark::State& state, const std::string& name, Subject& (*subject)(),
              Writer writer) {
    const auto glyphs = spreadGlyphs(subject(), static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        malloc_trim(0);
        std::ofstream("/proc/self/clear_refs") << 5; // the highest mark starts anew
        const std::size_t before = processStatus("VmRSS:");
        KWCommonNS::KWMemStream output;
        writer(subject(), glyphs, output);
        const std::size_t peak = processStatus("VmHWM:");
        const HbBlob table(
            hb_face_reference_table(subject().face.get(), HB_TAG('C', 'F', 'F', ' ')));
        std::array<char, 160> line{};
        std::snprintf(line.data(), line.size(),
                      "%s: rises by %.1f MiB; the table has %.1f, the output %.1f", name.c_str(),
                      static_cast<double>(peak - std::min(before, peak)) / 1048576,
                      static_cast<double>(hb_blob_get_length(table.get())) / 1048576,
                      static_cast<double>(output.size()) / 1048576);
        addFigure(line.data());
    }
}

const int registered = [] {
    const auto pair = [](const std::string& operation, Writer writer, const char* name,
                         Subject& (*subject)(), unsigned flags) {
        for (const int count : {100, 1000, 5000}) {
            const std::string prefix = operation + "/" + name + "-" + std::to_string(count) + "/";
            benchmark::RegisterBenchmark((prefix + "ours").c_str(), writeOurs, subject, writer)
                ->Arg(count)
                ->Unit(benchmark::kMicrosecond);
            benchmark::RegisterBenchmark((prefix + "HarfBuzz").c_str(), writeHarfBuzz, subject,
                                         flags)
                ->Arg(count)
                ->Unit(benchmark::kMicrosecond);
        }
    };
    constexpr unsigned kRetain = HB_SUBSET_FLAGS_RETAIN_GIDS;
    constexpr unsigned kRenumber = HB_SUBSET_FLAGS_DEFAULT;
    pair("getEmbedFont", embed, "latin", latinSubject, kRetain);
    pair("getEmbedFont", embed, "cjk", cjkSubsetSubject, kRetain);
    const auto cff = [&pair](const char* name, Subject& (*subject)()) {
        pair("getEmbedFont", embed, name, subject, kRenumber);
        pair("makeSubsetFont", makeSubset, name, subject, kRetain);
        for (const int count : {100, 5000, 65535}) {
            for (const auto& [operation, writer] :
                 {std::pair<const char*, Writer>{"getEmbedFont", embed},
                  std::pair<const char*, Writer>{"makeSubsetFont", makeSubset}}) {
                const std::string line =
                    std::string("peak of ") + operation + " " + name + "-" + std::to_string(count);
                benchmark::RegisterBenchmark(
                    (line + "/ours").c_str(),
                    [line, subject, use = writer](benchmark::State& state) {
                        tellPeak(state, line, subject, use);
                    })
                    ->Arg(count)
                    ->Iterations(1);
            }
        }
    };
    cff("cff-names", nameKeyedSubject);
    cff("cff-cids", cidKeyedSubject);
    return 0;
}();

} // namespace

} // namespace KWBench
