#pragma once

// The files the OBJ export benchmarks share, made once per run in a temporary folder:
// a base mesh of 250000 quads (face block first, for GetFaceIDsNeq) and its
// subdivision of 1000000 quads and 1000000 vertices laid out for the OBJ export.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

namespace neq::bench {

struct ObjBenchFiles {
    std::string dir;          // ends in "/"
    std::string baseFaces;    // base mesh, face block at offset 32
    std::string subdivided;   // level-1 subdivision in the OBJ export's layout
    std::string objOutput;    // where the benchmarks write their OBJ text
    std::size_t objBytes = 0; // size of the OBJ the library writes for `subdivided`

    // Built on first use; the folder is removed when the program ends.
    static const ObjBenchFiles& get();
};

// Writes base.NeQ (usual block chain, UVs over 10 tiles), base_faces.NeQ and
// subdivided.NeQ for the benchmark mesh into `dir`. False when a file cannot be written.
bool writeBenchmarkMeshFiles(const std::string& dir);

// Fills the library's face IDs from the base mesh at level 1: GetFaceIDsNeq's result.
float fillFaceIds(const ObjBenchFiles& files);

// Fills the face IDs and writes the OBJ; the export's result code (0 on success).
float exportBenchmarkObj(const ObjBenchFiles& files, const std::string& outPath);

// Settings shared by the whole-file benchmarks: wall-clock milliseconds, and with
// --benchmark_repetitions a "min" row besides mean and median, the figure least
// disturbed by other work on a shared machine.
void timeWholeFiles(benchmark::internal::Benchmark* benchmark);

} // namespace neq::bench
