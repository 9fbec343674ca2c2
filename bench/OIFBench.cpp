// How the OIF codec compares with the bare cost of moving the same bytes: a stadium of 100
// parts, 30,000 vertices and 60,000 indices each (about 84 MB), parsed from a buffer and encoded
// back, next to one memcpy of as many bytes into a buffer that is already mapped.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "FastestReporter.h"
#include "core/Memory.h"

#include "core/OIFOps.h"

namespace {

constexpr int PartCount = 100;
constexpr int VerticesPerPart = 30000;
constexpr int IndicesPerPart = 60000;

OIFFile MakeStadium() {
    OIFFile doc = NewOIFFile();
    for (int p = 0; p < PartCount; ++p) {
        OIFPart part;
        char name[32];
        std::snprintf(name, sizeof name, "Stand section %03d", p);
        part.Header.Name = name;
        std::snprintf(name, sizeof name, "t%03d", p);
        part.Header.Texture = name;
        part.Vertices.resize(VerticesPerPart);
        for (int i = 0; i < VerticesPerPart; ++i) {
            const float f = static_cast<float>(i);
            part.Vertices[static_cast<std::size_t>(i)] = {f * 0.5f,
                                                          f * -0.25f,
                                                          static_cast<float>(p),
                                                          0xFF808080u ^ static_cast<std::uint32_t>(i),
                                                          f / VerticesPerPart,
                                                          1.0f - f / VerticesPerPart};
        }
        part.Indices.resize(IndicesPerPart);
        for (int i = 0; i < IndicesPerPart; ++i)
            part.Indices[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(i % VerticesPerPart);
        part.Header.VertexCount = VerticesPerPart;
        part.Header.IndexCount = IndicesPerPart;
        doc.Parts.push_back(std::move(part));
    }
    doc.Header.PartCount = PartCount;
    return doc;
}

struct Fixture {
    OIFFile doc = MakeStadium();
    ByteBuffer bytes;
    ByteBuffer copyTarget;
    Fixture() {
        OIFFile copy = doc;
        bytes = EncodeOIF(copy);
        // Touched once, so that the baseline pays for copying and not for mapping pages.
        copyTarget.assign(bytes.size(), 1);
    }
};

Fixture& Data() {
    static Fixture fixture;
    return fixture;
}

void BM_Memcpy(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state) {
        std::memcpy(f.copyTarget.data(), f.bytes.data(), f.bytes.size());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * f.bytes.size()));
}

// The floor for anything that returns a new buffer of this size: the same copy into memory
// just taken from the system, which pays a page fault per 4 KB page on first touch.
void BM_MemcpyFresh(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state) {
        std::unique_ptr<std::uint8_t[]> fresh(new std::uint8_t[f.bytes.size()]);
        std::memcpy(fresh.get(), f.bytes.data(), f.bytes.size());
        benchmark::DoNotOptimize(fresh.get());
        benchmark::ClobberMemory();
        state.PauseTiming();
        fresh.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * f.bytes.size()));
}

void BM_ParseOIF(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state) {
        OIFParse parsed = ParseOIF(f.bytes);
        benchmark::DoNotOptimize(parsed.doc.Parts.data());
        if (!parsed.error.empty()) state.SkipWithError(parsed.error.c_str());
        state.PauseTiming();  // freeing the document is not parsing
        parsed = OIFParse{};
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * f.bytes.size()));
}

void BM_EncodeOIF(benchmark::State& state) {
    Fixture& f = Data();
    for (auto _ : state) {
        ByteBuffer out = EncodeOIF(f.doc);  // blanks the textures of f.doc, which nothing here reads
        benchmark::DoNotOptimize(out.data());
        state.PauseTiming();
        out = ByteBuffer{};
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * f.bytes.size()));
}

void Setup(benchmark::internal::Benchmark* b) { TenRuns(b); }

BENCHMARK(BM_Memcpy)->Apply(Setup);
BENCHMARK(BM_MemcpyFresh)->Apply(Setup);
BENCHMARK(BM_ParseOIF)->Apply(Setup);
BENCHMARK(BM_EncodeOIF)->Apply(Setup);

}  // namespace

int main(int argc, char** argv) {
    KeepLargeBlocksForReuse();  // as the editor does
    std::printf("Stadium: %d parts of %d vertices and %d indices, %zu bytes\n", PartCount, VerticesPerPart,
                IndicesPerPart, Data().bytes.size());
    FastestReporter reporter;
    if (!RunAllBenchmarks(argc, argv, reporter)) return 1;

    const auto base = reporter.fastest.find("BM_Memcpy");
    if (base == reporter.fastest.end() || base->second <= 0) return 0;
    const auto fresh = reporter.fastest.find("BM_MemcpyFresh");
    constexpr double Target = 3.0;
    bool allWithin = true;
    std::printf("\nFastest of 10 runs, as a multiple of memcpy into a mapped buffer (target: within %.0fx)\n", Target);
    for (const char* name : {"BM_ParseOIF", "BM_EncodeOIF", "BM_MemcpyFresh"}) {
        const auto it = reporter.fastest.find(name);
        if (it == reporter.fastest.end()) continue;
        const double ratio = it->second / base->second;
        const bool codec = std::strcmp(name, "BM_MemcpyFresh") != 0;
        if (codec) allWithin = allWithin && ratio <= Target;
        std::printf("  %-15s %8.2f ms  %5.2fx", name, it->second, ratio);
        if (codec && fresh != reporter.fastest.end() && fresh->second > 0)
            std::printf("   (%.2fx of memcpy into fresh memory)", it->second / fresh->second);
        std::printf("%s\n", codec && ratio > Target ? "  MISSES THE TARGET" : "");
    }
    std::printf("  %-15s %8.2f ms  1.00x\n", "BM_Memcpy", base->second);
    return allWithin ? 0 : 3;
}
