// Making one part of a 3DS model: the grid weld and hashed duplicate removal against the
// pairwise comparisons that define them, on a 30,000-vertex model, weld off and on.
#include <random>

#include "FastestReporter.h"
#include "exchange/mdl3DS.h"

namespace {

// Three meshes of 100 by 100 vertices, like stand sections: each grid point is written once
// per mesh that touches it, so neighbouring meshes repeat their shared row exactly, and a
// tenth of the points sit a hair off their place, as exports of hand-moved models do.
const Model3DS& Model() {
    static const Model3DS model = [] {
        Model3DS m;
        std::mt19937 random(3);
        std::uniform_real_distribution<float> hair(-0.004f, 0.004f);
        const int side = 100;
        for (int k = 0; k < 3; ++k) {
            Mesh3DS mesh;
            mesh.name = "Stand" + std::to_string(k);
            for (int row = 0; row < side; ++row)
                for (int col = 0; col < side; ++col) {
                    Vertex3DS p{static_cast<float>(k * (side - 1) + col) * 0.5f, static_cast<float>(row) * 0.4f,
                                static_cast<float>(row) * 0.3f};
                    if (random() % 10 == 0) p.x += hair(random);
                    mesh.vertices.push_back(p);
                    mesh.texVerts.push_back({static_cast<float>(col % 2), static_cast<float>(row % 2)});
                }
            for (int row = 0; row + 1 < side; ++row)
                for (int col = 0; col + 1 < side; ++col) {
                    const auto a = static_cast<std::uint16_t>(row * side + col), b = static_cast<std::uint16_t>(a + 1),
                               c = static_cast<std::uint16_t>(a + side), d = static_cast<std::uint16_t>(c + 1);
                    mesh.faces.push_back({a, c, b, 0});
                    mesh.faces.push_back({b, c, d, 0});
                }
            mesh.vertexCount = mesh.texVertCount = side * side;
            mesh.faceCount = static_cast<std::int32_t>(mesh.faces.size());
            m.meshes.push_back(mesh);
        }
        return m;
    }();
    return model;
}

void Run(benchmark::State& state, Part3DS (*make)(const Model3DS&, const Make3DSOptions&, std::int32_t), bool weld) {
    const Make3DSOptions options{true, 1, static_cast<std::int16_t>(weld ? 1 : 0), 1};
    std::size_t kept = 0;
    for (auto _ : state) {
        const Part3DS made = make(Model(), options, 0);
        kept = made.part.Vertices.size();
        benchmark::DoNotOptimize(made.part.Indices.data());
    }
    state.counters["vertices_kept"] = static_cast<double>(kept);
}

void BM_Make3DSPart_WeldOff(benchmark::State& state) { Run(state, Make3DSPartFrom, false); }
void BM_Make3DSPart_WeldOn(benchmark::State& state) { Run(state, Make3DSPartFrom, true); }
void BM_Pairwise_WeldOff(benchmark::State& state) { Run(state, Make3DSPartReference, false); }
void BM_Pairwise_WeldOn(benchmark::State& state) { Run(state, Make3DSPartReference, true); }

BENCHMARK(BM_Make3DSPart_WeldOff)->Apply(TenRuns);
BENCHMARK(BM_Pairwise_WeldOff)->Apply(ThreeRuns);
BENCHMARK(BM_Make3DSPart_WeldOn)->Apply(TenRuns);
BENCHMARK(BM_Pairwise_WeldOn)->Apply(ThreeRuns);

}  // namespace

int main(int argc, char** argv) {
    FastestReporter reporter;
    if (!RunAllBenchmarks(argc, argv, reporter)) return 1;
    bool met = true;
    for (const char* mode : {"WeldOff", "WeldOn"})
        met = ReportSpeedup(reporter, std::string("BM_Make3DSPart_") + mode, std::string("BM_Pairwise_") + mode,
                            std::string("Make3DSPart, 30,000 vertices, ") + mode, 0.2, 50) &&
              met;
    return met ? 0 : 3;
}
