#include "foundation/vd_binary_file.h"

#include "support/case_table.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace neq::test {
namespace {

// The in-memory image of a value, as the file holds it.
template <class T> std::string image(const T& value) {
    return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}
std::string count(int n) {
    return image(n);
}

// What `write` puts in a fresh file.
std::string written(const std::function<bool(VDBinaryFile&)>& write) {
    TempDir dir;
    VDBinaryFile file(VDString(dir.file("f").c_str()), "wb");
    EXPECT_TRUE(write(file));
    file.close();
    return readFile(dir.file("f"));
}

VDBoolArray bitsOf(int n, std::initializer_list<int> set) {
    VDBoolArray bits(n, false);
    for (int i : set)
        bits.set(i);
    return bits;
}

// Layouts without data or without pad, then pad bytes after n data bytes; the layouts with
// data are in the golden file of RoundTripAndFilesTruncatedAtEveryByte.
TEST(BinaryFile, EmptyAndUnpaddedLayouts) {
    const std::string bytes = written([](VDBinaryFile& f) {
        return f.write(VDArray<int>()) && f.write(VDArray<unsigned char>{9, 8, 7, 6}) &&
               f.write(VDString("abcd")) && f.write(VDString()) && f.write(VDString("")) &&
               f.write(VDBoolArray()) && f.writeAsciiString(VDString("ab c")) &&
               f.writeAsciiString(VDString()) && f.writeAlignData(0) && f.writeAlignData(1) &&
               f.writeAlignData(6) && f.writeAlignData(8);
    });
    if (image(1)[0] == '\1') {
        EXPECT_EQ(bytes, readTestData("foundation/binary_empty_layouts.bin"));
    }
}

// One value of every layout; empty until filled.
struct Sample {
    int i = 0;
    float f = 0;
    VDArray<int> ints;
    VDArray<unsigned int> uints;
    VDArray<VDVector2f> uvs;
    VDArray<VDVector3f> points;
    VDArray<unsigned short> shorts;
    VDArray<unsigned char> bytes;
    VDString text;
    VDBoolArray bits;

    static Sample filled() {
        return {0x01020304,
                -0.5f,
                {3, -4, 5},
                {0xFFFFFFFFu},
                {{0.25f, 0.75f}, {-1.0f, 2.0f}},
                {{1.0f, -1.0f, 0.5f}},
                {1, 65535, 3},
                {7, 0, 9, 250, 1},
                VDString("hello"),
                bitsOf(13, {0, 5, 12})};
    }

    bool operator==(const Sample& o) const {
        return i == o.i && f == o.f && ints == o.ints && uints == o.uints && uvs == o.uvs &&
               points == o.points && shorts == o.shorts && bytes == o.bytes && text == o.text &&
               bits == o.bits;
    }
};

// Every layout written as the golden file holds it (little-endian) and read back, then cut
// at every byte: reads succeed up to the first cut layout, which fails (and stops the
// reads), its target empty when its data is cut, complete when only its pad is.
TEST(BinaryFile, RoundTripAndFilesTruncatedAtEveryByte) {
    TempDir dir;
    const Sample in = Sample::filled();
    {
        VDBinaryFile out(VDString(dir.file("f").c_str()), "wb");
        ASSERT_TRUE(out.write(in.i) && out.write(in.f) && out.write(in.ints) &&
                    out.write(in.uints) && out.write(in.uvs) && out.write(in.points) &&
                    out.write(in.shorts) && out.write(in.bytes) && out.write(in.text) &&
                    out.write(in.bits));
    }
    // Bytes of each layout up to the end of its data (count included), then its pad.
    const int data[] = {4, 4, 16, 8, 20, 16, 10, 9, 10, 17};
    const int pad[] = {0, 0, 0, 0, 0, 0, 2, 3, 2, 3};
    const std::string whole = readFile(dir.file("f"));
    ASSERT_EQ(whole.size(), 124u);
    if (image(1)[0] == '\1') {
        EXPECT_EQ(whole, readTestData("foundation/binary_layouts.bin"));
    }
    for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
        writeFile(dir.file("cut"), whole.substr(0, cut));
        VDBinaryFile file(VDString(dir.file("cut").c_str()), "rb");
        Sample got;
        const std::function<bool()> reads[] = {
            [&] { return file.read(got.i); },      [&] { return file.read(got.f); },
            [&] { return file.read(got.ints); },   [&] { return file.read(got.uints); },
            [&] { return file.read(got.uvs); },    [&] { return file.read(got.points); },
            [&] { return file.read(got.shorts); }, [&] { return file.read(got.bytes); },
            [&] { return file.read(got.text); },   [&] { return file.read(got.bits); }};
        const std::function<bool()> filled[] = {
            [&] { return got.i == 0x01020304; }, [&] { return got.f == -0.5f; },
            [&] { return !got.ints.empty(); },   [&] { return !got.uints.empty(); },
            [&] { return !got.uvs.empty(); },    [&] { return !got.points.empty(); },
            [&] { return !got.shorts.empty(); }, [&] { return !got.bytes.empty(); },
            [&] { return !got.text.isEmpty(); }, [&] { return got.bits.getSize() > 0; }};
        std::size_t start = 0;
        for (int k = 0; k < 10; ++k) {
            const bool complete = cut >= start + data[k] + pad[k];
            EXPECT_EQ(reads[k](), complete) << "cut " << cut << " layout " << k;
            EXPECT_EQ(filled[k](), cut >= start + data[k]) << "cut " << cut << " layout " << k;
            if (!complete) break;
            start += data[k] + pad[k];
        }
        if (cut == whole.size()) {
            EXPECT_TRUE(got == in);
            int more = 0;
            EXPECT_FALSE(file.read(more)) << "at the end of the file";
        }
    }
}

TEST(BinaryFile, StringsEndAtTheirFirstZeroByte) {
    TempDir dir;
    writeFile(dir.file("f"), count(4) + std::string("a\0bc", 4) + count(0));
    VDBinaryFile file(VDString(dir.file("f").c_str()), "rb");
    VDString text("x");
    EXPECT_TRUE(file.read(text));
    EXPECT_EQ(text, VDString("a"));
    // A zero count is an empty string with no data and no pad.
    EXPECT_TRUE(file.read(text));
    EXPECT_TRUE(text.isEmpty());
}

// Reads one value from a file holding bytes (arrays start with no storage, so that any
// allocation shows).
template <class T> bool readFrom(const std::string& bytes, T& target) {
    TempDir dir;
    writeFile(dir.file("f"), bytes);
    VDBinaryFile file(VDString(dir.file("f").c_str()), "rb");
    return file.read(target);
}

TEST(BinaryFile, CountsBeyondTheFileAreRefusedBeforeAnyAllocation) {
    for (const CaseRow& row : readCaseTable("foundation/vd_binary_file_cases.txt")) {
        const std::string bytes = count(std::stoi(row[1])) + row[2];
        VDArray<VDVector3f> points;
        VDArray<unsigned short> shorts;
        VDString text("kept?");
        VDBoolArray bits = bitsOf(3, {1});
        bool read = false;
        std::size_t size = 0, capacity = 0;
        if (row[0] == "points") {
            read = readFrom(bytes, points), size = points.size(), capacity = points.capacity();
        } else if (row[0] == "shorts") {
            read = readFrom(bytes, shorts), size = shorts.size(), capacity = shorts.capacity();
        } else if (row[0] == "text") {
            read = readFrom(bytes, text), size = text.length();
        } else {
            read = readFrom(bytes, bits), size = bits.getSize();
        }
        EXPECT_EQ(std::to_string(read) + " " + std::to_string(size), row[3]) << row[0] << row[1];
        EXPECT_TRUE(read || capacity == 0) << row[0] << " " << row[1];
    }
}

TEST(BinaryFile, NothingHappensWithoutAnOpenFile) {
    VDBinaryFile file;
    EXPECT_FALSE(file.isOpen());
    int i = 5;
    float f = 2.0f;
    VDArray<int> ints{1, 2};
    VDString text("t");
    VDBoolArray bits = bitsOf(4, {3});
    EXPECT_FALSE(file.read(i) || file.read(f) || file.read(ints) || file.read(text) ||
                 file.read(bits) || file.write(1) || file.write(1.0f) || file.write(ints) ||
                 file.write(text) || file.write(bits) || file.writeAsciiString(text) ||
                 file.readAlignData(1) || file.writeAlignData(1));
    EXPECT_TRUE(i == 5 && f == 2.0f && ints.size() == 2u && text == VDString("t") &&
                bits.getSize() == 4);

    TempDir dir;
    EXPECT_FALSE(file.open(VDString(dir.file("missing").c_str()), "rb"));
    writeFile(dir.file("a"), image(11));
    writeFile(dir.file("b"), image(22));
    EXPECT_TRUE(file.open(VDString(dir.file("a").c_str()), "rb"));
    EXPECT_TRUE(file.open(VDString(dir.file("b").c_str()), "rb"));
    EXPECT_TRUE(file.read(i));
    EXPECT_EQ(i, 22);
    file.close();
    EXPECT_FALSE(file.read(i));
    file.close();
}

} // namespace
} // namespace neq::test
