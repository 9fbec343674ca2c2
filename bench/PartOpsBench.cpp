// The stripper against meshoptimizer's stripify alone, and MergeSameTexture against one pass
// that copies every index once.
#include <cstdio>
#include <vector>

#include <meshoptimizer.h>

#include "FastestReporter.h"
#include "core/OIFOps.h"
#include "core/TriStrip.h"
#include "editors/PartOps.h"

namespace {

// A grid of 32,000 vertices (200 by 160) and 63,282 triangles, in row order.
struct Grid {
    std::vector<std::int16_t> triangles;
    std::vector<unsigned int> triangles32;
    unsigned int vertices = 0;
};

const Grid& TheGrid() {
    static const Grid grid = [] {
        Grid g;
        const int w = 200, h = 160;
        g.vertices = w * h;
        for (int y = 0; y + 1 < h; ++y)
            for (int x = 0; x + 1 < w; ++x) {
                const int a = y * w + x, b = a + 1, c = a + w, d = c + 1;
                for (int i : {a, c, b, b, c, d}) g.triangles.push_back(static_cast<std::int16_t>(i));
            }
        for (std::int16_t i : g.triangles) g.triangles32.push_back(static_cast<std::uint16_t>(i));
        return g;
    }();
    return grid;
}

void BM_Stripper(benchmark::State& state) {
    const Grid& g = TheGrid();
    std::size_t length = 0;
    for (auto _ : state) {
        std::vector<std::int16_t> strip = StripPartIndices(g.triangles);
        length = strip.size();
        benchmark::DoNotOptimize(strip.data());
    }
    state.counters["indices_per_triangle"] = static_cast<double>(length) / static_cast<double>(g.triangles.size() / 3);
}

void BM_MeshoptStripify(benchmark::State& state) {
    const Grid& g = TheGrid();
    std::vector<unsigned int> out(meshopt_stripifyBound(g.triangles32.size()));
    std::size_t length = 0;
    for (auto _ : state) {
        length = meshopt_stripify(out.data(), g.triangles32.data(), g.triangles32.size(), g.vertices, 0);
        benchmark::DoNotOptimize(out.data());
    }
    state.counters["indices_per_triangle"] = static_cast<double>(length) / static_cast<double>(g.triangles.size() / 3);
}

// 1,000 parts of 8 textures, 400 vertices and 800 indices each.
OIFFile ThousandParts() {
    OIFFile doc = NewOIFFile();
    const char* textures[8] = {"tp00", "tp01", "tp02", "rwh0", "rwh1", "rwa0", "adba", "gras"};
    OIFPart part;
    part.Vertices.resize(400);
    for (int i = 0; i < 800; ++i) part.Indices.push_back(static_cast<std::int16_t>(i % 400));
    part.Header.VertexCount = 400;
    part.Header.IndexCount = 800;
    doc.Parts.reserve(1000);
    for (int p = 0; p < 1000; ++p) {
        part.Header.Texture = textures[p % 8];
        doc.Parts.push_back(part);
    }
    doc.Header.PartCount = 1000;
    return doc;
}

void BM_MergeSameTexture(benchmark::State& state) {
    const OIFFile source = ThousandParts();
    for (auto _ : state) {
        state.PauseTiming();
        OIFFile doc = source;
        state.ResumeTiming();
        MergeSameTexture(doc, false);
        benchmark::DoNotOptimize(doc.Parts.data());
        state.PauseTiming();
        doc = OIFFile{};
        state.ResumeTiming();
    }
}

// The reference: one pass that copies every vertex and index once into eight growing parts.
void BM_CopyEveryIndexOnce(benchmark::State& state) {
    const OIFFile source = ThousandParts();
    for (auto _ : state) {
        std::vector<OIFPart> out(8);
        for (std::size_t p = 0; p < source.Parts.size(); ++p) {
            OIFPart& into = out[p % 8];
            into.Vertices.insert(into.Vertices.end(), source.Parts[p].Vertices.begin(), source.Parts[p].Vertices.end());
            into.Indices.insert(into.Indices.end(), source.Parts[p].Indices.begin(), source.Parts[p].Indices.end());
        }
        benchmark::DoNotOptimize(out.data());
    }
}

BENCHMARK(BM_Stripper)->Apply(TenRuns);
BENCHMARK(BM_MeshoptStripify)->Apply(TenRuns);
BENCHMARK(BM_MergeSameTexture)->Apply(TenRuns);
BENCHMARK(BM_CopyEveryIndexOnce)->Apply(TenRuns);

}  // namespace

int main(int argc, char** argv) {
    FastestReporter reporter;
    if (!RunAllBenchmarks(argc, argv, reporter)) return 1;
    const double strip = reporter.Ratio("BM_Stripper", "BM_MeshoptStripify");
    const double merge = reporter.Ratio("BM_MergeSameTexture", "BM_CopyEveryIndexOnce");
    std::printf("\nStripper: %.2fx of meshopt_stripify alone (target: under 1.5x)\n", strip);
    std::printf("MergeSameTexture: %.2fx of one pass copying every index once\n", merge);
    return strip > 0 && strip < 1.5 ? 0 : 3;
}
