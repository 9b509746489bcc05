// The mesh conversions side by side with their yardsticks, on the same files:
// - `convert` of a 1,000,000-face OBJ to NeQ (read, write) against tinyobjloader and
//   assimp just loading the OBJ;
// - readNeq of the NeQ file against reading its bytes;
// - OBJ and glb writing against writing the same bytes from memory, both through the
//   same atomic file replacement.

#include "obj_bench_files.h"

#include "foundation/file_io.h"
#include "interchange/mesh.h"

#include <assimp/Importer.hpp>
#include <assimp/scene.h>
#include <benchmark/benchmark.h>
#include <tiny_obj_loader.h>

#include <cstdlib>
#include <string>

namespace neq::bench {
namespace {

namespace ix = neq::interchange;

constexpr int kSide = 1000; // quads per row and column: 1,000,000 faces

// A grid of quads with UVs over four tiles, colours and 16 polygroups in bands.
ix::Mesh gridMesh() {
    ix::Mesh mesh;
    const int points = kSide + 1;
    mesh.positions.reserve(std::size_t(points) * points * 3);
    mesh.colors.reserve(std::size_t(points) * points * 3);
    for (int y = 0; y < points; ++y)
        for (int x = 0; x < points; ++x) {
            mesh.positions.insert(mesh.positions.end(),
                                  {x * 0.013f, y * 0.017f, float((x * y) % 97) * 0.001f});
            mesh.colors.insert(mesh.colors.end(),
                               {std::uint8_t(x), std::uint8_t(y), std::uint8_t(x + y)});
        }
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            const int v = y * points + x;
            mesh.faces.insert(mesh.faces.end(), {v, v + 1, v + points + 1, v + points});
            const float u0 = 2.0f * x / kSide, u1 = 2.0f * (x + 1) / kSide;
            const float v0 = 2.0f * y / kSide, v1 = 2.0f * (y + 1) / kSide;
            mesh.uvs.insert(mesh.uvs.end(), {u0, v0, u1, v0, u1, v1, u0, v1});
            mesh.groups.push_back(std::int16_t(y / (kSide / 16)));
        }
    return mesh;
}

struct Files {
    std::string dir, obj, neq, out;
    ix::Mesh mesh;
    std::string objText, glbBytes;

    static const Files& get() {
        static const Files files = [] {
            Files f;
            f.dir = ObjBenchFiles::get().dir;
            f.obj = f.dir + "grid.obj";
            f.neq = f.dir + "grid.NeQ";
            f.out = f.dir + "converted.NeQ";
            f.mesh = gridMesh();
            ix::writeMeshFile(f.obj, f.mesh);
            ix::writeMeshFile(f.neq, f.mesh);
            f.objText = ix::writeObj(f.mesh);
            f.glbBytes = ix::writeGlb(f.mesh);
            return f;
        }();
        return files;
    }
};

void BM_Convert_ObjToNeq(benchmark::State& state) {
    const Files& files = Files::get();
    for (auto _ : state)
        ix::convertFile(files.obj, files.out, ix::Transform{});
}
BENCHMARK(BM_Convert_ObjToNeq)->Apply(timeWholeFiles);

void BM_TinyObjLoader_LoadObj(benchmark::State& state) {
    const Files& files = Files::get();
    for (auto _ : state) {
        tinyobj::ObjReader reader;
        tinyobj::ObjReaderConfig config;
        config.triangulate = false;
        if (!reader.ParseFromFile(files.obj, config)) state.SkipWithError("tinyobjloader failed");
        benchmark::DoNotOptimize(reader.GetShapes().size());
    }
}
BENCHMARK(BM_TinyObjLoader_LoadObj)->Apply(timeWholeFiles);

void BM_Assimp_LoadObj(benchmark::State& state) {
    const Files& files = Files::get();
    for (auto _ : state) {
        Assimp::Importer importer;
        const aiScene* scene = importer.ReadFile(files.obj, 0);
        if (scene == nullptr) state.SkipWithError("assimp failed");
        benchmark::DoNotOptimize(scene);
    }
}
BENCHMARK(BM_Assimp_LoadObj)->Apply(timeWholeFiles);

void BM_ReadNeq(benchmark::State& state) {
    const Files& files = Files::get();
    for (auto _ : state)
        benchmark::DoNotOptimize(ix::readMeshFile(files.neq).faces.data());
}
BENCHMARK(BM_ReadNeq)->Apply(timeWholeFiles);

void BM_ReadNeq_FileBytes(benchmark::State& state) {
    const Files& files = Files::get();
    for (auto _ : state) {
        files::FileBytes bytes;
        std::string reason;
        if (!files::readRegularFile(files.neq.c_str(), bytes, reason)) state.SkipWithError("read");
        benchmark::DoNotOptimize(bytes.view().data());
    }
}
BENCHMARK(BM_ReadNeq_FileBytes)->Apply(timeWholeFiles);

// The same into a string, cleared before the read as any owned array is.
void BM_ReadNeq_FileBytesIntoString(benchmark::State& state) {
    const Files& files = Files::get();
    for (auto _ : state) {
        std::string bytes, reason;
        if (!files::readRegularFile(files.neq.c_str(), bytes, reason)) state.SkipWithError("read");
        benchmark::DoNotOptimize(bytes.data());
    }
}
BENCHMARK(BM_ReadNeq_FileBytesIntoString)->Apply(timeWholeFiles);

void writeFromMemory(benchmark::State& state, const std::string& path, const std::string& bytes) {
    for (auto _ : state) {
        std::string reason;
        if (!files::replaceFile(path.c_str(), bytes, reason)) state.SkipWithError("write");
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
}

void BM_WriteObj(benchmark::State& state) {
    const Files& files = Files::get();
    for (auto _ : state)
        ix::writeMeshFile(files.dir + "written.obj", files.mesh);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * files.objText.size()));
}
BENCHMARK(BM_WriteObj)->Apply(timeWholeFiles);

void BM_WriteObj_SameBytesFromMemory(benchmark::State& state) {
    writeFromMemory(state, Files::get().dir + "floor.obj", Files::get().objText);
}
BENCHMARK(BM_WriteObj_SameBytesFromMemory)->Apply(timeWholeFiles);

void BM_WriteGlb(benchmark::State& state) {
    const Files& files = Files::get();
    for (auto _ : state)
        ix::writeMeshFile(files.dir + "written.glb", files.mesh);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * files.glbBytes.size()));
}
BENCHMARK(BM_WriteGlb)->Apply(timeWholeFiles);

void BM_WriteGlb_SameBytesFromMemory(benchmark::State& state) {
    writeFromMemory(state, Files::get().dir + "floor.glb", Files::get().glbBytes);
}
BENCHMARK(BM_WriteGlb_SameBytesFromMemory)->Apply(timeWholeFiles);

} // namespace
} // namespace neq::bench
