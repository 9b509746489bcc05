// Splitting a large mesh per UV tile, against the floor of writing the same bytes from
// memory: the split costs one pass to plan and one copy-and-select per tile file.

#include "meshfile/uv_tiles.h"
#include "tooling/neq_writer.h"
#include "tooling/sample_mesh.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kFaces = 1000000;
constexpr int kTiles = 10;

// The input mesh on disk and one tile file's image, made once per run.
class SplitInput {
  public:
    SplitInput() {
        char pattern[] = "/tmp/neqbridge-uv-bench-XXXXXX";
        if (::mkdtemp(pattern) == nullptr) throw std::runtime_error("mkdtemp failed");
        dir_ = pattern;
        input_ = dir_ + "/mesh.NeQ";
        const neq::meshfile::NeqBytes bytes =
            neq::meshfile::buildNeqChain(neq::meshfile::makeBenchmarkMesh(kFaces, kTiles));
        if (!neq::meshfile::writeBytesToFile(input_, bytes))
            throw std::runtime_error("cannot write " + input_);
        const auto split = neq::meshfile::UvTileSplit::plan(neq::meshfile::NeqView(bytes));
        tileCount_ = split->tiles().size();
        tileImage_ = split->tileImage(0);
    }
    ~SplitInput() {
        std::error_code ignored;
        std::filesystem::remove_all(dir_, ignored);
    }

    const std::string& input() const { return input_; }
    std::string path(const char* name) const { return dir_ + "/" + name; }
    std::size_t tileCount() const { return tileCount_; }
    const neq::meshfile::NeqBytes& tileImage() const { return tileImage_; }
    std::int64_t bytesPerSplit() const {
        return static_cast<std::int64_t>(tileCount_ * tileImage_.size());
    }

  private:
    std::string dir_;
    std::string input_;
    std::size_t tileCount_ = 0;
    neq::meshfile::NeqBytes tileImage_;
};

const SplitInput& splitInput() {
    static const SplitInput input;
    return input;
}

void BM_GetUVsFromNeQ(benchmark::State& state) {
    const SplitInput& input = splitInput();
    const std::string base = input.path("tile.NeQ");
    std::vector<std::string> names;
    for (auto _ : state) {
        const neq::meshfile::ReadOutcome result =
            neq::meshfile::splitUvTiles(input.input().c_str(), base.c_str(), names);
        if (result.status != neq::meshfile::ReadStatus::Done || result.count != input.tileCount())
            state.SkipWithError("split failed");
    }
    state.SetBytesProcessed(state.iterations() * input.bytesPerSplit());
    state.counters["tiles"] = static_cast<double>(input.tileCount());
}
BENCHMARK(BM_GetUVsFromNeQ)->Unit(benchmark::kMillisecond)->UseRealTime();

// The floor: the same number of files of the same size, each written from memory in one
// call.
void BM_GetUVsFromNeQFloor(benchmark::State& state) {
    const SplitInput& input = splitInput();
    const neq::meshfile::NeqBytes& image = input.tileImage();
    for (auto _ : state) {
        for (std::size_t k = 0; k < input.tileCount(); ++k) {
            const std::string path = input.path("floor") + std::to_string(k) + ".NeQ";
            std::FILE* file = std::fopen(path.c_str(), "wb");
            if (file == nullptr || std::fwrite(image.data(), 1, image.size(), file) != image.size())
                state.SkipWithError("write failed");
            if (file != nullptr) std::fclose(file);
        }
    }
    state.SetBytesProcessed(state.iterations() * input.bytesPerSplit());
}
BENCHMARK(BM_GetUVsFromNeQFloor)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_GetUVTile(benchmark::State& state) {
    const SplitInput& input = splitInput();
    neq::meshfile::UvTileScan scan;
    for (auto _ : state)
        benchmark::DoNotOptimize(neq::meshfile::listUvTiles(input.input().c_str(), scan));
}
BENCHMARK(BM_GetUVTile)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
