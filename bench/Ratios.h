#pragma once

#include <benchmark/benchmark.h>
#include <string>
#include <vector>

namespace nimbrelle::bench {

/// A figure that says more than its two times: both were measured in one run, so the machine's load cancels
/// out.
struct Ratio {
    std::string label;
    std::string above; ///< name of the benchmark that is judged
    std::vector<std::string> below; ///< what it is measured against; several add up
    double goal = 0; ///< the largest ratio that is good enough
};

/// Runs all benchmarks, prints their times, then each ratio beside its goal. To be the body of main().
int runWithRatios(int argc, char **argv, const std::vector<Ratio> &ratios);

} // namespace nimbrelle::bench
