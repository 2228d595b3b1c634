#include "bench/Subjects.h"
#include "fonts/FS_Type1AFM.h"
#include "support/TempDir.h"

#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>

namespace KWBench {

namespace {

using KWFontService_NS::FS_Type1AFM;
using KWFontService_NS::KWError;

/// A metrics file and its printer font in one folder, as they are installed elsewhere.
class Pair {
public:
    explicit Pair(const std::string& name) {
        folder_.write("font.afm", KWTest::readFile(KWTest::packagedFont(name + "-AFM")));
        folder_.write("font.pfb", KWTest::readFile(KWTest::packagedFont(name + "-PFB")));
    }
    KWCommonNS::KWUri metrics() const { return folder_.uri("font.afm"); }
    std::string printerFont() const { return folder_.path("font.pfb").string(); }

private:
    KWTest::TempDir folder_;
};

void scanOurs(benchmark::State& state, const std::string& name) {
    const Pair pair(name);
    for (auto _ : state) {
        const KWCommonNS::KWPtr<FS_Type1AFM> font(new FS_Type1AFM(pair.metrics()));
        const std::unique_ptr<std::istream> stream(pair.metrics().getIStream(nullptr, nullptr));
        KWError error;
        if (!font->scanFont(error, *stream) || font->getPrinterFont() == nullptr)
            throw std::runtime_error("cannot scan " + name);
    }
}

void openFreeType(benchmark::State& state, const std::string& name) {
    const Pair pair(name);
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
