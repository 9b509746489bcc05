#include "obj_bench_files.h"

#include "neqbridge/neqbridge.hpp"
#include "tooling/neq_writer.h"
#include "tooling/sample_mesh.h"

#include <stdlib.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace neq::bench {
namespace {

constexpr std::size_t kBaseFaces = 250000; // 1000000 after one subdivision
constexpr int kUvTiles = 10;
constexpr double kSubdivisionLevel = 1.0;

// The shared files and the folder that holds them, removed at exit.
struct BenchFolder {
    ObjBenchFiles files;

    BenchFolder() {
        char pattern[] = "/tmp/neqbridge-bench-XXXXXX";
        if (::mkdtemp(pattern) == nullptr) return;
        files.dir = std::string(pattern) + "/";
        files.baseFaces = files.dir + "base_faces.NeQ";
        files.subdivided = files.dir + "subdivided.NeQ";
        files.objOutput = files.dir + "out.obj";
        struct stat info;
        if (writeBenchmarkMeshFiles(files.dir) &&
            exportBenchmarkObj(files, files.objOutput) == 0.0f &&
            ::stat(files.objOutput.c_str(), &info) == 0)
            files.objBytes = static_cast<std::size_t>(info.st_size);
    }
    BenchFolder(const BenchFolder&) = delete;
    BenchFolder& operator=(const BenchFolder&) = delete;
    ~BenchFolder() {
        std::error_code ignored;
        if (!files.dir.empty()) std::filesystem::remove_all(files.dir, ignored);
    }
};

} // namespace

const ObjBenchFiles& ObjBenchFiles::get() {
    static const BenchFolder folder;
    return folder.files;
}

bool writeBenchmarkMeshFiles(const std::string& dir) {
    const meshfile::Mesh base = meshfile::makeBenchmarkMesh(kBaseFaces, kUvTiles);
    const meshfile::Mesh subdivided = meshfile::subdivideMesh(base);
    return meshfile::writeBytesToFile(dir + "base.NeQ", meshfile::buildNeqChain(base)) &&
           meshfile::writeBytesToFile(dir + "base_faces.NeQ", meshfile::buildNeqFacesFirst(base)) &&
           meshfile::writeBytesToFile(dir + "subdivided.NeQ",
                                      meshfile::buildNeqForObjExport(subdivided));
}

float fillFaceIds(const ObjBenchFiles& files) {
    return GetFaceIDsNeq(files.baseFaces.c_str(), kSubdivisionLevel);
}

float exportBenchmarkObj(const ObjBenchFiles& files, const std::string& outPath) {
    const float entries = fillFaceIds(files);
    if (entries < 0) return entries;
    std::string out = outPath;
    return writeOBJfromNeq(files.subdivided.c_str(), out.data());
}

void timeWholeFiles(benchmark::internal::Benchmark* benchmark) {
    benchmark->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->ComputeStatistics("min", [](const std::vector<double>& times) {
            return *std::min_element(times.begin(), times.end());
        });
}

} // namespace neq::bench
