#include "interchange/sample_meshes.h"

#include "meshfile/neq_file.h"
#include "support/case_table.h"
#include "support/temp_dir.h"
#include "tooling/neq_writer.h"

#include <set>

namespace neq::interchange {
namespace {

using test::sampleMesh;

namespace mf = neq::meshfile;

mf::Mesh asBuilderMesh(const Mesh& mesh) {
    mf::Mesh out;
    for (std::size_t v = 0; v < mesh.vertexCount(); ++v) {
        out.vertices.push_back(
            {mesh.positions[v * 3], mesh.positions[v * 3 + 1], mesh.positions[v * 3 + 2]});
        out.colours.push_back({mesh.colors[v * 3], mesh.colors[v * 3 + 1], mesh.colors[v * 3 + 2]});
    }
    for (std::size_t f = 0; f < mesh.faceCount(); ++f) {
        out.faces.push_back({mesh.faces[f * 4], mesh.faces[f * 4 + 1], mesh.faces[f * 4 + 2],
                             mesh.faces[f * 4 + 3]});
        std::array<float, 8> uv;
        std::copy(&mesh.uvs[f * 8], &mesh.uvs[f * 8] + 8, uv.begin());
        out.uvs.push_back(uv);
    }
    out.groups = mesh.groups;
    return out;
}

std::string str(const mf::NeqBytes& bytes) {
    return std::string(bytes.begin(), bytes.end());
}

TEST(NeqFile, WritesTheChainTheHostReadsAndReadsItBack) {
    const mf::Mesh reference = asBuilderMesh(sampleMesh());
    const std::string expected = str(mf::buildNeqChain(reference));
    Mesh mesh = sampleMesh();
    std::memcpy(mesh.neqHeader.data(), expected.data(), mesh.neqHeader.size());
    EXPECT_EQ(writeNeq(mesh), expected);
    const Mesh back = readNeq(expected, "m.NeQ");
    test::expectSameMesh(back, mesh);
    EXPECT_EQ(back.neqHeader, mesh.neqHeader);
    test::expectSameMesh(readNeq(writeNeq(Mesh{}), "empty.NeQ"), Mesh{}); // empty blocks
}

TEST(NeqFile, ReadsBlocksInAnyOrderSkipsUnknownOnesAndNormalisesTriangles) {
    Mesh mesh = sampleMesh();
    mf::Mesh reference = asBuilderMesh(mesh);
    reference.faces[1][3] = -7; // any negative fourth index is a triangle
    reference.uvs[1][6] = 9;    // whose fourth UV means nothing
    const std::uint8_t unknown[5] = {1, 2, 3, 4, 5};
    mf::NeqBuilder builder;
    builder.block(mf::kGroupTag, 2, mf::encodeGroups(reference).data(), mf::kGroupRecordSize)
        .block(77, 5, unknown, 1)
        .block(mf::kFaceTag, 2, mf::encodeFaces(reference).data(), mf::kFaceRecordSize)
        .block(mf::kVertexTag, 5, mf::encodeVertices(reference).data(), mf::kVertexRecordSize);
    const std::uint32_t headerOnly[4] = {99, 0, 1234, 0}; // length 0: 16 bytes
    builder.raw(headerOnly, sizeof headerOnly);
    mesh.uvs.clear();
    mesh.colors.clear();
    test::expectSameMesh(readNeq(str(builder.bytes()), "m.NeQ"), mesh);
}

TEST(NeqFile, EveryTruncationIsAnErrorOrAWholeChainOfBlocks) {
    const std::string whole = writeNeq(sampleMesh());
    // Cut right after the face block or any later block, the file still holds a mesh.
    std::set<std::size_t> blockEnds;
    for (std::size_t at = mf::kFileHeaderSize; at < whole.size();) {
        std::uint32_t length;
        std::memcpy(&length, &whole[at + 4], 4);
        at += length ? length : 16;
        if (at > mf::kFileHeaderSize + 16 + 5 * 12) blockEnds.insert(at);
    }
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string cut = whole.substr(0, size);
        try {
            readNeq(cut, "cut.NeQ");
            EXPECT_TRUE(blockEnds.count(size)) << size;
        } catch (const FormatError& error) {
            EXPECT_FALSE(blockEnds.count(size)) << size << ": " << error.what();
            EXPECT_EQ(error.file(), "cut.NeQ");
        }
    }
}

// One table for the three readers: each message names the file, the place and the fault.
TEST(MeshReaders, MalformedInputNamesTheFileThePlaceAndTheFault) {
    const std::string good = writeNeq(sampleMesh());
    for (const neq::test::CaseRow& row : neq::test::readCaseTable("interchange/malformed.txt")) {
        const std::string& file = row[0];
        std::string bytes = row[1];
        if (file == "m.NeQ") {
            const auto value =
                static_cast<std::uint32_t>(std::stoul(row[1].substr(row[1].find(' '))));
            bytes = good;
            std::memcpy(&bytes[std::stoul(row[1])], &value, 4);
        }
        EXPECT_EQ(test::errorOf<FormatError>([&] {
                      file == "m.NeQ"     ? readNeq(bytes, file)
                      : file == "bad.obj" ? readObj(bytes, file)
                                          : readGltf(bytes, file);
                  }),
                  file + ": " + row[2]);
    }
}

TEST(NeqFile, MeshFilesRefuseWhatTheyCannotReadAndReplaceAtomically) {
    neq::test::TempDir dir;
    const std::string path = dir.file("a.neq");
    writeMeshFile(path, sampleMesh());
    test::expectSameMesh(readMeshFile(path), sampleMesh());
    EXPECT_EQ(neq::test::listFolder(dir.path()), std::vector<std::string>{"a.neq"});
    const std::string noFormat = ": the extension names no mesh format (.NeQ, .obj, .glb or .gltf)";
    for (const std::string& file : {dir.file("none.NeQ"), dir.path() + "/.", dir.file("a.txt")})
        EXPECT_EQ(test::errorOf<FileError>([&] { readMeshFile(file); }),
                  file + (file == dir.file("none.NeQ") ? ": No such file or directory" : noFormat));
}

TEST(MeshModel, ValidateNamesTheArrayAndTheFault) {
    const std::pair<void (*)(Mesh&), const char*> cases[] = {
        {[](Mesh& m) { m.positions.pop_back(); }, "positions: 14 values, not a multiple of 3"},
        {[](Mesh& m) { m.faces.pop_back(); }, "faces: 7 values, not a multiple of 4"},
        {[](Mesh& m) { m.uvs.pop_back(); }, "uvs: 15 values, not 8 per face for 2 faces"},
        {[](Mesh& m) { m.colors.push_back(1); },
         "colors: 16 values, not 3 per vertex for 5 vertices"},
        {[](Mesh& m) { m.groups.push_back(1); }, "groups: 3 values, not 1 per face for 2 faces"},
        {[](Mesh& m) { m.faces[6] = 5; }, "faces: face 1 corner 2 names vertex 5 of 5"},
        {[](Mesh& m) { m.faces[0] = -1; }, "faces: face 0 corner 0 names vertex -1 of 5"},
        {[](Mesh& m) { m.faces[2] = 7; }, "faces: face 0 corner 2 names vertex 7 of 5"},
    };
    EXPECT_NO_THROW(validate(sampleMesh()));
    for (const auto& [spoil, message] : cases) {
        Mesh mesh = sampleMesh();
        spoil(mesh);
        EXPECT_EQ(test::errorOf<std::invalid_argument>([&] { validate(mesh); }), message);
    }
}

TEST(MeshModel, TransformsFlipSwitchAndReverseAndTheInverseUndoesThem) {
    Transform all;
    all.flipX = all.flipY = all.switchYZ = all.flipNormals = true;
    Mesh mesh = sampleMesh();
    apply(mesh, all);
    // Vertex 3 (0, 1, 0.1): flips give (-0, -1, 0.1), the switch (-0, 0.1, -1).
    EXPECT_EQ(std::vector<float>(&mesh.positions[9], &mesh.positions[12]),
              (std::vector<float>{-0.0f, 0.1f, -1}));
    EXPECT_EQ(mesh.faces, (std::vector<std::int32_t>{0, 3, 2, 1, 1, 2, 4, -1}));
    EXPECT_EQ(std::vector<float>(&mesh.uvs[8], &mesh.uvs[14]),
              (std::vector<float>{1.0f / 3, 0.25f, 1, 1, 1.5f, 0.5f}));
    apply(mesh, inverse(all));
    test::expectSameMesh(mesh, sampleMesh());

    Transform drop;
    drop.keepGroups = drop.keepColors = drop.keepUvs = false;
    apply(mesh, drop);
    EXPECT_TRUE(mesh.groups.empty() && mesh.colors.empty() && mesh.uvs.empty());
    EXPECT_EQ(formatOfPath("a/b.c/M.NEQ"), Format::neq);
    EXPECT_EQ(formatOfPath("x.gltf"), Format::gltf);
    EXPECT_EQ(formatOfPath("a.obj/x"), std::nullopt);
}

} // namespace
} // namespace neq::interchange
