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
    std::map<std::string, double> fastest;
};
