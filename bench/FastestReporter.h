#pragma once
// Shared by the benchmarks: each is run ten times and its fastest run kept, so that a target can
// be read as a ratio to its reference measured in the same run.
#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

// The fastest of ten runs: on a shared machine the other runs measure the neighbours as well.
inline double Fastest(const std::vector<double>& times) { return *std::min_element(times.begin(), times.end()); }

inline void TenRuns(benchmark::internal::Benchmark* b) {
    b->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(10)->ReportAggregatesOnly(true);
    b->ComputeStatistics("min", Fastest);
}

// For a reference that takes seconds a run: three runs are enough to find its fastest.
inline void ThreeRuns(benchmark::internal::Benchmark* b) {
    b->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1)->Repetitions(3)->ReportAggregatesOnly(true);
    b->ComputeStatistics("min", Fastest);
}

// Keeps the fastest time of each benchmark by its function name.
class FastestReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "min")
                fastest[run.run_name.function_name] = run.GetAdjustedRealTime();
        ConsoleReporter::ReportRuns(runs);
    }
    // The ratio of two benchmarks' fastest times; 0 when either is missing.
    double Ratio(const std::string& measured, const std::string& reference) const {
        const auto a = fastest.find(measured), b = fastest.find(reference);
        if (a == fastest.end() || b == fastest.end() || b->second <= 0) return 0;
        return a->second / b->second;
    }
    // A benchmark's fastest time in seconds; every benchmark here reports milliseconds.
    double Seconds(const std::string& name) const {
        const auto a = fastest.find(name);
        return a == fastest.end() ? 0 : a->second / 1000.0;
    }
    std::map<std::string, double> fastest;
};

// Prints the fastest time of `fast` and how many times faster it is than `reference`, under the
// heading `what`; true when it is under `mostSeconds` and at least `leastSpeedup` times faster.
inline bool ReportSpeedup(const FastestReporter& reporter, const std::string& fast, const std::string& reference,
                          const std::string& what, double mostSeconds, double leastSpeedup) {
    const double seconds = reporter.Seconds(fast);
    const double speedup = reporter.Ratio(reference, fast);
    std::printf("\n%s: %.3f s, %.0fx faster than %s (targets: under %g s, at least %gx)\n", what.c_str(), seconds,
                speedup, reference.c_str(), mostSeconds, leastSpeedup);
    return seconds > 0 && seconds < mostSeconds && speedup >= leastSpeedup;
}

// Reads benchmark's own arguments and runs every benchmark with `reporter`; false when an
// argument was not understood.
inline bool RunAllBenchmarks(int argc, char** argv, FastestReporter& reporter) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return false;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return true;
}
