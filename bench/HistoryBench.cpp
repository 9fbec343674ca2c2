// A step of the undo history against the plainest way to keep one: a whole copy of the project.
// Two kinds of step on stadiums of 40 parts: one part changed (an OIF Editor edit, a merge of two
// parts), and every part changed (the lighting); each recorded, then undone.
#include <cstdio>

#include "FastestReporter.h"
#include "shell/HistoryOps.h"

namespace {

StadiumProject Stadium(int vertices) {
    StadiumProject p;
    p.Name = "Bowl";
    p.OIF = NewOIFFile();
    const int perPart = vertices / 40;
    for (int k = 0; k < 40; ++k) {
        OIFPart part;
        part.Header.Name = "stand " + std::to_string(k);
        part.Header.Texture = "tp00";
        part.Vertices.resize(static_cast<std::size_t>(perPart));
        for (int i = 0; i < perPart; ++i)
            part.Vertices[static_cast<std::size_t>(i)] = {float(i % 500), float(k),     float(i / 500),
                                                          0xFF808080u,    float(i % 2), float(i % 3)};
        part.Indices.resize(static_cast<std::size_t>(perPart) * 2);
        for (std::size_t i = 0; i < part.Indices.size(); ++i)
            part.Indices[i] = static_cast<std::int16_t>(i % static_cast<std::size_t>(perPart));
        part.Header.VertexCount = perPart;
        part.Header.IndexCount = static_cast<std::int32_t>(part.Indices.size());
        p.OIF = AddPart(part, p.OIF);
    }
    return p;
}

const StadiumProject& Small() {
    static const StadiumProject p = Stadium(50000);
    return p;
}
const StadiumProject& Large() {
    static const StadiumProject p = Stadium(1000000);
    return p;
}

// Records a step that changes one part or all of them, and undoes it: what the user waits for
// between a command and the next event, without the windows' refresh.
void Step(benchmark::State& state, const StadiumProject& start, bool everyPart) {
    ProjectHistory history;
    StartHistory(history, start);
    StadiumProject live = start;
    std::uint32_t n = 0;
    for (auto _ : state) {
        ++n;  // a value no earlier step had, so that every step records
        if (everyPart)
            for (OIFPart& part : live.OIF.Parts) part.Vertices[0].Shadow = n;
        else live.OIF.Parts[7].Vertices[0].Shadow = n;
        if (!RecordStep(history, live, "step")) state.SkipWithError("the step was not recorded");
        live = *UndoStep(history);
        benchmark::DoNotOptimize(live.OIF.Parts.data());
    }
}

// The reference: a copy of the whole project in, and a copy out.
void WholeCopies(benchmark::State& state, const StadiumProject& start) {
    for (auto _ : state) {
        StadiumProject kept = start;
        StadiumProject back = kept;
        benchmark::DoNotOptimize(back.OIF.Parts.data());
    }
}

void BM_Step_OnePart_50k(benchmark::State& s) { Step(s, Small(), false); }
void BM_Step_EveryPart_50k(benchmark::State& s) { Step(s, Small(), true); }
void BM_WholeCopies_50k(benchmark::State& s) { WholeCopies(s, Small()); }
void BM_Step_OnePart_1M(benchmark::State& s) { Step(s, Large(), false); }
void BM_Step_EveryPart_1M(benchmark::State& s) { Step(s, Large(), true); }
void BM_WholeCopies_1M(benchmark::State& s) { WholeCopies(s, Large()); }

BENCHMARK(BM_Step_OnePart_50k)->Apply(TenRuns);
BENCHMARK(BM_Step_EveryPart_50k)->Apply(TenRuns);
BENCHMARK(BM_WholeCopies_50k)->Apply(TenRuns);
BENCHMARK(BM_Step_OnePart_1M)->Apply(TenRuns);
BENCHMARK(BM_Step_EveryPart_1M)->Apply(TenRuns);
BENCHMARK(BM_WholeCopies_1M)->Apply(TenRuns);

}  // namespace

int main(int argc, char** argv) {
    FastestReporter reporter;
    if (!RunAllBenchmarks(argc, argv, reporter)) return 1;
    const auto ms = [&](const char* name) { return reporter.Seconds(name) * 1000; };
    std::printf(
        "\nhistory step, recorded and undone: %.2f ms at 50,000 vertices, %.1f ms at 1,000,000 vertices "
        "(every part changed: %.2f ms and %.1f ms; targets under 2 ms and 50 ms)\n",
        ms("BM_Step_OnePart_50k"), ms("BM_Step_OnePart_1M"), ms("BM_Step_EveryPart_50k"), ms("BM_Step_EveryPart_1M"));
    std::printf("whole copies of the project in and out, the reference: %.2f ms and %.1f ms\n",
                ms("BM_WholeCopies_50k"), ms("BM_WholeCopies_1M"));
    const bool met = ms("BM_Step_EveryPart_50k") < 2 && ms("BM_Step_EveryPart_1M") < 50 &&
                     ms("BM_Step_OnePart_50k") < 2 && ms("BM_Step_OnePart_1M") < 50;
    return met ? 0 : 3;
}
