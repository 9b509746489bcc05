#include "meshfile/neq_file.h"
#include "meshfile/rgb_block.h"
#include "neqbridge/neqbridge.hpp"
#include "support/temp_dir.h"
#include "tooling/neq_writer.h"

#include <gtest/gtest.h>

#include <string>

namespace neq::meshfile {
namespace {

// Colours i = 0..count-1 with red i, green 0x10, blue 0xF0.
Mesh colouredMesh(int count) {
    Mesh mesh;
    for (int i = 0; i < count; ++i)
        mesh.colours.push_back({static_cast<std::uint8_t>(i), 0x10, 0xF0});
    return mesh;
}

class RgbBlock : public ::testing::Test {
  protected:
    // Runs the colour export on `bytes` and returns what it wrote.
    std::string exported(const NeqBytes& bytes) {
        writeBytesToFile(in, bytes);
        EXPECT_EQ(exportColours(in.c_str(), out.c_str()).status, ExportStatus::Written);
        return test::readFile(out);
    }
    // The block around `lines`: the opening comment of the empty block's golden, then
    // `lines`, then the closing comment.
    static std::string block(const std::string& lines) {
        const std::string empty = test::readTestData("meshfile/rgb_0.txt");
        return empty.substr(0, empty.find('\n') + 1) + lines + "# End of RGB block\n";
    }

    test::TempDir dir;
    const std::string in = dir.file("colours.neq");
    std::string out = dir.file("colours.txt");
};

TEST_F(RgbBlock, LinesOfThirtyTwoAndTheEmptyLineRule) {
    const std::string colours33 = test::readTestData("meshfile/rgb_33.txt");
    std::string colours32 = colours33; // one full line, then the empty line
    colours32.replace(colours32.find("#RGB  2010f0\n"), 13, "\n");
    const struct {
        int count;
        std::string text;
    } cases[] = {
        {0, test::readTestData("meshfile/rgb_0.txt")},
        {1, block("#RGB  0010f0\n")},
        {3, block("#RGB  0010f0 0110f0 0210f0\n")},
        {32, colours32},
        {33, colours33},
        {64, test::readTestData("meshfile/rgb_64.txt")},
    };
    for (const auto& c : cases)
        EXPECT_EQ(exported(buildNeqColoursFirst(colouredMesh(c.count))), c.text) << c.count;
}

TEST_F(RgbBlock, RecordBytesAreBlueGreenRedAndAnIgnoredByte) {
    const std::uint8_t record[] = {0x10, 0x20, 0xFF, 0x7E};
    NeqBuilder builder;
    builder.block(kColourTag, 1, record, sizeof record).terminator();
    EXPECT_EQ(exported(builder.bytes()), block("#RGB  ff2010\n"));
}

TEST_F(RgbBlock, FirstBlockIsReadWhateverItsTagAndItsCountIsClampedToTheFile) {
    NeqBytes bytes = buildNeqColoursFirst(colouredMesh(2));
    bytes[kFirstBlockOffset] = 0x21; // tag 0x8821 is not the colour tag
    bytes[kFirstBlockCountOffset + 2] = 0x01;
    // Two records, then the 16 zero bytes and the loader's repeated last byte: 4 more.
    EXPECT_EQ(exported(bytes), block("#RGB  0010f0 0110f0 000000 000000 000000 000000\n"));
    EXPECT_EQ(exported(NeqBytes(kFirstBlockCountOffset + 2, 0xFF)), block("\n"));
}

TEST_F(RgbBlock, TypedExportResultCodes) {
    EXPECT_EQ(ReadVertColorNeq(in.c_str(), out.data()), -1760.0f);
    EXPECT_FALSE(test::fileExists(out)) << "the input is tried first";
    writeBytesToFile(in, buildNeqColoursFirst(colouredMesh(1)));
    std::string badOut = dir.file("no/such.txt");
    EXPECT_EQ(ReadVertColorNeq(in.c_str(), badOut.data()), -2.0f);
    EXPECT_EQ(ReadVertColorNeq(in.c_str(), out.data()), 0.0f);
    EXPECT_EQ(test::readFile(out), block("#RGB  0010f0\n"));
}

} // namespace
} // namespace neq::meshfile
