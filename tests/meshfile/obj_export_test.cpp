#include "api/result_codes.h"
#include "meshfile/neq_file.h"
#include "meshfile/obj_export.h"
#include "neqbridge/neqbridge.hpp"
#include "support/temp_dir.h"
#include "tooling/neq_writer.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace neq::meshfile {
namespace {

using Ids = std::vector<std::uint32_t>;

const char kRgbClosing[] = "# End of RGB block\n";

// Its export is tests/data/meshfile/sample.obj.
Mesh sampleMesh() {
    Mesh mesh;
    mesh.vertices = {{0, 0, 0}, {1, -0.25f, 100000}, {1000000, 0, 0}, {0.5f, 1234567, 1e-7f}};
    mesh.colours = {{0xFF, 0x20, 0x10}, {0x00, 0x80, 0x0A}};
    mesh.faces = {{0, 1, 2, 3}, {1, 2, 3, -1}};
    return mesh;
}

// The golden export cut before the first line that starts with `marker`.
std::string sampleUpTo(const std::string& marker) {
    const std::string golden = test::readTestData("meshfile/sample.obj");
    return golden.substr(0, golden.find("\n" + marker) + 1);
}

Mesh quads(int count) {
    Mesh mesh;
    for (int i = 0; i < count; ++i)
        mesh.faces.push_back({i, i + 1, i + 2, i + 3});
    return mesh;
}

// The vertex block, the block the export skips and the 4-byte gap after it: whatever
// is appended next stands where the export expects the colour block.
NeqBuilder vertexAndSkippedBlock(const Mesh& mesh) {
    static const std::uint8_t kGap[4] = {};
    NeqBuilder builder;
    builder.block(kVertexTag, static_cast<std::uint32_t>(mesh.vertices.size()),
                  encodeVertices(mesh).data(), kVertexRecordSize);
    builder.block(15001, 0, nullptr, 0).raw(kGap, sizeof kGap);
    return builder;
}

class ObjExport : public ::testing::Test {
  protected:
    // Exports `bytes` with a copy of `ids`; returns the host code, keeps the copy.
    float run(const NeqBytes& bytes, const Ids& ids) {
        writeBytesToFile(in, bytes);
        idsAfter = ids;
        return api::hostCode(exportObj(in.c_str(), out.c_str(), idsAfter));
    }
    std::string written() const { return test::readFile(out); }
    // The text after the RGB block: the face groups.
    std::string groups() const {
        const std::string text = written();
        return text.substr(text.find(kRgbClosing) + sizeof kRgbClosing - 1);
    }

    test::TempDir dir;
    const std::string in = dir.file("subdivided.neq");
    const std::string out = dir.file("out.obj");
    Ids idsAfter;
};

TEST_F(ObjExport, WritesHeaderVerticesColoursAndFaceGroups) {
    EXPECT_EQ(run(buildNeqForObjExport(sampleMesh()), {1, 1}), 0.0f);
    EXPECT_EQ(written(), test::readTestData("meshfile/sample.obj"));
    EXPECT_TRUE(idsAfter.empty()) << "a written export consumes the face IDs";
}

TEST_F(ObjExport, GroupsFollowTheFaceIdsAndStopOnlyBetweenGroups) {
    const std::string eightQuadsInTwoGroups =
        "#FaceID 1\nf 1 2 3 4\nf 2 3 4 5\nf 3 4 5 6\nf 4 5 6 7\n"
        "#FaceID 2\nf 5 6 7 8\nf 6 7 8 9\nf 7 8 9 10\nf 8 9 10 11\n";
    const struct {
        int quads;
        Ids ids;
        std::string groups;
    } cases[] = {
        {8, {4, 4}, eightQuadsInTwoGroups},
        // More entries than the face block feeds: the next group would start at its end.
        {8, {4, 4, 4, 4}, eightQuadsInTwoGroups},
        // A group may run on past the face block: into the 16 zero bytes after it.
        {3, {2, 2}, "#FaceID 1\nf 1 2 3 4\nf 2 3 4 5\n#FaceID 2\nf 3 4 5 6\nf 1 1 1 1\n"},
        // ...but never past the end of the file: the export ends there, written.
        {1, {1000}, "#FaceID 1\nf 1 2 3 4\nf 1 1 1 1\n"},
        {2, {0, 0, 1}, "#FaceID 1\n#FaceID 2\n#FaceID 3\nf 1 2 3 4\n"},
        {0, {1}, ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(run(buildNeqForObjExport(quads(c.quads)), c.ids), 0.0f);
        EXPECT_EQ(groups(), c.groups) << c.quads << " quads, " << c.ids.size() << " IDs";
    }
}

TEST_F(ObjExport, MisplacedBlocksReturnTheTagFoundAndKeepWhatWasWritten) {
    const Mesh mesh = sampleMesh();
    // The face block where the colour block should be: header and vertices only. The
    // face count line shows that block's length field.
    NeqBuilder facesForColours = vertexAndSkippedBlock(mesh);
    facesForColours.block(kFaceTag, 2, encodeFaces(mesh).data(), kFaceRecordSize).terminator();
    EXPECT_EQ(run(facesForColours.bytes(), {1, 1}), 20001.0f);
    std::string expected = sampleUpTo("# The following RGB block");
    EXPECT_EQ(written(), expected.replace(expected.find("24"), 2, "48"));
    EXPECT_EQ(idsAfter, (Ids{1, 1}));

    // A UV block where the face block should be: everything up to the RGB block.
    NeqBuilder uvForFaces = vertexAndSkippedBlock(mesh);
    uvForFaces.block(kColourTag, 2, encodeColours(mesh).data(), kColourRecordSize);
    uvForFaces.block(kUvTag, 0, nullptr, 0).terminator();
    EXPECT_EQ(run(uvForFaces.bytes(), {1, 1}), 25001.0f);
    EXPECT_EQ(written(), sampleUpTo("#FaceID"));
    EXPECT_EQ(idsAfter, (Ids{1, 1}));

    // No vertex block at 32: nothing is created.
    std::remove(out.c_str());
    EXPECT_EQ(run(buildNeqFacesFirst(mesh), {1}), 20001.0f);
    EXPECT_FALSE(test::fileExists(out));
    EXPECT_EQ(run(NeqBytes{}, {1}), -1.0f) << "empty file";
    EXPECT_FALSE(test::fileExists(out));
}

TEST_F(ObjExport, FieldsPastTheEndOfATruncatedFile) {
    // The colour tag is the last thing in the file: the face count field lies past the
    // end (printed 0), no colours, and the face block's place is unknown (-1).
    NeqBuilder builder = vertexAndSkippedBlock(Mesh{});
    const std::uint8_t colourTag[4] = {0xB9, 0x88, 0, 0};
    builder.raw(colourTag, sizeof colourTag);
    EXPECT_EQ(run(builder.bytes(), {1}), -1.0f);
    EXPECT_EQ(written(), "# File exported by Clayvo plugin\n#Vertex count 0\n#Face count 0\n" +
                             test::readTestData("meshfile/rgb_0.txt"));

    // A vertex count far past the end is cut to the records that fit, in its line too;
    // the skipped block's length then lies past the end: -1 after the vertex lines.
    NeqBytes bytes = buildNeqForObjExport(sampleMesh());
    bytes.resize(kFirstBlockRecordsOffset + 2 * kVertexRecordSize + 5);
    bytes[kFirstBlockCountOffset + 3] = 0x40;
    EXPECT_EQ(run(bytes, {1}), -1.0f);
    EXPECT_EQ(written(), "# File exported by Clayvo plugin\n#Vertex count 2\n#Face count 0\n"
                         "v 0 0 0\nv 1 -0.25 100000\n");
}

// Through the typed exports, which share the module's face IDs: GetFaceIDsNeq empties
// them first; every failed export leaves them for a retry, a written one consumes them.
TEST_F(ObjExport, TypedExportsShareTheModuleFaceIdsAndKeepThemOnFailure) {
    Mesh base;
    base.faces = {{0, 1, 2, 3}, {0, 1, 2, -1}};
    const std::string basePath = dir.file("base.neq");
    writeBytesToFile(basePath, buildNeqFacesFirst(base));
    writeBytesToFile(in, buildNeqForObjExport(quads(7)));
    std::string outPath = out;
    std::string badOut = dir.file("no/such.obj");

    faceID = {7, 7, 7};
    EXPECT_EQ(GetFaceIDsNeq(dir.file("missing").c_str(), 1.0), -1760.0f);
    EXPECT_TRUE(faceID.empty()) << "emptied even when the file cannot be opened";
    EXPECT_EQ(writeOBJfromNeq(dir.file("missing").c_str(), outPath.data()), -18.0f)
        << "checked before the input is opened";
    faceID = {7, 7, 7};
    EXPECT_EQ(GetFaceIDsNeq(basePath.c_str(), 1.0), 2.0f) << "replaces, never appends";
    EXPECT_EQ(writeOBJfromNeq(dir.file("missing").c_str(), outPath.data()), -1760.0f);
    EXPECT_EQ(writeOBJfromNeq(in.c_str(), badOut.data()), -2.0f);
    std::string full = "/dev/full";
    EXPECT_EQ(writeOBJfromNeq(in.c_str(), full.data()), -2.0f) << "a write that fails";
    EXPECT_FALSE(test::fileExists(out));
    EXPECT_EQ(writeOBJfromNeq(basePath.c_str(), outPath.data()), 20001.0f);
    EXPECT_EQ(faceID, (Ids{4, 3}));
    EXPECT_EQ(writeOBJfromNeq(in.c_str(), outPath.data()), 0.0f);
    EXPECT_TRUE(faceID.empty());
    EXPECT_EQ(writeOBJfromNeq(in.c_str(), outPath.data()), -18.0f) << "consumed";
    writeBytesToFile(basePath, buildNeqFacesFirst(Mesh{}));
    faceID = {1};
    EXPECT_EQ(GetFaceIDsNeq(basePath.c_str(), 1.0), 0.0f);
    EXPECT_TRUE(faceID.empty());
}

} // namespace
} // namespace neq::meshfile
