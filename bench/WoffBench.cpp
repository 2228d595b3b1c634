#include "bench/RatioReporter.h"
#include "bench/Subjects.h"
#include "embed/WoffWriter.h"
#include "fonts/FS_WOFF.h"
#include "support/TempDir.h"
#include "support/WoffFile.h"

#include <KWCommon15/KWMemStream.h>

#include <zlib.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace KWBench {

namespace {

using KWCommonNS::KWMemStream;
using KWCommonNS::KWPtr;
using KWFontService_NS::FS_WOFF;
using KWFontService_NS::KWError;
using KWFontService_NS::KWUri;
using KWTest::Bytes;

/// A font file, its tables, and the same as WOFF.
struct WoffSubject {
    explicit WoffSubject(const char* name)
        : sfnt(KWTest::readFile(KWTest::packagedFont(name))), file(KWTest::WoffFile::of(sfnt)),
          woff(file.build()) {
        input.append(sfnt.data(), sfnt.size());
    }

    Bytes sfnt;
    KWTest::WoffFile file;
    Bytes woff;
    KWMemStream input; ///< `sfnt` as the writer takes it
};

WoffSubject& subjectOf(const char* name) {
    static std::map<std::string, WoffSubject> subjects;
    return subjects.try_emplace(name, name).first->second;
}

// --- writing ------------------------------------------------------------------------------------

void writeOurs(benchmark::State& state, const char* name) {
    WoffSubject& subject = subjectOf(name);
    for (auto _ : state) {
        KWMemStream output;
        if (!KWFontService_NS::makeWOFF(output, subject.input))
            state.SkipWithError("no WOFF");
        benchmark::DoNotOptimize(output.data());
    }
}

/// Each table deflated at zlib's own level, and nothing else: into one buffer that is large enough
/// for any.
void writeZlib(benchmark::State& state, const char* name) {
    const WoffSubject& subject = subjectOf(name);
    const Bytes& sfnt = subject.sfnt;
    std::vector<Bytef> buffer(compressBound(static_cast<uLong>(sfnt.size())));
    for (auto _ : state) {
        for (std::size_t i = 0; i < sfnt.u16At(4); ++i) {
            const std::size_t record = 12 + 16 * i;
            uLongf size = static_cast<uLongf>(buffer.size());
            if (compress2(buffer.data(), &size, sfnt.data() + sfnt.u32At(record + 8),
                          sfnt.u32At(record + 12), Z_DEFAULT_COMPRESSION) != Z_OK)
                state.SkipWithError("zlib fails");
            benchmark::DoNotOptimize(size);
        }
    }
}

// --- reading ------------------------------------------------------------------------------------

/// What is counted: the scan, which unpacks the font and reads what identifies it.
void readOurs(benchmark::State& state, const char* name) {
    const std::string woff = subjectOf(name).woff.str();
    std::istringstream stream(woff);
    for (auto _ : state) {
        stream.clear();
        stream.seekg(0);
        const KWPtr<FS_WOFF> font(new FS_WOFF(KWUri()));
        KWError error;
        if (!font->scanFont(error, stream))
            state.SkipWithError("no font");
    }
}

/// Each table inflated, and the stored ones copied, into one buffer.
void readZlib(benchmark::State& state, const char* name) {
    const WoffSubject& subject = subjectOf(name);
    std::vector<Bytef> buffer(subject.sfnt.size() + 4);
    for (auto _ : state) {
        for (const KWTest::WoffTable& table : subject.file.tables) {
            uLongf size = static_cast<uLongf>(buffer.size());
            if (table.stored.size() == table.origLength)
                std::copy(table.stored.begin(), table.stored.end(), buffer.begin());
            else if (uncompress(buffer.data(), &size, table.stored.data(),
                                static_cast<uLong>(table.stored.size())) != Z_OK)
                state.SkipWithError("zlib fails");
            benchmark::DoNotOptimize(buffer.data());
        }
    }
}

/// The same into an sfnt in memory of its own, which is what a font that is kept has to have.
void readZlibKept(benchmark::State& state, const char* name) {
    const WoffSubject& subject = subjectOf(name);
    const Bytes& sfnt = subject.sfnt;
    for (auto _ : state) {
        const std::unique_ptr<Bytef[]> memory(new Bytef[sfnt.size()]);
        for (std::size_t i = 0; i < subject.file.tables.size(); ++i) {
            const KWTest::WoffTable& table = subject.file.tables[i];
            Bytef* const place = memory.get() + sfnt.u32At(12 + 16 * i + 8);
            uLongf size = table.origLength;
            if (table.stored.size() == table.origLength)
                std::copy(table.stored.begin(), table.stored.end(), place);
            else if (uncompress(place, &size, table.stored.data(),
                                static_cast<uLong>(table.stored.size())) != Z_OK)
                state.SkipWithError("zlib fails");
        }
        benchmark::DoNotOptimize(memory.get());
    }
}

// --- what reading costs beside time -------------------------------------------------------------

/// A source that counts the bytes that are read from it.
class CountedBuf : public std::stringbuf {
public:
    explicit CountedBuf(const std::string& bytes) : std::stringbuf(bytes, std::ios::in) {}
    std::size_t read = 0;

protected:
    std::streamsize xsgetn(char* to, std::streamsize count) override {
        const std::streamsize got = std::stringbuf::xsgetn(to, count);
        read += static_cast<std::size_t>(got);
        return got;
    }
};

#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 33)
std::size_t heapInUse() {
    const auto now = mallinfo2();
    return now.uordblks + now.hblkhd;
}

/// Not a time: how often the file is read, and what the font holds afterwards.
void tellReading(benchmark::State& state, const char* label, const char* name) {
    const WoffSubject& subject = subjectOf(name);
    const std::string woff = subject.woff.str();
    for (auto _ : state) {
        CountedBuf source(woff);
        std::istream stream(&source);
        const std::size_t before = heapInUse();
        const KWPtr<FS_WOFF> font(new FS_WOFF(KWUri()));
        KWError error;
        if (!font->scanFont(error, stream))
            state.SkipWithError("no font");
        const double held = static_cast<double>(heapInUse() - before);
        std::array<char, 160> line{};
        std::snprintf(line.data(), line.size(),
                      "read WOFF %s: %.3f times its bytes are read; the font holds %.3f times the "
                      "sfnt (%zu bytes)",
                      label, static_cast<double>(source.read) / static_cast<double>(woff.size()),
                      held / static_cast<double>(subject.sfnt.size()), subject.sfnt.size());
        addFigure(line.data());
    }
}
#endif

const int registered = [] {
    for (const auto& [label, font] :
         {std::pair{"latin", "DejaVuSans"}, std::pair{"cjk", "ARPLSungtiL"},
          std::pair{"cff", "LinLibertine"}}) {
        const auto add = [&, name = font](const char* kind, const char* who,
                                          void (*work)(benchmark::State&, const char*)) {
            const std::string title = std::string(kind) + "/" + label + "/" + who;
            benchmark::RegisterBenchmark(title.c_str(), work, name)->Unit(benchmark::kMillisecond);
        };
        add("writeWOFF", "ours", writeOurs);
        add("writeWOFF", "zlib", writeZlib);
        add("readWOFF", "ours", readOurs);
        add("readWOFF", "zlib", readZlib);
        add("readWOFF", "zlib-kept", readZlibKept);
#if defined(__GLIBC__) && (__GLIBC__ > 2 || __GLIBC_MINOR__ >= 33)
        benchmark::RegisterBenchmark(
            ("readWOFF/heap-" + std::string(label) + "/ours").c_str(),
            [label, name = font](benchmark::State& state) { tellReading(state, label, name); })
            ->Iterations(1);
#endif
    }
    return 0;
}();

} // namespace

} // namespace KWBench
