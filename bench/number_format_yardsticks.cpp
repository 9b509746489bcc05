// neq::formatFloatG and neq::formatInt against the standard ways to make the same
// text: std::to_chars(general, 6) and snprintf("%g"), on vertex coordinates of the
// benchmark mesh and on arbitrary bit patterns; face indices for the integers.

#include "foundation/number_format.h"
#include "tooling/sample_mesh.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <cstring>
#include <random>
#include <vector>

namespace neq::bench {
namespace {

enum FloatSet { kMeshCoordinates = 0, kAnyBits = 1 };

const std::vector<float>& floatsFor(FloatSet set) {
    static const std::vector<float> coordinates = [] {
        std::vector<float> values;
        for (const auto& vertex : meshfile::makeBenchmarkMesh(65536, 0).vertices)
            values.insert(values.end(), vertex.begin(), vertex.end());
        return values;
    }();
    static const std::vector<float> anyBits = [] {
        std::mt19937 random(1);
        std::vector<float> values(1 << 16);
        for (float& value : values) {
            const std::uint32_t bits = random();
            std::memcpy(&value, &bits, sizeof value);
        }
        return values;
    }();
    return set == kMeshCoordinates ? coordinates : anyBits;
}

template <class Format> void formatFloats(benchmark::State& state, Format format) {
    const std::vector<float>& values = floatsFor(static_cast<FloatSet>(state.range(0)));
    state.SetLabel(state.range(0) == kMeshCoordinates ? "mesh coordinates" : "any bit pattern");
    char text[64];
    for (auto _ : state) {
        for (float value : values) {
            benchmark::DoNotOptimize(format(text, value));
            benchmark::ClobberMemory();
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * values.size()));
}

void BM_FormatFloatG(benchmark::State& state) {
    formatFloats(state, [](char* out, float value) { return neq::formatFloatG(out, value); });
}
void BM_ToCharsGeneral6(benchmark::State& state) {
    formatFloats(state, [](char* out, float value) {
        return std::to_chars(out, out + 64, static_cast<double>(value), std::chars_format::general,
                             6)
            .ptr;
    });
}
void BM_SnprintfG(benchmark::State& state) {
    formatFloats(state, [](char* out, float value) {
        return out + std::snprintf(out, 64, "%g", static_cast<double>(value));
    });
}
BENCHMARK(BM_FormatFloatG)->Arg(kMeshCoordinates)->Arg(kAnyBits);
BENCHMARK(BM_ToCharsGeneral6)->Arg(kMeshCoordinates)->Arg(kAnyBits);
BENCHMARK(BM_SnprintfG)->Arg(kMeshCoordinates)->Arg(kAnyBits);

// Face indices of a million-vertex mesh, 1-based as the OBJ writes them.
template <class Format> void formatIndices(benchmark::State& state, Format format) {
    std::mt19937 random(2);
    std::vector<std::int32_t> values(1 << 16);
    for (std::int32_t& value : values)
        value = static_cast<std::int32_t>(random() % 1000000) + 1;
    char text[32];
    for (auto _ : state) {
        for (std::int32_t value : values) {
            benchmark::DoNotOptimize(format(text, value));
            benchmark::ClobberMemory();
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * values.size()));
}

void BM_FormatInt(benchmark::State& state) {
    formatIndices(state, [](char* out, std::int32_t value) { return neq::formatInt(out, value); });
}
void BM_ToCharsInt(benchmark::State& state) {
    formatIndices(state, [](char* out, std::int32_t value) {
        return std::to_chars(out, out + 32, value).ptr;
    });
}
void BM_SnprintfD(benchmark::State& state) {
    formatIndices(state, [](char* out, std::int32_t value) {
        return out + std::snprintf(out, 32, "%d", value);
    });
}
BENCHMARK(BM_FormatInt);
BENCHMARK(BM_ToCharsInt);
BENCHMARK(BM_SnprintfD);

} // namespace
} // namespace neq::bench
