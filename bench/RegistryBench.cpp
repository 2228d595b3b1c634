#include "bench/RatioReporter.h"
#include "bench/Subjects.h"
#include "registry/FS_FontService.h"
#include "registry/FolderScan.h"
#include "registry/FontEnumeration.h"
#include "registry/FontFileLoader.h"
#include "service/FS_Startup.h"
#include "support/Paths.h"
#include "support/TempDir.h"
#include "support/TestFont.h"

#include <fontconfig/fontconfig.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace KWBench {

namespace {

using KWFontService_NS::FontEnumeration;
using KWFontService_NS::FS_EnumLogFontEx;
using KWFontService_NS::FS_FontFolder;
using KWFontService_NS::FS_FontKey;
using KWFontService_NS::FS_FontPool;
using KWFontService_NS::FS_FontResourceType;
using KWFontService_NS::FS_FontService;
using KWFontService_NS::FS_NewTextMetricEx;
using KWFontService_NS::FS_StartupOverride;
using KWFontService_NS::UnicodeString;
using KWTest::TempDir;
namespace fs = std::filesystem;

/// A service without fonts that knows the extensions.
std::unique_ptr<FS_FontService> emptyService() {
    auto service = std::make_unique<FS_FontService>();
    const FS_StartupOverride noSteps({});
    KWFontService_NS::startUp(*service, {});
    return service;
}

std::unique_ptr<FS_FontService> startedOn(const fs::path& folder) {
    auto service = emptyService();
    service->addFolder(std::make_unique<FS_FontFolder>(KWTest::fileUri(folder), true));
    scanFolders(*service);
    return service;
}

/// The fonts that every side reads: each sfnt file with one face that is installed.
const fs::path& installedFolder() {
    static const TempDir folder;
    static const bool filled = [] {
        int number = 0;
        for (const fs::path& font : installedFonts()) {
            const std::string name = std::to_string(number++) + font.extension().string();
            // A hard link is a file like any other to the walk; a soft one takes a look more.
            std::error_code failed;
            fs::create_hard_link(font, folder.path(name), failed);
            if (failed)
                fs::create_symlink(font, folder.path(name));
        }
        return true;
    }();
    static_cast<void>(filled);
    return folder.path();
}

void startUpOurs(benchmark::State& state) {
    const fs::path& folder = installedFolder();
    std::size_t fonts = 0;
    for (auto _ : state) {
        const auto service = startedOn(folder);
        fonts = service->fontPool.fonts.size();
    }
    state.counters["faces"] = static_cast<double>(fonts);
}
BENCHMARK(startUpOurs)->Name("startup/installed/ours")->Unit(benchmark::kMillisecond);

/// The files one by one, kept like the service's, without a folder to walk and names to register.
void startUpSingleScans(benchmark::State& state) {
    std::vector<KWCommonNS::KWUri> uris;
    for (const auto& entry : fs::directory_iterator(installedFolder()))
        uris.push_back(KWTest::fileUri(entry.path()));
    for (auto _ : state) {
        std::vector<KWCommonNS::KWPtr<KWFontService_NS::FS_BaseFont>> fonts;
        for (const KWCommonNS::KWUri& uri : uris)
            fonts.push_back(scanFile(uri));
    }
}
BENCHMARK(startUpSingleScans)
    ->Name("startup/installed/single scans")
    ->Unit(benchmark::kMillisecond);

struct DestroyConfig {
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
};
using Config = std::unique_ptr<FcConfig, DestroyConfig>;

/// fontconfig over a folder, with a cache of its own that is empty at first.
Config fontconfigOn(const fs::path& folder, const fs::path& cache) {
    Config config(FcConfigCreate());
    const std::string text = "<fontconfig><dir>" + folder.string() + "</dir><cachedir>" +
                             cache.string() + "</cachedir></fontconfig>";
    FcConfigParseAndLoadFromMemory(config.get(), reinterpret_cast<const FcChar8*>(text.c_str()),
                                   FcTrue);
    FcConfigBuildFonts(config.get());
    return config;
}

void startUpFontconfig(benchmark::State& state) {
    const fs::path& folder = installedFolder();
    for (auto _ : state) {
        const TempDir cache;
        benchmark::DoNotOptimize(fontconfigOn(folder, cache.path()));
    }
}
BENCHMARK(startUpFontconfig)
    ->Name("startup/installed/fontconfig")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

/// The name of a family that both sides find.
const char* const kFamily = "DejaVu Sans";

void lookUpOurs(benchmark::State& state) {
    const auto service = startedOn(installedFolder());
    const UnicodeString family(kFamily);
    for (auto _ : state) {
        bool inAlias = false;
        benchmark::DoNotOptimize(service->findFont(family, {700, true, 5}, inAlias, false));
    }
}
BENCHMARK(lookUpOurs)->Name("lookup/family/ours");

void lookUpFontconfig(benchmark::State& state) {
    const TempDir cache;
    const Config config = fontconfigOn(installedFolder(), cache.path());
    for (auto _ : state) {
        FcPattern* const wanted = FcPatternCreate();
        FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>(kFamily));
        FcPatternAddInteger(wanted, FC_WEIGHT, FC_WEIGHT_BOLD);
        FcPatternAddInteger(wanted, FC_SLANT, FC_SLANT_ITALIC);
        FcConfigSubstitute(config.get(), wanted, FcMatchPattern);
        FcDefaultSubstitute(wanted);
        FcResult result = FcResultNoMatch;
        FcPattern* const found = FcFontMatch(config.get(), wanted, &result);
        benchmark::DoNotOptimize(found);
        FcPatternDestroy(found);
        FcPatternDestroy(wanted);
    }
}
BENCHMARK(lookUpFontconfig)->Name("lookup/family/fontconfig");

UnicodeString syntheticFamily(int family) {
    return UnicodeString(u"Synthetic ") + UnicodeString::fromUTF8(std::to_string(family));
}

/// A folder of that many fonts in families of four.
const fs::path& syntheticFolder(int faces) {
    static std::map<int, TempDir> folders;
    const auto [entry, isNew] = folders.try_emplace(faces);
    if (isNew) {
        for (int face = 0; face < faces; ++face) {
            KWTest::TestFont font = KWTest::TestFont::latin();
            const UnicodeString family = syntheticFamily(face / 4);
            font.name = KWTest::Name::english(
                {family.getBuffer(), static_cast<std::size_t>(family.length())});
            font.os2.usWeightClass = face % 2 != 0 ? 700 : 400;
            font.os2.fsSelection = face % 4 > 1 ? 1 : 0;
            entry->second.write(std::to_string(face) + ".ttf", font.build());
        }
    }
    return entry->second.path();
}

/// Growth with the number of fonts; the time is that of one face.
void startUpSynthetic(benchmark::State& state) {
    const int faces = static_cast<int>(state.range(0));
    const fs::path& folder = syntheticFolder(faces);
    for (auto _ : state)
        benchmark::DoNotOptimize(startedOn(folder));
    state.counters["per_face"] = benchmark::Counter(static_cast<double>(faces),
                                                    benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}
BENCHMARK(startUpSynthetic)
    ->Name("startup/synthetic")
    ->Arg(1000)
    ->Arg(3000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);

void lookUpSynthetic(benchmark::State& state) {
    const int faces = static_cast<int>(state.range(0));
    const auto service = startedOn(syntheticFolder(faces));
    std::vector<UnicodeString> names;
    for (int family = 0; family < faces / 4; family += 7)
        names.push_back(syntheticFamily(family));
    std::size_t next = 0;
    for (auto _ : state) {
        bool inAlias = false;
        benchmark::DoNotOptimize(service->findFont(names[next], {700, true, 5}, inAlias, false));
        next = next + 1 == names.size() ? 0 : next + 1;
    }
}
BENCHMARK(lookUpSynthetic)->Name("lookup/synthetic")->Arg(1000)->Arg(10000);

/// Every face with its records, and a callback that does nothing.
double nanosecondsAFace(FS_FontPool& pool) {
    const auto nothing = [](FS_FontResourceType, const FS_EnumLogFontEx*, const FS_NewTextMetricEx*,
                            void* count) {
        ++*static_cast<std::size_t*>(count);
        return 0;
    };
    std::size_t faces = 0;
    const FontEnumeration enumeration(UnicodeString(), nothing, &faces);
    const auto start = std::chrono::steady_clock::now();
    enumeration.walk(pool, KWFontService_NS::FS_RESOURCE_FONT);
    const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - start;
    return time.count() / static_cast<double>(faces);
}

void enumerateOurs(benchmark::State& state) {
    const auto service = startedOn(installedFolder());
    double least = std::numeric_limits<double>::max();
    for (auto _ : state)
        least = std::min(least, nanosecondsAFace(service->fontPool));
    std::array<char, 120> line;
    std::snprintf(line.data(), line.size(), "enumeration of all faces: %.3f microseconds a face",
                  least / 1000);
    addFigure(line.data());
}
BENCHMARK(enumerateOurs)
    ->Name("enumerate/installed/ours")
    ->Iterations(200)
    ->Unit(benchmark::kMicrosecond);

/// The names, the weight and the slant of the same faces.
void enumerateFontconfig(benchmark::State& state) {
    const TempDir cache;
    const Config config = fontconfigOn(installedFolder(), cache.path());
    for (auto _ : state) {
        FcPattern* const all = FcPatternCreate();
        FcObjectSet* const wanted =
            FcObjectSetBuild(FC_FAMILY, FC_FULLNAME, FC_WEIGHT, FC_SLANT, nullptr);
        FcFontSet* const found = FcFontList(config.get(), all, wanted);
        benchmark::DoNotOptimize(found);
        FcFontSetDestroy(found);
        FcObjectSetDestroy(wanted);
        FcPatternDestroy(all);
    }
}
BENCHMARK(enumerateFontconfig)
    ->Name("enumerate/installed/fontconfig")
    ->Unit(benchmark::kMicrosecond);

#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 33)
/// Not a time: what the heap holds for each face of a service that has just started.
void poolHeap(benchmark::State& state) {
    const fs::path& folder = installedFolder();
    for (auto _ : state) {
        const std::size_t before = mallinfo2().uordblks;
        const auto service = startedOn(folder);
        const double faces = static_cast<double>(service->fontPool.fonts.size());
        const double perFace = static_cast<double>(mallinfo2().uordblks - before) / faces;
        state.counters["bytes_per_face"] = perFace;
        std::array<char, 120> line;
        std::snprintf(line.data(), line.size(),
                      "heap of a started service: %.0f bytes a face, %.0f faces", perFace, faces);
        addFigure(line.data());
    }
}
BENCHMARK(poolHeap)->Name("startup/heap/ours")->Iterations(1);
#endif

} // namespace

} // namespace KWBench
