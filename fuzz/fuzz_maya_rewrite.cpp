// The Maya ASCII UV rewrite on arbitrary bytes, straight through its core (no files).
// A scene it accepts is rewritten a second time, so the generated statements are read
// back too.

#include "tooling/maya_mesh_writer.h"
#include "tooling/sample_mesh.h"
#include "uvmerge/maya_uv_rewrite.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Scenes from the writer: the sample house and its subdivision, LF and CR LF, and a
// degenerate mesh whose faces reuse vertices and carry NaN and negative UVs.
std::vector<std::string> seeds() {
    using neq::meshfile::Mesh;
    Mesh odd;
    odd.vertices = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}};
    odd.faces = {{0, 1, 2, -1}, {2, 1, 0, -1}, {0, 1, 1, 2}};
    odd.uvs = {{0.5f, -0.25f, 1e-9f, 3e7f, 0, 0, 0, 0},
               {std::numeric_limits<float>::quiet_NaN(), 1, 1, 1, -0.0f, 0, 0, 0}};
    const Mesh house = neq::meshfile::makeSampleMesh();
    std::vector<std::string> scenes;
    for (bool crlf : {false, true}) {
        neq::uvmerge::MayaSceneOptions options;
        options.crlf = crlf;
        for (const Mesh* mesh : {&house, static_cast<const Mesh*>(&odd)})
            scenes.push_back(neq::uvmerge::buildMayaScene(*mesh, options));
    }
    scenes.push_back(neq::uvmerge::buildMayaScene(neq::meshfile::subdivideMesh(house)));
    return scenes;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    const char* seedDir = std::getenv("NEQBRIDGE_FUZZ_SEED_DIR");
    if (seedDir == nullptr) return 0;
    int n = 0;
    for (const std::string& seed : seeds()) {
        const std::string path = std::string(seedDir) + "/seed" + std::to_string(n++) + ".ma";
        if (std::FILE* file = std::fopen(path.c_str(), "wb")) {
            std::fwrite(seed.data(), 1, seed.size(), file);
            std::fclose(file);
        }
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const neq::uvmerge::MayaUvRewrite first =
        neq::uvmerge::rewriteMayaUvs(std::string_view(reinterpret_cast<const char*>(data), size));
    if (first.ok && first.welded) neq::uvmerge::rewriteMayaUvs(first.text);
    return 0;
}
