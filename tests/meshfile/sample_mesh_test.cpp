#include "support/temp_dir.h"
#include "tooling/neq_writer.h"
#include "tooling/sample_mesh.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace neq::meshfile {
namespace {

// The demo's and the benchmarks' meshes, pinned byte for byte as block chains: every
// vertex, face, UV, colour and group. sample_base.NeQ is the demo's base.NeQ.
TEST(SampleMesh, BaseSubdividedAndBenchmarkMeshesAsGoldens) {
    const Mesh base = makeSampleMesh();
    const struct {
        Mesh mesh;
        const char* golden;
    } cases[] = {
        {base, "meshfile/sample_base.NeQ"},
        {subdivideMesh(base), "meshfile/sample_subdivided.NeQ"},
        {makeBenchmarkMesh(20, 3), "meshfile/benchmark_20_faces_3_tiles.NeQ"},
    };
    for (const auto& c : cases) {
        const NeqBytes bytes = buildNeqChain(c.mesh);
        EXPECT_EQ(std::string(bytes.begin(), bytes.end()), test::readTestData(c.golden))
            << c.golden;
    }
    EXPECT_TRUE(makeBenchmarkMesh(100, 0).uvs.empty());
    Mesh broken = base;
    broken.faces.push_back({0, 1, 99, -1});
    EXPECT_THROW(subdivideMesh(broken), std::out_of_range);
}

} // namespace
} // namespace neq::meshfile
