#include "bench/RatioReporter.h"
#include "bench/Subjects.h"
#include "fonts/FontTyping.h"
#include "support/Paths.h"

#include <KWFontService17/FS_MergeEmbeddedFonts.h>

#include <KWCommon15/KWMemStream.h>

#include <hb-subset.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <malloc.h>
#include <map>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>

namespace KWBench {

namespace {

using KWFontService_NS::FS_BaseFont;
using KWFontService_NS::KWError;

/// The first face of a font file, to be cut.
struct Face {
    explicit Face(const char* name)
        : path(KWTest::packagedFont(name)), blob(hb_blob_create_from_file(path.c_str())),
          face(hb_face_create(blob.get(), 0)) {
        const auto uri = KWTest::fileUri(path);
        std::ifstream stream(path, std::ios::binary);
        font = KWFontService_NS::createFontObject(
            uri, path.extension() == ".ttc" ? KWFontService_NS::FS_FILETYPE_COLLECTION
                                            : KWFontService_NS::sfntTypeOf(stream));
        KWError error;
        if (!font || !font->scanFont(error, stream) || !font->loadFont(error, 0, nullptr))
            throw std::runtime_error("cannot open " + path.string());
    }

    std::filesystem::path path;
    KWCommonNS::KWPtr<FS_BaseFont> font;
    HbBlob blob;
    HbFace face;
};

/// One font a name, made on first use and kept to the end.
Face& faceOf(const char* name) {
    static std::map<std::string, Face> faces;
    return faces.try_emplace(name, name).first->second;
}

using Glyphs = std::vector<unsigned short>;
using Writer = bool (*)(FS_BaseFont& font, const Glyphs& glyphs, KWCommonNS::KWMemStream& output);

bool embed(FS_BaseFont& font, const Glyphs& glyphs, KWCommonNS::KWMemStream& output) {
    return font.getEmbedFont(glyphs, output, nullptr, 0);
}
bool makeSubset(FS_BaseFont& font, const Glyphs& glyphs, KWCommonNS::KWMemStream& output) {
    return font.makeSubsetFont(glyphs, output, nullptr, 0);
}

void writeOurs(benchmark::State& state, const char* name, Writer writer) {
    Face& face = faceOf(name);
    const Glyphs glyphs = spreadGlyphs(face.face.get(), static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        KWCommonNS::KWMemStream output;
        if (!writer(*face.font, glyphs, output))
            state.SkipWithError("no subset");
        benchmark::DoNotOptimize(output);
    }
}

void writeHarfBuzz(benchmark::State& state, const char* name, unsigned flags) {
    const Face& source = faceOf(name);
    const Glyphs glyphs = spreadGlyphs(source.face.get(), static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        const HbBlob blob(hb_blob_create_from_file(source.path.c_str()));
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

/// Two subsets of so many glyphs, none of them in both but glyph 0, become one.
void merge(benchmark::State& state, const char* name, bool isCFF) {
    using KWFontService_NS::FS_MergeEmbeddedFonts;
    Face& face = faceOf(name);
    Glyphs glyphs = spreadGlyphs(face.face.get(), static_cast<std::size_t>(state.range(0)));
    std::array<KWCommonNS::KWMemStream, 2> inputs;
    bool ok = true;
    for (KWCommonNS::KWMemStream& input : inputs) {
        ok = ok && embed(*face.font, glyphs, input);
        for (unsigned short& gid : glyphs)
            ++gid;
    }
    for (auto _ : state) {
        KWCommonNS::KWMemStream output;
        ok = ok &&
             (isCFF ? FS_MergeEmbeddedFonts::mergeCFF(output, &inputs[0], &inputs[1], true)
                    : FS_MergeEmbeddedFonts::mergeTrueType(output, &inputs[0], &inputs[1], true));
        benchmark::DoNotOptimize(output);
    }
    if (!ok)
        state.SkipWithError("no merge");
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
void tellPeak(benchmark::State& state, const std::string& label, const char* name, Writer writer) {
    Face& face = faceOf(name);
    const Glyphs glyphs = spreadGlyphs(face.face.get(), static_cast<std::size_t>(state.range(0)));
    const HbBlob table(hb_face_reference_table(face.face.get(), HB_TAG('C', 'F', 'F', ' ')));
    for (auto _ : state) {
        malloc_trim(0);
        std::ofstream("/proc/self/clear_refs") << 5; // the highest mark starts anew
        const std::size_t before = processStatus("VmRSS:");
        KWCommonNS::KWMemStream output;
        if (!writer(*face.font, glyphs, output))
            state.SkipWithError("no subset");
        const std::size_t peak = processStatus("VmHWM:");
        const auto mebibytes = [](std::size_t bytes) {
            return static_cast<double>(bytes) / (1 << 20);
        };
        std::array<char, 160> line{};
        std::snprintf(line.data(), line.size(),
                      "%s: memory rises by %.1f MiB; the table has %.1f, the output %.1f",
                      label.c_str(), mebibytes(peak - std::min(before, peak)),
                      mebibytes(hb_blob_get_length(table.get())), mebibytes(output.size()));
        addFigure(line.data());
    }
}

struct Operation {
    const char* name;
    Writer writer;
    unsigned flags; ///< of the peer
};
constexpr Operation kEmbed{"getEmbedFont", embed, HB_SUBSET_FLAGS_RETAIN_GIDS};
constexpr Operation kEmbedPacked{"getEmbedFont", embed, HB_SUBSET_FLAGS_DEFAULT};
constexpr Operation kMakeSubset{"makeSubsetFont", makeSubset, HB_SUBSET_FLAGS_RETAIN_GIDS};

const int registered = [] {
    const auto compare = [](const Operation& operation, const char* label, const char* font) {
        for (const int count : {100, 1000, 5000}) {
            const std::string prefix =
                std::string(operation.name) + "/" + label + "-" + std::to_string(count) + "/";
            benchmark::RegisterBenchmark((prefix + "ours").c_str(), writeOurs, font,
                                         operation.writer)
                ->Arg(count)
                ->Unit(benchmark::kMicrosecond);
            benchmark::RegisterBenchmark((prefix + "HarfBuzz").c_str(), writeHarfBuzz, font,
                                         operation.flags)
                ->Arg(count)
                ->Unit(benchmark::kMicrosecond);
        }
    };
    for (const auto& [label, font, isCFF] : {std::tuple{"latin", "DejaVuSans", false},
                                             {"cjk", "ARPLSungtiL", false},
                                             {"cff-cids", "NotoSansCJK", true}}) {
        for (const int count : {100, 1000}) {
            const std::string prefix =
                std::string("merge/") + label + "-" + std::to_string(count) + "/";
            benchmark::RegisterBenchmark((prefix + "ours").c_str(), merge, font, isCFF)
                ->Arg(count)
                ->Unit(benchmark::kMicrosecond);
            benchmark::RegisterBenchmark((prefix + "writing-one").c_str(), writeOurs, font, embed)
                ->Arg(count)
                ->Unit(benchmark::kMicrosecond);
        }
    }
    compare(kEmbed, "latin", "DejaVuSans");
    compare(kEmbed, "cjk", "ARPLSungtiL");
    for (const auto& [label, font] :
         {std::pair{"cff-names", "FreeSerif"}, std::pair{"cff-cids", "NotoSansCJK"}}) {
        compare(kEmbedPacked, label, font);
        compare(kMakeSubset, label, font);
        for (const Operation& operation : {kEmbedPacked, kMakeSubset}) {
            for (const int count : {100, 5000, 65535}) {
                const std::string line =
                    std::string(operation.name) + " " + label + "-" + std::to_string(count);
                benchmark::RegisterBenchmark(
                    ("peak/" + line + "/ours").c_str(),
                    [line, name = font, writer = operation.writer](benchmark::State& state) {
                        tellPeak(state, line, name, writer);
                    })
                    ->Arg(count)
                    ->Iterations(1);
            }
        }
    }
    return 0;
}();

} // namespace

} // namespace KWBench
