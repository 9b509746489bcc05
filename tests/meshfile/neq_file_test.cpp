#include "meshfile/neq_file.h"
#include "neqbridge/neqbridge.hpp"
#include "support/temp_dir.h"
#include "tooling/neq_writer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace neq::meshfile {
namespace {

char b(int value) {
    return static_cast<char>(value);
}

TEST(NeqFieldReaders, AssembleLittleEndianFromUnsignedBytes) {
    EXPECT_EQ(readShort(b(0xFF), b(0xFF)), -1);
    EXPECT_EQ(readShort(b(0x00), b(0x80)), -32768);
    EXPECT_EQ(readUnInt(b(0xFF), b(0xFF), b(0xFF), b(0xFF)), 4294967295u);
    EXPECT_EQ(readSignInt(b(0xFF), b(0xFF), b(0xFF), b(0xFF)), -1);
    // A high low byte must not spill sign bits into the bytes above it.
    EXPECT_EQ(readUnInt(b(0x80), b(0x00), b(0x00), b(0x00)), 0x80u);
    EXPECT_EQ(readSignInt(b(0x21), b(0x4E), b(0x00), b(0x00)), 20001);
    EXPECT_EQ(readaFloat(b(0x00), b(0x00), b(0x80), b(0xBE)), -0.25f);
    EXPECT_EQ(readanInt(b(0xFF)), 255);
}

NeqBytes loaded(const std::string& path) {
    NeqBytes bytes{1, 2, 3};
    EXPECT_TRUE(loadNeqFile(path.c_str(), bytes));
    return bytes;
}

TEST(NeqLoader, RepeatsTheLastByteAndRefusesWhatItCannotRead) {
    test::TempDir dir;
    test::writeFile(dir.file("abc"), "abc");
    EXPECT_EQ(loaded(dir.file("abc")), (NeqBytes{'a', 'b', 'c', 'c'}));
    test::writeFile(dir.file("empty"), "");
    EXPECT_EQ(loaded(dir.file("empty")), (NeqBytes{0}));

    NeqBytes bytes{1};
    EXPECT_FALSE(loadNeqFile(dir.path().c_str(), bytes)); // a directory
    EXPECT_TRUE(bytes.empty());
    EXPECT_FALSE(loadNeqFile(dir.file("missing").c_str(), bytes));
    EXPECT_FALSE(loadNeqFile(nullptr, bytes));
}

// Block header bytes: tag, length, count, unused.
NeqBytes header(std::uint32_t tag, std::uint32_t length, std::uint32_t count = 0) {
    NeqBytes out;
    for (std::uint32_t word : {tag, length, count, 0u})
        for (int shift = 0; shift < 32; shift += 8)
            out.push_back(static_cast<std::uint8_t>(word >> shift));
    return out;
}

NeqBytes fileOf(std::initializer_list<NeqBytes> blocks) {
    NeqBuilder builder;
    for (const NeqBytes& block : blocks)
        builder.raw(block.data(), block.size());
    return builder.take();
}

TEST(NeqBlockWalk, SkipsByLengthAndEndsAtTheBufferEnd) {
    const NeqBytes zeroLength = fileOf({header(15001, 0), header(kUvTag, 16)});
    EXPECT_EQ(findBlock(NeqView(zeroLength), kUvTag), 48u) << "length 0 skips 16 bytes";

    const NeqBytes chain =
        fileOf({header(kVertexTag, 40), NeqBytes(24, 7), header(kGroupTag, 16), header(0, 0)});
    EXPECT_EQ(findBlock(NeqView(chain), kVertexTag), 32u);
    EXPECT_EQ(findBlock(NeqView(chain), kGroupTag), 72u);
    EXPECT_EQ(findBlock(NeqView(chain), kUvTag), std::nullopt) << "ends in the zero blocks";

    const std::uint32_t hostileLengths[] = {std::numeric_limits<std::uint32_t>::max(), 0x80000000u,
                                            1000, 17};
    for (std::uint32_t length : hostileLengths) {
        const NeqBytes hostile = fileOf({header(kVertexTag, length), header(kUvTag, 16)});
        EXPECT_EQ(findBlock(NeqView(hostile), kUvTag), std::nullopt) << length;
    }
    const NeqBytes headerOnly(kFileHeaderSize, 0);
    EXPECT_EQ(findBlock(NeqView(headerOnly), 0), std::nullopt);
    // A tag cut by the end of the buffer is never the wanted one.
    const NeqBytes cutTag = fileOf({header(15001, 16), NeqBytes{0xB9, 0x88}});
    EXPECT_EQ(findBlock(NeqView(cutTag), kColourTag), std::nullopt);
}

} // namespace
} // namespace neq::meshfile
