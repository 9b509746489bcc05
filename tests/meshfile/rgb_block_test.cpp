#include "api/mesh_exports.h"
#include "meshfile/neq_format.h"
#include "meshfile/neq_writer.h"
#include "meshfile/rgb_block.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::meshfile {
namespace {

const std::string kOpening =
    "# The following RGB block contains Clayvo Vertex Color (Polytint) output as 3 hexadecimal "
    "values per vertex. The vertex color format is RRGGBB with up to 32 entries per RGB line.\n";
const std::string kClosing = "# End of RGB block\n";
// Colours i = 0..31 with red i, green 0x10, blue 0xF0.
const std::string kFullLine = "#RGB "
                              " 0010f0 0110f0 0210f0 0310f0 0410f0 0510f0 0610f0 0710f0"
                              " 0810f0 0910f0 0a10f0 0b10f0 0c10f0 0d10f0 0e10f0 0f10f0"
                              " 1010f0 1110f0 1210f0 1310f0 1410f0 1510f0 1610f0 1710f0"
                              " 1810f0 1910f0 1a10f0 1b10f0 1c10f0 1d10f0 1e10f0 1f10f0\n";

Mesh colouredMesh(int count) {
    Mesh mesh;
    for (int i = 0; i < count; ++i)
        mesh.colours.push_back({static_cast<std::uint8_t>(i), 0x10, 0xF0});
    return mesh;
}

class RgbBlock : public ::testing::Test {
  protected:
    // Runs the colour export on `bytes` and returns what it wrote.
    std::string exported(const NeqBytes& bytes, float expectedResult = 0.0f) {
        writeBytesToFile(in, bytes);
        EXPECT_EQ(exportColours(in.c_str(), out.c_str()).hostResult(), expectedResult);
        return test::readFile(out);
    }

    test::TempDir dir;
    const std::string in = dir.file("colours.neq");
    const std::string out = dir.file("colours.txt");
};

TEST_F(RgbBlock, LinesOfThirtyTwoAndTheEmptyLineRule) {
    const struct {
        int count;
        std::string body;
    } cases[] = {
        {0, "\n"},
        {1, "#RGB  0010f0\n"},
        {3, "#RGB  0010f0 0110f0 0210f0\n"},
        {32, kFullLine + "\n"},
        {33, kFullLine + "#RGB  2010f0\n"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(exported(buildNeqColoursFirst(colouredMesh(c.count))),
                  kOpening + c.body + kClosing)
            << c.count;
    const std::string text = exported(buildNeqColoursFirst(colouredMesh(64)));
    EXPECT_EQ(text.substr(0, kOpening.size() + kFullLine.size()), kOpening + kFullLine);
    EXPECT_EQ(text.substr(text.size() - 9 - kClosing.size()), " 3f10f0\n\n" + kClosing);
}

TEST_F(RgbBlock, RecordBytesAreBlueGreenRedAndAnIgnoredByte) {
    const std::uint8_t record[] = {0x10, 0x20, 0xFF, 0x7E};
    NeqBuilder builder;
    builder.block(kColourTag, 1, record, sizeof record).terminator();
    EXPECT_EQ(exported(builder.bytes()), kOpening + "#RGB  ff2010\n" + kClosing);
}

TEST_F(RgbBlock, FirstBlockIsReadWhateverItsTagAndItsCountIsClampedToTheFile) {
    NeqBytes bytes = buildNeqColoursFirst(colouredMesh(2));
    bytes[kFirstBlockOffset] = 0x21; // tag 0x8821 is not the colour tag
    bytes[kFirstBlockCountOffset + 2] = 0x01;
    // Two records, then the 16 zero bytes and the loader's repeated last byte: 4 more.
    EXPECT_EQ(exported(bytes),
              kOpening + "#RGB  0010f0 0110f0 000000 000000 000000 000000\n" + kClosing);
    EXPECT_EQ(exported(NeqBytes(kFirstBlockCountOffset + 2, 0xFF)), kOpening + "\n" + kClosing);
}

TEST_F(RgbBlock, ResultCodes) {
    EXPECT_EQ(exportColours(in.c_str(), out.c_str()).hostResult(), -1760.0f);
    EXPECT_FALSE(test::fileExists(out)) << "the input is tried first";
    writeBytesToFile(in, buildNeqColoursFirst(colouredMesh(1)));
    EXPECT_EQ(exportColours(in.c_str(), dir.file("no/such.txt").c_str()).hostResult(), -2.0f);
    EXPECT_EQ(exportColours(dir.path().c_str(), out.c_str()).hostResult(), -1760.0f);
}

TEST_F(RgbBlock, TypedExport) {
    writeBytesToFile(in, buildNeqColoursFirst(colouredMesh(1)));
    std::string outPath = out;
    EXPECT_EQ(ReadVertColorNeq(in.c_str(), outPath.data()), 0.0f);
    EXPECT_EQ(test::readFile(out), kOpening + "#RGB  0010f0\n" + kClosing);
    std::string badOut = dir.file("no/such.txt");
    EXPECT_EQ(ReadVertColorNeq(in.c_str(), badOut.data()), -2.0f);
    EXPECT_EQ(ReadVertColorNeq(dir.file("missing").c_str(), outPath.data()), -1760.0f);
}

} // namespace
} // namespace neq::meshfile
