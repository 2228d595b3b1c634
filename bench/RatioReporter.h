#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace KWBench {

/// Prints the usual table and, at the end, each of our times over each peer's.
///
/// A benchmark is named `Comparison/Case/Who`; `Who` is `ours` or the name of a peer.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    std::vector<std::string> order_;
    std::map<std::string, std::map<std::string, double>> times_;
};

/// A line that goes under the ratios, for figures that are not times.
void addFigure(const std::string& line);

} // namespace KWBench
