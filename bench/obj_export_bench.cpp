// The OBJ export on a mesh of 1000000 vertices and 1000000 quads, as bytes of OBJ
// text per second. Reading the face IDs of the base mesh is not timed.

#include "obj_bench_files.h"

#include "neqbridge/neqbridge.hpp"

#include <benchmark/benchmark.h>

namespace neq::bench {
namespace {

void BM_ObjExport(benchmark::State& state) {
    const ObjBenchFiles& files = ObjBenchFiles::get();
    if (files.objBytes == 0) {
        state.SkipWithError("cannot prepare the benchmark mesh files");
        return;
    }
    std::string outPath = files.objOutput;
    for (auto _ : state) {
        state.PauseTiming();
        fillFaceIds(files); // the export consumes them
        state.ResumeTiming();
        if (writeOBJfromNeq(files.subdivided.c_str(), outPath.data()) != 0.0f) {
            state.SkipWithError("writeOBJfromNeq failed");
            break;
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * files.objBytes));
}
BENCHMARK(BM_ObjExport)->Apply(timeWholeFiles);

} // namespace
} // namespace neq::bench
