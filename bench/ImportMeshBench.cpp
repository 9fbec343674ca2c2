// The Stadium Importer's OptimiseImportMesh: the grid merge and hashed duplicate removal against
// the pairwise rules that define them, on a 30,000-vertex model, merge off and on.
#include <random>

#include "FastestReporter.h"
#include "importer/stmapOps.h"

namespace {

// Three stand sections of 100 by 100 vertices a metre apart in game units, already in the atlas:
// neighbouring sections repeat their shared column exactly, and a tenth of the points sit a
// hair off their place, as exports of hand-moved models do.
const ImportMesh& Model() {
    static const ImportMesh model = [] {
        ImportMesh m;
        std::mt19937 random(3);
        std::uniform_real_distribution<float> hair(-0.4f, 0.4f);
        const int side = 100;
        for (int k = 0; k < 3; ++k) {
            const auto base = static_cast<int>(m.WorkVertices.size());
            for (int row = 0; row < side; ++row)
                for (int col = 0; col < side; ++col) {
                    OIFVertex v;
                    v.X = static_cast<float>(k * (side - 1) + col) * 100.0f;
                    v.Y = static_cast<float>(row) * 40.0f;
                    v.Z = static_cast<float>(row) * -80.0f;
                    if (random() % 10 == 0) v.X += hair(random);
                    v.U = static_cast<float>(k) / 3 + static_cast<float>(col % 2) / 3;
                    v.V = static_cast<float>(row % 2);
                    m.WorkVertices.push_back(v);
                }
            for (int row = 0; row + 1 < side; ++row)
                for (int col = 0; col + 1 < side; ++col) {
                    const int a = base + row * side + col, b = a + 1, c = a + side, d = c + 1;
                    for (const int i : {a, c, b, b, c, d}) m.WorkIndices.push_back(static_cast<std::int16_t>(i));
                }
        }
        return m;
    }();
    return model;
}

void Run(benchmark::State& state, OptimisedMesh (*optimise)(ImportMesh, const ImportSettings&), bool merge) {
    ImportSettings settings;
    settings.Merge = merge ? 1 : 0;
    std::size_t kept = 0;
    for (auto _ : state) {
        const OptimisedMesh made = optimise(Model(), settings);
        kept = made.OptVertices.size();
        benchmark::DoNotOptimize(made.StripIndices.data());
    }
    state.counters["vertices_kept"] = static_cast<double>(kept);
}

void BM_OptimiseImportMesh_MergeOff(benchmark::State& state) { Run(state, OptimiseImportMesh, false); }
void BM_OptimiseImportMesh_MergeOn(benchmark::State& state) { Run(state, OptimiseImportMesh, true); }
void BM_Pairwise_MergeOff(benchmark::State& state) { Run(state, OptimiseImportMeshReference, false); }
void BM_Pairwise_MergeOn(benchmark::State& state) { Run(state, OptimiseImportMeshReference, true); }

BENCHMARK(BM_OptimiseImportMesh_MergeOff)->Apply(TenRuns);
BENCHMARK(BM_Pairwise_MergeOff)->Apply(ThreeRuns);
BENCHMARK(BM_OptimiseImportMesh_MergeOn)->Apply(TenRuns);
BENCHMARK(BM_Pairwise_MergeOn)->Apply(ThreeRuns);

}  // namespace

int main(int argc, char** argv) {
    FastestReporter reporter;
    if (!RunAllBenchmarks(argc, argv, reporter)) return 1;
    bool met = true;
    for (const char* mode : {"MergeOff", "MergeOn"})
        met = ReportSpeedup(reporter, std::string("BM_OptimiseImportMesh_") + mode, std::string("BM_Pairwise_") + mode,
                            std::string("OptimiseImportMesh, 30,000 vertices, ") + mode, 0.1, 100) &&
              met;
    return met ? 0 : 3;
}
