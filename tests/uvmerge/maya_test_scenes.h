#pragma once

// Scenes shared by the UV rewrite tests.

#include "tooling/neq_writer.h"
#include "uvmerge/maya_uv_rewrite.h"

#include <gtest/gtest.h>

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
constexpr char kQuadScene[] = "createNode mesh -n \"quadShape\";\n"
                              "\tsetAttr \".uvst[0].uvsn\" -type \"string\" \"map1\";"
                              "setAttr -s 4 \".uvst[0].uvsp\";\n"
                              "\tsetAttr \".uvst[0].uvsp[0:3]\" -type \"float2\"\n"
                              " 0 0 1 0 1 1 0 1;\n"
                              "\tsetAttr -s 4 \".ed\";\n"
                              "\tsetAttr \".ed[0:3]\"\n"
                              " 0 1 0 1 2 0 2 3 0 3 0 0;\n"
                              "\tsetAttr -s 1 \".fc\";\n"
                              "\tsetAttr \".fc[0:0]\" -type \"polyFaces\"\n"
                              " f 4 0 1 2 3 mu 0 4 0 1 2 3;\n";

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

// A refused scene: how kQuadScene is changed and the reason the rewrite gives.
struct RefusedScene {
    std::string from, to;
    std::string reason;
};

// Every way a scene strays from the layout that the rewrite refuses.
inline std::vector<RefusedScene> refusedScenes() {
    return {
        {"-s 4 \".uvst", "-s 0 \".uvst", "UV range 0:3 lies outside the UV count 0"},
        {"-s 4 \".uvst", "-s 99999999999 \".uvst",
         "line 2: UV count 2147483647 is more than the file can hold"},
        {"-s 4 \".ed\"", "-s 400 \".ed\"", "line 5: edge count 400 is more than the file can hold"},
        {"-s 1 \".fc\"", "-s 100000 \".fc\"", "face count 100000 is more than the file can hold"},
        {"uvsp[0:3]", "uvsp[0:4]", "line 3: UV range 0:4 lies outside the UV count 4"},
        {"uvsp[0:3]", "uvsp[-1:3]", "UV range -1:3 lies outside the UV count 4"},
        {"\".ed[0:3]\"", "\".ed[1:4]\"", "line 6: edge range 1:4 lies outside the edge count 4"},
        {" 0 1 0 1 2 0", " 0 1 0 1 600 0", "line 7: edge 1 names vertex 600, more vertices than"},
        {"f 4 0 1 2 3 mu 0 4 0 1 2 3", "f 5 0 1 2 3 0 mu 0 5 0 1 2 3 0",
         "line 10: face 0 has 5 corners (a face has 3 or 4)"},
        {"f 4 0 1 2 3 mu 0 4 0 1 2 3", "f 2 0 1 mu 0 2 0 1", "face 0 has 2 corners"},
        {"f 4 0 1 2 3 mu 0 4 0 1 2 3", "f 1 0 mu 0 1 0", "face 0 has 1 corners"},
        {"f 4 0 1 2 3 mu 0 4 0 1 2 3", "f -3 mu 0 0", "face 0 has -3 corners"},
        {"f 4 0 1 2 3 mu 0 4 0 1 2 3", "f 4 0 1 2 3", "face 0 has no \"mu\" part"},
        {"f 4 0 1 2 3 mu 0 4 0 1 2 3", "f 4 0 1 2 3 uv 0 4 0 1 2 3", "face 0 has no \"mu\" part"},
        {"mu 0 4 0 1 2 3", "mu 0 3 0 1 2", "face 0 has 4 corners but 3 UVs"},
        {"f 4 0 1 2 3 mu", "f 4 0 1 2 4 mu", "face 0 uses edge 4, outside the edge count 4"},
        {"f 4 0 1 2 3 mu", "f 4 0 1 2 -5 mu", "face 0 uses edge -5, outside the edge count 4"},
        {"mu 0 4 0 1 2 3", "mu 0 4 0 1 2 4", "face 0 uses UV 4, past the UV count 4"},
        {"\tsetAttr -s 4 \".ed\";\n", "", "line 5: edge range 0:3 lies outside the edge count 0"},
        {"\tsetAttr -s 1 \".fc\";\n", "\tsetAttr -s 1 \".fc\";\n\tsetAttr -s 1 \".fc\";\n",
         "line 9: a second face count line (one mesh per file)"},
        {"\tsetAttr -s 4 \".ed\";\n", "\tsetAttr -s 4 \".ed\";\n\tsetAttr -s 4 \".ed\";\n",
         "a second edge count line"},
        {"createNode mesh -n \"quadShape\";\n",
         "\tsetAttr \".uvst[0].uvsn\" -type \"string\" \"map1\";setAttr -s 4 \".uvst[0].uvsp\";\n",
         "line 2: a second UV count line"},
        {"\tsetAttr \".fc[0:0]\" -type \"polyFaces\"\n f 4 0 1 2 3 mu 0 4 0 1 2 3;\n", "",
         "nothing to weld: no face has corners"},
        // With no UVs, edge and face lines are not even recognised.
        {"-s 4 \".uvst[0].uvsp\";\n\tsetAttr \".uvst[0].uvsp[0:3]\" -type \"float2\"\n 0 0 1 0 1 1 "
         "0 1;\n",
         "-s 0 \".uvst[0].uvsp\";\n", "nothing to weld: the UV count is 0"},
    };
}

} // namespace neq::test
