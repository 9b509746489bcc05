// The benchmark program. Besides the usual Google Benchmark options it has one mode of
// its own: `neqbridge_bench --write-mesh-files DIR` writes the benchmark mesh files
// (base.NeQ, base_faces.NeQ, subdivided.NeQ) into DIR and exits, for whole-process
// timings of the tool (bench/run_obj_timing.sh).

#include "obj_bench_files.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <string>

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--write-mesh-files") == 0) {
        std::string dir = argv[2];
        if (dir.empty() || dir.back() != '/') dir += '/';
        if (neq::bench::writeBenchmarkMeshFiles(dir)) return 0;
        std::fprintf(stderr, "neqbridge_bench: cannot write the mesh files into %s\n", argv[2]);
        return 1;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
