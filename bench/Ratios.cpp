#include "Ratios.h"

#include <cstdio>
#include <map>

namespace nimbrelle::bench {

namespace {

/// Keeps the wall time of each benchmark, the median where there were repetitions.
class KeepingReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type == Run::RT_Iteration || run.aggregate_name == "median")
                nanoseconds[run.run_name.str()] =
                    run.GetAdjustedRealTime() * 1e9 / benchmark::GetTimeUnitMultiplier(run.time_unit);
        }
        ConsoleReporter::ReportRuns(runs);
    }

    std::map<std::string, double> nanoseconds;
};

void print(const Ratio &ratio, const std::map<std::string, double> &nanoseconds)
{
    double below = 0;
    for (const std::string &name : ratio.below) {
        const auto found = nanoseconds.find(name);
        if (found == nanoseconds.end())
            return;
        below += found->second;
    }
    const auto above = nanoseconds.find(ratio.above);
    if (above == nanoseconds.end() || below <= 0)
        return;
    const double value = above->second / below;
    std::printf("%-60s %6.2f  (goal: at most %.2f) %s\n", ratio.label.c_str(), value, ratio.goal,
        value <= ratio.goal ? "ok" : "MISSED");
}

} // namespace

int runWithRatios(int argc, char **argv, const std::vector<Ratio> &ratios)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    KeepingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\n");
    for (const Ratio &ratio : ratios)
        print(ratio, reporter.nanoseconds);
    return 0;
}

} // namespace nimbrelle::bench
