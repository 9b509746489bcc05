#include "api/result_codes.h"
#include "meshfile/obj_export.h"

#include "meshfile/neq_file.h"
#include "meshfile/rgb_block.h"
#include "neqbridge/neqbridge.hpp"
#include "support/case_table.h"
#include "support/temp_dir.h"
#include "tooling/neq_writer.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace neq::meshfile {
namespace {

using Ids = std::vector<std::uint32_t>;

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

// Colours i = 0..count-1 with red i, green 0x10, blue 0xF0.
Mesh colouredMesh(int count) {
    Mesh mesh;
    for (int i = 0; i < count; ++i)
        mesh.colours.push_back({static_cast<std::uint8_t>(i), 0x10, 0xF0});
    return mesh;
}

// The RGB block around `lines`, its opening comment taken from the empty block's golden.
std::string rgbBlock(const std::string& lines) {
    const std::string empty = test::readTestData("meshfile/rgb_0.txt");
    return empty.substr(0, empty.find('\n') + 1) + lines + "# End of RGB block\n";
}

// The vertex block, the skipped block and a 4-byte gap: next comes the colour block's place.
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
    std::string colours(const NeqBytes& bytes) {
        writeBytesToFile(in, bytes);
        EXPECT_EQ(api::hostCode(exportColours(in.c_str(), out.c_str())), 0.0f);
        return written();
    }
    std::string written() const { return test::readFile(out); }

    test::TempDir dir;
    const std::string in = dir.file("subdivided.neq");
    std::string out = dir.file("out.obj");
    Ids idsAfter;
};

TEST_F(ObjExport, RgbLinesOfThirtyTwoAndTheEmptyLineRule) {
    const std::string colours33 = test::readTestData("meshfile/rgb_33.txt");
    std::string colours32 = colours33; // one full line, then the empty line
    colours32.replace(colours32.find("#RGB  2010f0\n"), 13, "\n");
    const std::pair<int, std::string> cases[] = {
        {0, test::readTestData("meshfile/rgb_0.txt")},
        {1, rgbBlock("#RGB  0010f0\n")},
        {3, rgbBlock("#RGB  0010f0 0110f0 0210f0\n")},
        {32, colours32},
        {33, colours33},
        {64, test::readTestData("meshfile/rgb_64.txt")},
    };
    for (const auto& [count, text] : cases)
        EXPECT_EQ(colours(buildNeqColoursFirst(colouredMesh(count))), text) << count;
}

// Records are blue, green, red, unused. The first block is read whatever its tag, its count
// clamped to the file (the 16 zero bytes and the loader's repeated byte make 4 more).
TEST_F(ObjExport, RgbRecordsFromTheFirstBlockClampedToTheFile) {
    const std::uint8_t record[] = {0x10, 0x20, 0xFF, 0x7E};
    NeqBuilder builder;
    builder.block(kColourTag, 1, record, sizeof record).terminator();
    EXPECT_EQ(colours(builder.bytes()), rgbBlock("#RGB  ff2010\n"));
    NeqBytes bytes = buildNeqColoursFirst(colouredMesh(2));
    bytes[kFirstBlockOffset] = 0x21; // tag 0x8821 is not the colour tag
    bytes[kFirstBlockCountOffset + 2] = 0x01;
    EXPECT_EQ(colours(bytes), rgbBlock("#RGB  0010f0 0110f0 000000 000000 000000 000000\n"));
    EXPECT_EQ(colours(NeqBytes(kFirstBlockCountOffset + 2, 0xFF)), rgbBlock("\n"));
}

TEST_F(ObjExport, WritesHeaderVerticesColoursAndFaceGroups) {
    EXPECT_EQ(run(buildNeqForObjExport(sampleMesh()), {1, 1}), 0.0f);
    EXPECT_EQ(written(), test::readTestData("meshfile/sample.obj"));
    EXPECT_TRUE(idsAfter.empty()) << "a written export consumes the face IDs";
}

TEST_F(ObjExport, GroupsFollowTheFaceIdsAndStopOnlyBetweenGroups) {
    for (const test::CaseRow& row : test::readCaseTable("meshfile/face_id_groups.txt")) {
        std::istringstream words(row[1]);
        EXPECT_EQ(run(buildNeqForObjExport(quads(std::stoi(row[0]))),
                      Ids(std::istream_iterator<std::uint32_t>(words), {})),
                  0.0f);
        const std::string text = written();
        EXPECT_EQ(text.substr(text.find("# End of RGB block\n") + 19), row[2]) << row[0];
    }
}

TEST_F(ObjExport, MisplacedBlocksReturnTheTagFoundAndKeepWhatWasWritten) {
    const Mesh mesh = sampleMesh();
    // The face block where the colour block should be: its length shows as the face count.
    NeqBuilder facesForColours = vertexAndSkippedBlock(mesh);
    facesForColours.block(kFaceTag, 2, encodeFaces(mesh).data(), kFaceRecordSize).terminator();
    EXPECT_EQ(run(facesForColours.bytes(), {1, 1}), 20001.0f);
    std::string expected = sampleUpTo("# The following RGB block");
    EXPECT_EQ(written(), expected.replace(expected.find("24"), 2, "48"));
    EXPECT_EQ(idsAfter, (Ids{1, 1}));

    NeqBuilder uvForFaces = vertexAndSkippedBlock(mesh);
    uvForFaces.block(kColourTag, 2, encodeColours(mesh).data(), kColourRecordSize);
    uvForFaces.block(kUvTag, 0, nullptr, 0).terminator();
    EXPECT_EQ(run(uvForFaces.bytes(), {1, 1}), 25001.0f);
    EXPECT_EQ(written(), sampleUpTo("#FaceID"));
    EXPECT_EQ(idsAfter, (Ids{1, 1}));

    std::remove(out.c_str()); // no vertex block at 32: nothing is created
    EXPECT_EQ(run(buildNeqFacesFirst(mesh), {1}), 20001.0f);
    EXPECT_FALSE(test::fileExists(out));
    EXPECT_EQ(run(NeqBytes{}, {1}), -1.0f) << "empty file";
    EXPECT_FALSE(test::fileExists(out));
}

TEST_F(ObjExport, FieldsPastTheEndOfATruncatedFile) {
    // The colour tag ends the file: face count past the end (0), no colours, no faces (-1).
    NeqBuilder builder = vertexAndSkippedBlock(Mesh{});
    const std::uint8_t colourTag[4] = {0xB9, 0x88, 0, 0};
    builder.raw(colourTag, sizeof colourTag);
    EXPECT_EQ(run(builder.bytes(), {1}), -1.0f);
    const std::string header = "# File exported by Clayvo plugin\n#Vertex count ";
    EXPECT_EQ(written(), header + "0\n#Face count 0\n" + rgbBlock("\n"));

    // A vertex count far past the end is cut to the records that fit, in its line too.
    NeqBytes bytes = buildNeqForObjExport(sampleMesh());
    bytes.resize(kFirstBlockRecordsOffset + 2 * kVertexRecordSize + 5);
    bytes[kFirstBlockCountOffset + 3] = 0x40;
    EXPECT_EQ(run(bytes, {1}), -1.0f);
    EXPECT_EQ(written(), header + "2\n#Face count 0\nv 0 0 0\nv 1 -0.25 100000\n");
}

// The typed exports share the module's face IDs: GetFaceIDsNeq empties them first; a
// failed export leaves them for a retry, a written one consumes them.
TEST_F(ObjExport, TypedExportsShareTheModuleFaceIdsAndKeepThemOnFailure) {
    Mesh base;
    base.faces = {{0, 1, 2, 3}, {0, 1, 2, -1}};
    const std::string basePath = dir.file("base.neq"), missing = dir.file("missing");
    writeBytesToFile(basePath, buildNeqFacesFirst(base));
    writeBytesToFile(in, buildNeqForObjExport(quads(7)));
    std::string badOut = dir.file("no/such.obj");

    faceID = {7, 7, 7};
    EXPECT_EQ(GetFaceIDsNeq(missing.c_str(), 1.0), -1760.0f);
    EXPECT_TRUE(faceID.empty()) << "emptied even when the file cannot be opened";
    EXPECT_EQ(writeOBJfromNeq(missing.c_str(), out.data()), -18.0f) << "no IDs: checked first";
    faceID = {7, 7, 7};
    EXPECT_EQ(GetFaceIDsNeq(basePath.c_str(), 1.0), 2.0f) << "replaces, never appends";
    EXPECT_EQ(writeOBJfromNeq(missing.c_str(), out.data()), -1760.0f);
    EXPECT_EQ(writeOBJfromNeq(in.c_str(), badOut.data()), -2.0f);
    std::string full = "/dev/full";
    EXPECT_EQ(writeOBJfromNeq(in.c_str(), full.data()), -2.0f) << "a write that fails";
    EXPECT_FALSE(test::fileExists(out));
    EXPECT_EQ(writeOBJfromNeq(basePath.c_str(), out.data()), 20001.0f);
    EXPECT_EQ(faceID, (Ids{4, 3}));
    EXPECT_EQ(writeOBJfromNeq(in.c_str(), out.data()), 0.0f);
    EXPECT_TRUE(faceID.empty());
    EXPECT_EQ(writeOBJfromNeq(in.c_str(), out.data()), -18.0f) << "consumed";
    writeBytesToFile(basePath, buildNeqFacesFirst(Mesh{}));
    faceID = {1};
    EXPECT_EQ(GetFaceIDsNeq(basePath.c_str(), 1.0), 0.0f);
    EXPECT_TRUE(faceID.empty());

    writeBytesToFile(in, buildNeqColoursFirst(colouredMesh(1)));
    EXPECT_EQ(ReadVertColorNeq(in.c_str(), badOut.data()), -2.0f);
    EXPECT_EQ(ReadVertColorNeq(in.c_str(), out.data()), 0.0f);
    EXPECT_EQ(written(), rgbBlock("#RGB  0010f0\n"));
}

} // namespace
} // namespace neq::meshfile
