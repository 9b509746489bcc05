#pragma once

// Scenes shared by the UV rewrite tests.

#include "support/temp_dir.h"
#include "tooling/neq_writer.h"
#include "uvmerge/maya_uv_rewrite.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace neq::test {

// A row of `quads` unit quads (vertices 2c at the bottom and 2c + 1 at the top of
// column c) with continuous UVs (u = c / 8, v = 0 or 1), so welding leaves one UV per
// vertex; with `triangle`, one more face on the right, over the last quad's right edge
// in reverse and a new apex vertex.
inline meshfile::Mesh stripMesh(int quads, bool triangle) {
    meshfile::Mesh mesh;
    for (int c = 0; c <= quads; ++c) {
        mesh.vertices.push_back({static_cast<float>(c), 0, 0});
        mesh.vertices.push_back({static_cast<float>(c), 1, 0});
    }
    for (int c = 0; c < quads; ++c) {
        mesh.faces.push_back({2 * c, 2 * c + 2, 2 * c + 3, 2 * c + 1});
        const float u0 = c * 0.125f, u1 = (c + 1) * 0.125f;
        mesh.uvs.push_back({u0, 0, u1, 0, u1, 1, u0, 1});
    }
    if (triangle) {
        const auto apex = static_cast<std::int32_t>(mesh.vertices.size());
        mesh.vertices.push_back({quads + 0.5f, 0.5f, 0});
        mesh.faces.push_back({2 * quads + 1, 2 * quads, apex, -1});
        const float u = quads * 0.125f;
        mesh.uvs.push_back({u, 1, u, 0, u + 0.0625f, 0.5f, 0, 0});
    }
    return mesh;
}

// One quad over vertices 0..3 with its four UVs: the smallest scene the rewrite welds.
// Its output lists the UVs in the same order (one UV per vertex).
inline const std::string& quadScene() {
    static const std::string text = readTestData("uvmerge/quad.ma");
    return text;
}

// The rewritten scene; fails the test when it is refused.
inline std::string rewritten(const std::string& scene) {
    const uvmerge::MayaUvRewrite result = uvmerge::rewriteMayaUvs(scene);
    EXPECT_TRUE(result.ok) << result.refusal;
    return result.text;
}

// `text` with its first `from` replaced by `to`; fails the test when `from` is missing.
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return text;
}

// The quad scene changed, and what the rewrite makes of it.
struct QuadVariant {
    std::string scene, expected;
};

// The lines "FROM | TO | EXPECTED" of a data file: tests/data/uvmerge/refused.txt (the
// reasons given for refusals) or changed.txt (texts found in the welded scene).
inline std::vector<QuadVariant> quadVariants(const std::string& name) {
    const auto unescaped = [](std::string text) {
        const std::pair<const char*, std::string> escapes[] = {
            {"\\n", "\n"}, {"\\t", "\t"}, {"\\9", std::string(400, '9')}};
        for (const auto& [escape, meaning] : escapes)
            for (std::size_t at; (at = text.find(escape)) != std::string::npos;)
                text.replace(at, 2, meaning);
        return text;
    };
    std::vector<QuadVariant> variants;
    std::istringstream lines(readTestData("uvmerge/" + name));
    for (std::string line; std::getline(lines, line);) {
        const std::size_t to = line.find(" | "), expected = line.find(" | ", to + 3);
        if (line[0] == '#' || expected == std::string::npos) continue;
        variants.push_back({replaced(quadScene(), unescaped(line.substr(0, to)),
                                     unescaped(line.substr(to + 3, expected - to - 3))),
                            unescaped(line.substr(expected + 3))});
    }
    EXPECT_GT(variants.size(), 7u) << name;
    return variants;
}

inline std::vector<QuadVariant> refusedScenes() {
    return quadVariants("refused.txt");
}

} // namespace neq::test
