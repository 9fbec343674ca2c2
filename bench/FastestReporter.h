#pragma once
// Shared by the benchmarks: each is run ten times and its fastest run kept, so that a target can
// be read as a ratio to its reference measured in the same run.
#include <algorithm>
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

// Reads benchmark's own arguments and runs every benchmark with `reporter`; false when an
// argument was not understood.
inline bool RunAllBenchmarks(int argc, char** argv, FastestReporter& reporter) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return false;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return true;
}
