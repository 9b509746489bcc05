#include "foundation/text_writer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace neq {
namespace {

// Records every piece it is handed. (A failing sink is met through /dev/full by the
// exports' and the tool's tests.)
class RecordingSink final : public TextSink {
  public:
    bool write(const char* data, std::size_t size) override {
        pieces.push_back(size);
        text.append(data, size);
        return true;
    }
    std::string text;
    std::vector<std::size_t> pieces;
};

// Pieces of every size around a small buffer, so that it fills and flushes, against the
// string they should make.
TEST(TextWriter, PiecesOfAnySizeArriveInOrderAndWholeRunsBypassTheBuffer) {
    RecordingSink sink;
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

} // namespace
} // namespace neq
