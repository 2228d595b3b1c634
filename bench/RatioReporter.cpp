#include "bench/RatioReporter.h"

#include <algorithm>
#include <cstdio>

namespace KWBench {

namespace {

std::vector<std::string>& figures() {
    static std::vector<std::string> lines;
    return lines;
}

} // namespace

void addFigure(const std::string& line) {
    if (std::find(figures().begin(), figures().end(), line) == figures().end())
        figures().push_back(line);
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (run.error_occurred)
            continue;
        // With repetitions the median speaks for a benchmark, otherwise its one run.
        const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
        if (run.run_type == Run::RT_Aggregate && !median)
            continue;
        const std::string name = run.run_name.function_name;
        const std::size_t slash = name.rfind('/');
        const std::string subject = name.substr(0, slash);
        if (!times_.contains(subject))
            order_.push_back(subject);
        // What another process took is told by hand, and counts as real time.
        const bool isTold = run.run_name.time_type == "manual_time";
        const double time = isTold ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
        const std::string who = name.substr(slash + 1);
        if (median || !times_[subject].contains(who))
            times_[subject][who] = time;
    }
}

void RatioReporter::Finalize() {
    ConsoleReporter::Finalize();
    std::printf("\n%-40s %-12s %8s\n", "comparison", "peer", "ours/peer");
    for (const std::string& subject : order_) {
        const auto& times = times_[subject];
        const auto ours = times.find("ours");
        if (ours == times.end())
            continue;
        for (const auto& [who, time] : times) {
            if (who != "ours")
                std::printf("%-40s %-12s %8.3f\n", subject.c_str(), who.c_str(),
                            ours->second / time);
        }
    }
    for (const std::string& line : figures())
        std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

} // namespace KWBench
