#include "foundation/text_writer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace neq {
namespace {

// Takes `room` bytes, then refuses; records every piece it was handed.
class LimitedSink final : public TextSink {
  public:
    explicit LimitedSink(std::size_t room) : room_(room) {}
    bool write(const char* data, std::size_t size) override {
        pieces.push_back(size);
        if (size > room_) return false;
        text.append(data, size), room_ -= size;
        return true;
    }
    std::string text;
    std::vector<std::size_t> pieces;

  private:
    std::size_t room_;
};

// Pieces of every size around a 16-byte buffer, against the string they should make.
TEST(TextWriter, PiecesOfAnySizeArriveInOrderAndWholeRunsBypassTheBuffer) {
    LimitedSink sink(SIZE_MAX);
    TextWriter out(sink, 16);
    std::string expected;
    for (std::size_t size : {0, 1, 7, 15, 8, 16, 3, 40, 5}) {
        const std::string piece(size, static_cast<char>('a' + size % 26));
        out.append(piece), expected += piece;
        const long long number = -static_cast<long long>(size);
        out.number(number), expected += std::to_string(number);
        out.put('\n'), expected += '\n';
    }
    char* p = out.reserve(16);
    *p++ = 'z';
    out.commit(p), expected += 'z';
    EXPECT_TRUE(out.flush());
    EXPECT_EQ(sink.text, expected);
    for (std::size_t piece : sink.pieces)
        EXPECT_TRUE(piece <= 16 || piece == 40) << piece;
}

TEST(TextWriter, AFailedSinkIsToldNothingMore) {
    LimitedSink sink(4);
    TextWriter out(sink, 4);
    out.append("abc");
    out.append("defg");
    out.append("h");
    EXPECT_FALSE(out.flush());
    EXPECT_EQ(sink.text, "abc");
    EXPECT_EQ(sink.pieces, (std::vector<std::size_t>{3, 4}));
}

} // namespace
} // namespace neq
