// RebuildPreviews of a large stadium against writing as many bytes with one plain write per
// file, and a view change against one copy of the joined parts.
#include <cstdio>
#include <filesystem>
#include <random>
#include <vector>

#include "FastestReporter.h"
#include "core/ProgramState.h"
#include "preview/VRMLOps.h"

namespace fs = std::filesystem;

namespace {

// 40 parts with 1,000,000 vertices and 2,000,000 indices in all.
struct Fixture {
    OIFFile doc = NewOIFFile();
    std::vector<std::pair<std::string, std::uintmax_t>> files;  // what a rebuild writes
    std::string folder;
    Fixture() {
        folder = (fs::temp_directory_path() / "terramason-preview-bench").string();
        fs::create_directories(folder);
        TempFolderOverride = folder;
        std::mt19937 rng(3);
        std::uniform_real_distribution<float> coord(-20000, 20000), uv(0, 1);
        for (int p = 0; p < 40; ++p) {
            OIFPart part;
            part.Header.Texture = p % 2 ? "tp01" : "rwh0";
            for (int v = 0; v < 25000; ++v)
                part.Vertices.push_back({coord(rng), coord(rng), coord(rng), 0, uv(rng), uv(rng)});
            for (int i = 0; i < 50000; ++i)
                part.Indices.push_back(static_cast<std::int16_t>(i % 7 == 3 ? (i - 1) % 25000 : i % 25000));
            part.Header.VertexCount = 25000;
            part.Header.IndexCount = 50000;
            doc = AddPart(part, doc);
        }
        PreviewViews = StartPreviewViews();
        WritePreviewFiles(doc, {});
        for (const auto& entry : fs::directory_iterator(folder))
            files.emplace_back(entry.path().string(), entry.file_size());
    }
    ~Fixture() {
        std::error_code ec;
        fs::remove_all(folder, ec);
    }
};

Fixture& Data() {
    static Fixture fixture;
    return fixture;
}

void BM_RebuildPreviews(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state) WritePreviewFiles(f.doc, {});
}

void BM_PlainWrites(benchmark::State& state) {
    Fixture& f = Data();
    std::uintmax_t largest = 0;
    for (const auto& file : f.files) largest = std::max(largest, file.second);
    const std::vector<char> bytes(largest, 'x');
    const std::string other = f.folder + "/plain.bin";
    for (auto _ : state)
        for (const auto& file : f.files) {
            std::FILE* out = std::fopen(other.c_str(), "wb");
            std::fwrite(bytes.data(), 1, file.second, out);
            std::fclose(out);
        }
}

void BM_ViewChange(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state) {
        PreviewViews[3].PositionZ -= 500;
        WriteViewHeader(f.doc, PreviewViews[3]);
        InstallView(PreviewViews[3]);
    }
}

void BM_CopyParts(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state)
        fs::copy_file(f.folder + "/Parts.tmp", f.folder + "/copy.tmp", fs::copy_options::overwrite_existing);
}

BENCHMARK(BM_RebuildPreviews)->Apply(TenRuns);
BENCHMARK(BM_PlainWrites)->Apply(TenRuns);
BENCHMARK(BM_ViewChange)->Apply(TenRuns);
BENCHMARK(BM_CopyParts)->Apply(TenRuns);

}  // namespace

int main(int argc, char** argv) {
    std::uintmax_t total = 0;
    for (const auto& file : Data().files) total += file.second;
    std::printf("A rebuild writes %zu files, %ju bytes\n", Data().files.size(), total);
    FastestReporter reporter;
    if (!RunAllBenchmarks(argc, argv, reporter)) return 1;
    const double rebuild = reporter.Ratio("BM_RebuildPreviews", "BM_PlainWrites");
    const double view = reporter.Ratio("BM_ViewChange", "BM_CopyParts");
    std::printf("\nRebuildPreviews: %.2fx of plain writes of the same bytes (target: within 2.5x)\n", rebuild);
    std::printf("View change: %.2fx of one copy of Parts.tmp\n", view);
    return rebuild > 0 && rebuild <= 2.5 ? 0 : 3;
}
