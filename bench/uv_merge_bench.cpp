// The Maya ASCII UV weld on a quad grid with four UVs per face (one per corner) and a
// seam column, against its floor: reading the input file and writing the output bytes
// from memory. Each size is timed with 250000 and 1000000 faces, so the two rows show
// how the cost grows; a last row measures the weld's peak memory in a child process.

#include "obj_bench_files.h"

#include "foundation/file_io.h"
#include "tooling/maya_mesh_writer.h"
#include "uvmerge/maya_uv_rewrite.h"
#include "uvmerge/vd_uv_merge_algo.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <system_error>

namespace neq::bench {
namespace {

// side x side unit quads. Corner UVs follow the grid (u = column / side, v = row / side),
// except that faces right of the middle column add 0.25 to u: the vertices of that
// column carry two UVs each after the weld.
meshfile::Mesh gridMesh(int side) {
    meshfile::Mesh mesh;
    const auto vertex = [side](int row, int column) { return row * (side + 1) + column; };
    for (int row = 0; row <= side; ++row)
        for (int column = 0; column <= side; ++column)
            mesh.vertices.push_back({column * 0.0125f - 6.25f, row * 0.0125f - 6.25f,
                                     0.0123f * static_cast<float>((row * 7 + column * 3) % 11)});
    const float step = 1.0f / static_cast<float>(side);
    for (int row = 0; row < side; ++row)
        for (int column = 0; column < side; ++column) {
            mesh.faces.push_back({vertex(row, column), vertex(row, column + 1),
                                  vertex(row + 1, column + 1), vertex(row + 1, column)});
            const float seam = column >= side / 2 ? 0.25f : 0.0f;
            const float u0 = column * step + seam, u1 = (column + 1) * step + seam;
            const float v0 = row * step, v1 = (row + 1) * step;
            mesh.uvs.push_back({u0, v0, u1, v0, u1, v1, u0, v1});
        }
    return mesh;
}

// The scene of one size: the pristine input, the weld's output, and the file that the
// benchmarks weld in place (restored from the pristine copy before every weld).
struct MayaBenchFiles {
    std::string pristine, scene, welded, floorOutput;
    std::size_t inputBytes = 0, outputBytes = 0;
};

std::size_t fileSize(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 ? static_cast<std::size_t>(info.st_size) : 0;
}

bool writeText(const std::string& path, const std::string& text) {
    std::string reason;
    return neq::files::replaceFile(path.c_str(), text, reason);
}

// Built in a child process, so that none of the building's memory stays with the
// benchmark process (it would count in the child measured for peak memory).
bool buildFiles(const MayaBenchFiles& files, int faces) {
    const pid_t child = ::fork();
    if (child < 0) return false;
    if (child == 0) {
        const int side = static_cast<int>(std::lround(std::sqrt(faces)));
        uvmerge::MayaSceneOptions options;
        options.name = "grid";
        std::string scene = uvmerge::buildMayaScene(gridMesh(side), options);
        const uvmerge::MayaUvRewrite welded = uvmerge::rewriteMayaUvs(scene);
        ::_exit(welded.ok && writeText(files.pristine, scene) &&
                        writeText(files.welded, welded.text)
                    ? 0
                    : 1);
    }
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

struct BenchFolder {
    std::string dir;
    std::map<int, MayaBenchFiles> sizes;

    BenchFolder() {
        char pattern[] = "/tmp/neqbridge-bench-XXXXXX";
        if (::mkdtemp(pattern) != nullptr) dir = std::string(pattern) + "/";
    }
    BenchFolder(const BenchFolder&) = delete;
    BenchFolder& operator=(const BenchFolder&) = delete;
    ~BenchFolder() {
        std::error_code ignored;
        if (!dir.empty()) std::filesystem::remove_all(dir, ignored);
    }
};

// The files for `faces` faces, made on first use; null when they cannot be made.
const MayaBenchFiles* benchFiles(int faces) {
    static BenchFolder folder;
    auto found = folder.sizes.find(faces);
    if (found == folder.sizes.end()) {
        const std::string stem = folder.dir + "grid" + std::to_string(faces);
        MayaBenchFiles files{stem + ".pristine.ma", stem + ".ma", stem + ".welded.ma",
                             stem + ".floor.ma"};
        if (folder.dir.empty() || !buildFiles(files, faces))
            files.inputBytes = 0;
        else {
            files.inputBytes = fileSize(files.pristine);
            files.outputBytes = fileSize(files.welded);
        }
        found = folder.sizes.emplace(faces, files).first;
    }
    return found->second.inputBytes != 0 ? &found->second : nullptr;
}

// The scene as it was before the weld, on disk: writing back its copy must not still be
// under way, competing for the disk, while the next weld is timed.
bool restoreScene(const MayaBenchFiles& files) {
    std::error_code error;
    if (!std::filesystem::copy_file(files.pristine, files.scene,
                                    std::filesystem::copy_options::overwrite_existing, error))
        return false;
    const int fd = ::open(files.scene.c_str(), O_RDONLY);
    const bool synced = fd >= 0 && ::fsync(fd) == 0;
    return fd >= 0 && ::close(fd) == 0 && synced;
}

void BM_MayaUvWeld(benchmark::State& state) {
    const MayaBenchFiles* files = benchFiles(static_cast<int>(state.range(0)));
    if (files == nullptr) {
        state.SkipWithError("cannot prepare the benchmark scene");
        return;
    }
    for (auto _ : state) {
        state.PauseTiming();
        const bool restored = restoreScene(*files);
        state.ResumeTiming();
        if (!restored || !VDUVMergeAlgo::mergeUVsInMayaFile(VDString(files->scene.c_str()))) {
            state.SkipWithError("the weld failed");
            break;
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * files->inputBytes));
    state.counters["input_MB"] = static_cast<double>(files->inputBytes) / 1e6;
    state.counters["output_MB"] = static_cast<double>(files->outputBytes) / 1e6;
}
BENCHMARK(BM_MayaUvWeld)->Arg(250000)->Arg(1000000)->Apply(timeWholeFiles);

// The same file operations without the weld: the input read whole, the finished output
// written from memory with one write; with `durable` (the /1 rows) also flushed to disk
// before it is closed, as the weld's rewrite must be.
void BM_MayaUvWeldFloor(benchmark::State& state) {
    const MayaBenchFiles* files = benchFiles(static_cast<int>(state.range(0)));
    const bool durable = state.range(1) != 0;
    std::string output, input, reason;
    if (files == nullptr || !neq::files::readRegularFile(files->welded.c_str(), output, reason)) {
        state.SkipWithError("cannot prepare the benchmark scene");
        return;
    }
    for (auto _ : state) {
        const int out = ::open(files->floorOutput.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const bool ok =
            neq::files::readRegularFile(files->pristine.c_str(), input, reason) && out >= 0 &&
            ::write(out, output.data(), output.size()) == static_cast<ssize_t>(output.size()) &&
            (!durable || ::fsync(out) == 0);
        if (out < 0 || ::close(out) != 0 || !ok) {
            state.SkipWithError("cannot read or write the floor files");
            break;
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * files->inputBytes));
}
BENCHMARK(BM_MayaUvWeldFloor)
    ->ArgNames({"faces", "durable"})
    ->ArgsProduct({{250000, 1000000}, {0, 1}})
    ->Apply(timeWholeFiles);

// The rewrite alone, from bytes in memory to bytes in memory.
void BM_MayaUvRewriteInMemory(benchmark::State& state) {
    const MayaBenchFiles* files = benchFiles(static_cast<int>(state.range(0)));
    std::string input, reason;
    if (files == nullptr || !neq::files::readRegularFile(files->pristine.c_str(), input, reason)) {
        state.SkipWithError("cannot prepare the benchmark scene");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(uvmerge::rewriteMayaUvs(input).text.data());
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * files->inputBytes));
}
BENCHMARK(BM_MayaUvRewriteInMemory)->Arg(1000000)->Apply(timeWholeFiles);

// Peak resident memory of a child process that welds the scene, in MB (10^6 bytes),
// beside the file's size and the budget of 3 x the file size + 64 MB.
void BM_MayaUvWeldPeakMemory(benchmark::State& state) {
    const MayaBenchFiles* files = benchFiles(static_cast<int>(state.range(0)));
    if (files == nullptr || !restoreScene(*files)) {
        state.SkipWithError("cannot prepare the benchmark scene");
        return;
    }
    long peakKilobytes = 0;
    for (auto _ : state) {
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(VDUVMergeAlgo::mergeUVsInMayaFile(VDString(files->scene.c_str())) ? 0 : 1);
        int status = 0;
        rusage usage{};
        if (child < 0 || ::wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
            WEXITSTATUS(status) != 0) {
            state.SkipWithError("the weld failed");
            break;
        }
        peakKilobytes = usage.ru_maxrss;
#ifdef __APPLE__
        peakKilobytes /= 1024; // bytes there
#endif
    }
    const double fileMB = static_cast<double>(files->inputBytes) / 1e6;
    state.counters["peak_MB"] = static_cast<double>(peakKilobytes) * 1024 / 1e6;
    state.counters["file_MB"] = fileMB;
    state.counters["budget_MB"] = 3 * fileMB + 64;
}
BENCHMARK(BM_MayaUvWeldPeakMemory)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace neq::bench
