#include "bench/Type1Pair.h"

#include <benchmark/benchmark.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <stdexcept>
#include <string>

namespace KWBench {

namespace {

void scanOurs(benchmark::State& state, const std::string& name) {
    const Type1Pair pair(name);
    for (auto _ : state)
        pair.scan();
}

void openFreeType(benchmark::State& state, const std::string& name) {
    const Type1Pair pair(name);
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0)
        throw std::runtime_error("no FreeType");
    for (auto _ : state) {
        FT_Face face = nullptr;
        if (FT_New_Face(library, pair.printerFont().c_str(), 0, &face) != 0)
            throw std::runtime_error("FreeType cannot open " + name);
        FT_Done_Face(face);
    }
    FT_Done_FreeType(library);
}

BENCHMARK_CAPTURE(scanOurs, LMRoman10, "LMRoman10")->Name("scan-type1/LMRoman10/ours");
BENCHMARK_CAPTURE(openFreeType, LMRoman10, "LMRoman10")->Name("scan-type1/LMRoman10/FreeType");
BENCHMARK_CAPTURE(scanOurs, NimbusSans, "NimbusSans")->Name("scan-type1/NimbusSans/ours");
BENCHMARK_CAPTURE(openFreeType, NimbusSans, "NimbusSans")->Name("scan-type1/NimbusSans/FreeType");
BENCHMARK_CAPTURE(scanOurs, C059, "C059")->Name("scan-type1/C059/ours");
BENCHMARK_CAPTURE(openFreeType, C059, "C059")->Name("scan-type1/C059/FreeType");

} // namespace

} // namespace KWBench
