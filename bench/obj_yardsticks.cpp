// Yardsticks for BM_ObjExport, on the same mesh and the same number of output bytes:
// the floor (the finished OBJ text written from memory with one fwrite) and the plain
// way (the reference writer through stdio and printf formatting). Before timing, the
// reference writer's output is checked byte for byte against the library's.

#include "obj_bench_files.h"
#include "obj_reference_writer.h"

#include "api/module_state.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace neq::bench {
namespace {

std::string readText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void BM_ObjFloor_OneFwrite(benchmark::State& state) {
    const ObjBenchFiles& files = ObjBenchFiles::get();
    const std::string text = readText(files.objOutput);
    if (files.objBytes == 0 || text.size() != files.objBytes) {
        state.SkipWithError("cannot prepare the benchmark mesh files");
        return;
    }
    const std::string outPath = files.dir + "floor.obj";
    for (auto _ : state) {
        std::FILE* out = std::fopen(outPath.c_str(), "wb");
        const bool written =
            out != nullptr && std::fwrite(text.data(), 1, text.size(), out) == text.size();
        if (out == nullptr || std::fclose(out) != 0 || !written) {
            state.SkipWithError("cannot write the floor file");
            break;
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * files.objBytes));
}
BENCHMARK(BM_ObjFloor_OneFwrite)->Apply(timeWholeFiles);

void BM_ObjReference_Stdio(benchmark::State& state) {
    const ObjBenchFiles& files = ObjBenchFiles::get();
    if (files.objBytes == 0 || fillFaceIds(files) <= 0) {
        state.SkipWithError("cannot prepare the benchmark mesh files");
        return;
    }
    const std::vector<std::uint32_t> faceIds = faceID;
    const std::string outPath = files.dir + "reference.obj";
    if (!writeReferenceObj(files.subdivided, outPath, faceIds) ||
        readText(outPath) != readText(files.objOutput)) {
        state.SkipWithError("the reference writer's OBJ differs from the library's");
        return;
    }
    for (auto _ : state) {
        if (!writeReferenceObj(files.subdivided, outPath, faceIds)) {
            state.SkipWithError("the reference writer failed");
            break;
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * files.objBytes));
}
BENCHMARK(BM_ObjReference_Stdio)->Apply(timeWholeFiles);

} // namespace
} // namespace neq::bench
