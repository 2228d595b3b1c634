// Subsets of Type 1 fonts, against tx of the AFDKO. That is a program of its own: what it takes to
// start it, and to end it at once, is measured beside each of its runs and left out.

#include "bench/RatioReporter.h"
#include "bench/Type1Pair.h"
#include "type1/GlyphNames.h"

#include <KWCommon15/KWMemStream.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace KWBench {

namespace {

constexpr const char* kTx = "/usr/libexec/afdko/tx";

/// Codes of font program 0, and the names of their glyphs.
struct Selection {
    std::string codes;
    std::string names; ///< with commas between
};
Selection select(KWFontService_NS::FS_Type1AFM& font, std::size_t count) {
    Selection selection;
    for (int ch = 0x20; selection.codes.size() < count && ch < 0x2600; ++ch) {
        const unsigned short code = font.getType1CharCode(ch, 0);
        if (code == 0 || code > 0xFF)
            continue;
        const auto byte = static_cast<unsigned char>(code);
        std::string name;
        if (!font.getType1GlyphName(0, byte, name, 0))
            name = KWFontService_NS::standardName(byte);
        selection.codes += static_cast<char>(byte);
        selection.names += (selection.names.empty() ? "" : ",") + name;
    }
    if (selection.codes.size() < count)
        throw std::runtime_error("too few glyphs");
    return selection;
}

void writeOurs(benchmark::State& state, const std::string& name) {
    const Type1Pair pair(name);
    const auto font = pair.load();
    const Selection selection = select(*font, static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        KWCommonNS::KWMemStream output;
        int length = 0;
        if (!font->getType1EmbedFont(0, selection.codes.data(),
                                     static_cast<int>(selection.codes.size()), output, length,
                                     length, length, 0))
            state.SkipWithError("no subset");
        benchmark::DoNotOptimize(output);
    }
}

/// The seconds of a processor that a program takes.
double run(std::vector<std::string> words) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&files, stream, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    int status = 0;
    rusage use{};
    const bool ok =
        posix_spawn(&process, words[0].c_str(), &files, nullptr, arguments.data(), environ) == 0 &&
        wait4(process, &status, 0, &use) == process && status == 0;
    posix_spawn_file_actions_destroy(&files);
    if (!ok)
        throw std::runtime_error("cannot run " + words[0]);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(use.ru_utime) + seconds(use.ru_stime);
}

void writeTx(benchmark::State& state, const std::string& name) {
    const Type1Pair pair(name);
    const Selection selection = select(*pair.load(), static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        const double start = run({kTx, "-v"});
        const double all =
            run({kTx, "-t1", "-g", selection.names, pair.printerFont(), "/dev/null"});
        state.SetIterationTime(std::max(all - start, 0.0));
    }
}

const int registered = [] {
    const bool hasPeer = std::filesystem::exists(kTx);
    if (!hasPeer)
        addFigure("subset-type1: no tx to compare with (apt-get install afdko-bin)");
    for (const char* font : {"LMRoman10", "NimbusSans", "C059"}) {
        const std::string prefix = std::string("subset-type1/") + font + "-100/";
        benchmark::RegisterBenchmark((prefix + "ours").c_str(), writeOurs, font)
            ->Arg(100)
            ->Unit(benchmark::kMicrosecond);
        if (hasPeer) {
            benchmark::RegisterBenchmark((prefix + "tx").c_str(), writeTx, font)
                ->Arg(100)
                ->UseManualTime()
                ->Unit(benchmark::kMicrosecond);
        }
    }
    return 0;
}();

} // namespace

} // namespace KWBench
