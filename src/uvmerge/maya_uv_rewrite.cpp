// The Maya ASCII UV rewrite: the line scan (what each line is, what it holds, what is
// kept), the weld, and the statements of the new text.

#include "uvmerge/maya_uv_rewrite.h"

#include "foundation/vd_string.h"
#include "platform/system_hints.h"
#include "uvmerge/maya_number_scan.h"
#include "uvmerge/vd_uv_merge_algo.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace neq::uvmerge {
namespace {

// The entries that data lines left at zero. A range's data line that runs out before
// its range does reads every missing entry as 0. Writing those zeros at once would let
// a file of many short lines over one large range cost (lines x range) time, so each
// line's range is logged and the zeros are applied once, after the last line, in time
// proportional to the range plus the lines.
class ShortRangeLog {
  public:
    void clear() {
        lines_.clear();
        anyShort_ = false;
    }

    // One data line: it read the entries [first, read) and left [read, last] at zero.
    void add(int first, int read, int last) {
        lines_.push_back({first, read, last});
        anyShort_ = anyShort_ || read <= last;
    }

    // Calls zero(i) for every entry i < count whose last data line left it at zero.
    template <class Zero> void applyZeros(std::size_t count, Zero zero) const {
        if (!anyShort_) return;
        // From the last line back, each entry is decided by the first line met; `next`
        // jumps over entries already decided (with path halving), so every entry is
        // visited once.
        std::vector<std::uint32_t> next(count + 1);
        for (std::size_t i = 0; i <= count; ++i)
            next[i] = static_cast<std::uint32_t>(i);
        const auto undecided = [&next](std::uint32_t i) {
            while (next[i] != i)
                i = next[i] = next[next[i]];
            return i;
        };
        for (auto line = lines_.rbegin(); line != lines_.rend(); ++line) {
            const auto last = static_cast<std::uint32_t>(line->last);
            for (std::uint32_t i = undecided(static_cast<std::uint32_t>(line->first)); i <= last;
                 i = undecided(i + 1)) {
                if (i >= static_cast<std::uint32_t>(line->read)) zero(i);
                next[i] = i + 1;
            }
        }
    }

  private:
    struct Line {
        int first, read, last; // 0 <= first <= read <= last + 1 <= count
    };
    std::vector<Line> lines_;
    bool anyShort_ = false;
};

// Header lines, recognised at a line's first non-blank character ignoring case.
constexpr char s_declareTranslate[] = "setAttr \".t\"";
constexpr char s_declareRotate[] = "setAttr \".r\"";
constexpr char s_declareScale[] = "setAttr \".s\"";
constexpr char s_declareUVCountLineStart[] =
    "setAttr \".uvst[0].uvsn\" -type \"string\" \"map1\";setAttr -s";
constexpr char s_declareUVRange[] = "setAttr \".uvst[0].uvsp[";
// The face count line starts the same way; the postfix after the count tells them apart.
constexpr char s_declareEdgeCountPrefix[] = "setAttr -s";
constexpr char s_declareEdgeCountPostfix[] = "\".ed\"";
constexpr char s_declareEdgeRange[] = "setAttr \".ed[";
constexpr char s_declareFaceCountPostfix[] = "\".fc\"";
constexpr char s_declareFaceRange[] = "setAttr \".fc[";
// At a line's very first byte: the scene ends after this line.
constexpr char kEndOfScene[] = "// End of ";

// True, moving past it, when the cursor's text starts with `text`, ignoring case.
template <std::size_t N> bool consume(LineCursor& cursor, const char (&text)[N]) {
    constexpr std::size_t kLength = N - 1;
    if (cursor.remaining() < kLength ||
        VDString::cmpNoCase(cursor.pos, text, static_cast<int>(kLength)) != 0)
        return false;
    cursor.pos += kLength;
    return true;
}

// Where each line ends. The next "\n" and the next "\r" are each searched once and
// remembered until passed, so a file with only one kind of terminator costs one pass.
class LineEnds {
  public:
    explicit LineEnds(std::string_view text) : text_(text) {}
    std::size_t lineEnd(std::size_t from) {
        return std::min(next('\n', nextLf_, from), next('\r', nextCr_, from));
    }

  private:
    std::size_t next(char terminator, std::size_t& cached, std::size_t from) {
        if (cached < from || cached == kUnknown) {
            const void* found = std::memchr(text_.data() + from, terminator, text_.size() - from);
            cached = found
                         ? static_cast<std::size_t>(static_cast<const char*>(found) - text_.data())
                         : text_.size();
        }
        return cached;
    }
    static constexpr std::size_t kUnknown = static_cast<std::size_t>(-1);
    std::string_view text_;
    std::size_t nextLf_ = kUnknown, nextCr_ = kUnknown;
};

class SceneScanner {
  public:
    explicit SceneScanner(std::string_view input) : input_(input) {}

    // Scans every line; false with the reason in refusal() when the scene is refused.
    bool scan();
    // Applies the zeros of short data lines and welds. False when there is nothing to weld.
    bool weld(MayaUvRewrite& result);
    SceneData& scene() { return scene_; }
    const std::string& refusal() const { return refusal_; }

  private:
    bool scanLine(std::size_t begin, std::size_t end, std::size_t next);
    bool readHeader(LineCursor& cursor);
    bool readData(LineCursor& cursor);
    bool readUvs(LineCursor& cursor);
    bool readEdges(LineCursor& cursor);
    bool readFaces(LineCursor& cursor);
    bool readFace(LineCursor& cursor, long long face);
    bool checkCount(int& count, const char* what, bool& seen, std::size_t leastBytes,
                    bool sizesArrays);
    void readRange(LineCursor& cursor);
    bool checkRange(const char* what, std::size_t count);
    void keep(std::size_t begin, std::size_t end);
    void mark(unsigned mode);
    bool refuse(const std::string& reason);

    std::string_view input_;
    SceneData scene_;
    ShortRangeLog shortUvLines_, shortEdgeLines_;
    std::string refusal_;
    int lineNumber_ = 0; // as an editor counts lines: a CR LF pair ends one line
    unsigned mode_ = kNoMode;
    long long rangeFirst_ = 0, rangeLast_ = -1; // data is expected while first <= last
    bool rangeLinesKept_ = false;
    bool uvCountSeen_ = false, edgeCountSeen_ = false, faceCountSeen_ = false;
    std::size_t lineBegin_ = 0, lineNext_ = 0; // the line being scanned, with its terminator
    // Bytes of the file not yet spoken for by the UV and edge counts: each entry they
    // declare needs at least its own few bytes of text, and the arrays are sized by
    // the counts, so together they can only be as large as the file allows.
    std::size_t unclaimedBytes_ = input_.size();
};

// The least text an entry takes: a UV "0 0 ", an edge "0 0 0 ". Faces are appended as
// they are read, not sized by their count, which only has to fit the file's bytes.
constexpr std::size_t kLeastUvBytes = 4;
constexpr std::size_t kLeastEdgeBytes = 6;
constexpr std::size_t kLeastFaceBytes = 1;

bool SceneScanner::scan() {
    std::size_t textEnd = input_.size();
    LineEnds lineEnds(input_);
    bool afterCr = false;
    for (std::size_t begin = 0; begin < textEnd;) {
        const std::size_t end = lineEnds.lineEnd(begin);
        const std::size_t next = end < input_.size() ? end + 1 : end;
        if (!(afterCr && end == begin && end < input_.size() && input_[end] == '\n')) ++lineNumber_;
        afterCr = end < input_.size() && input_[end] == '\r';
        LineCursor whole{input_.data() + begin, input_.data() + end};
        if (consume(whole, kEndOfScene)) textEnd = next;
        if (!scanLine(begin, end, next)) return false;
        begin = next;
    }
    return true;
}

bool SceneScanner::scanLine(std::size_t begin, std::size_t end, std::size_t next) {
    lineBegin_ = begin;
    lineNext_ = next;
    LineCursor cursor{input_.data() + begin, input_.data() + end};
    skipBlanks(cursor);
    if (rangeFirst_ <= rangeLast_) {
        // A blank line leaves the range open for the next line.
        if (!cursor.atEnd() && !readData(cursor)) return false;
        if (rangeLinesKept_) keep(begin, next);
        return true;
    }
    return readHeader(cursor);
}

bool SceneScanner::readHeader(LineCursor& cursor) {
    // Resetting the transform is deliberate: the lines go, with no mark.
    if (consume(cursor, s_declareTranslate) || consume(cursor, s_declareRotate) ||
        consume(cursor, s_declareScale)) {
        mode_ = kNoMode;
        return true;
    }
    if (consume(cursor, s_declareUVCountLineStart)) {
        int count = scanInt(cursor);
        if (!checkCount(count, "UV", uvCountSeen_, kLeastUvBytes, true)) return false;
        platform::reserveLarge(scene_.uvs, static_cast<std::size_t>(count));
        scene_.uvs.assign(static_cast<std::size_t>(count), VDVector2f());
        mark(kUvCountMode);
        return true;
    }
    if (consume(cursor, s_declareUVRange)) {
        readRange(cursor);
        if (!checkRange("UV", scene_.uvs.size())) return false;
        rangeLinesKept_ = false;
        mark(kUvDataMode);
        return true;
    }
    // Edges and faces count only in a mesh whose UVs were declared.
    if (scene_.uvs.empty()) {
        keep(lineBegin_, lineNext_);
        return true;
    }
    if (consume(cursor, s_declareEdgeCountPrefix)) {
        int count = scanInt(cursor);
        skipBlanks(cursor);
        if (consume(cursor, s_declareEdgeCountPostfix)) {
            if (!checkCount(count, "edge", edgeCountSeen_, kLeastEdgeBytes, true)) return false;
            platform::reserveLarge(scene_.edges, 2 * static_cast<std::size_t>(count));
            scene_.edges.assign(2 * static_cast<std::size_t>(count), 0);
            mode_ = kEdgeCountMode;
        } else if (consume(cursor, s_declareFaceCountPostfix)) {
            if (!checkCount(count, "face", faceCountSeen_, kLeastFaceBytes, false)) return false;
            scene_.faceEdges.clear();
            scene_.faceUVs.clear();
            // A face takes twenty-odd bytes of text, so the file's size caps what is
            // worth reserving, whatever the count says.
            const auto faces = std::min(static_cast<std::size_t>(count), input_.size() / 20);
            platform::reserveLarge(scene_.faceEdges, 4 * faces);
            platform::reserveLarge(scene_.faceUVs, 4 * faces);
            mark(kFaceCountMode);
            return true;
        }
    } else if (consume(cursor, s_declareEdgeRange)) {
        readRange(cursor);
        if (!checkRange("edge", scene_.edges.size() / 2)) return false;
        mode_ = kEdgeDataMode;
        rangeLinesKept_ = true;
    } else if (consume(cursor, s_declareFaceRange)) {
        // Faces are appended as they come; their range only says how many to read.
        readRange(cursor);
        rangeLinesKept_ = false;
        mark(kFaceDataMode);
        return true;
    }
    keep(lineBegin_, lineNext_);
    return true;
}

// Counts that size arrays claim their least text from the bytes not yet claimed.
bool SceneScanner::checkCount(int& count, const char* what, bool& seen, std::size_t leastBytes,
                              bool sizesArrays) {
    if (seen) return refuse(std::string("a second ") + what + " count line (one mesh per file)");
    seen = true;
    count = std::max(count, 0); // a negative count declares nothing
    const std::size_t available = sizesArrays ? unclaimedBytes_ : input_.size();
    if (static_cast<std::size_t>(count) > available / leastBytes)
        return refuse(std::string(what) + " count " + std::to_string(count) +
                      " is more than the file can hold (" + std::to_string(input_.size()) +
                      " bytes)");
    if (sizesArrays) unclaimedBytes_ -= static_cast<std::size_t>(count) * leastBytes;
    return true;
}

// "first:last": the character between the numbers is skipped whatever it is.
void SceneScanner::readRange(LineCursor& cursor) {
    rangeFirst_ = scanInt(cursor);
    if (!cursor.atEnd()) ++cursor.pos;
    rangeLast_ = scanInt(cursor);
}

bool SceneScanner::checkRange(const char* what, std::size_t count) {
    if (rangeFirst_ > rangeLast_ ||
        (rangeFirst_ >= 0 && static_cast<unsigned long long>(rangeLast_) < count))
        return true;
    return refuse(std::string(what) + " range " + std::to_string(rangeFirst_) + ":" +
                  std::to_string(rangeLast_) + " lies outside the " + what + " count " +
                  std::to_string(count));
}

// The whole remaining range is read from this one line; it is closed afterwards.
bool SceneScanner::readData(LineCursor& cursor) {
    bool ok = true;
    if (mode_ == kUvDataMode) ok = readUvs(cursor);
    if (mode_ == kEdgeDataMode) ok = readEdges(cursor);
    if (mode_ == kFaceDataMode) ok = readFaces(cursor);
    rangeFirst_ = rangeLast_ + 1;
    return ok;
}

bool SceneScanner::readUvs(LineCursor& cursor) {
    long long index = rangeFirst_;
    for (; index <= rangeLast_ && !restReadsAsZero(cursor); ++index) {
        const float u = scanReal(cursor);
        const float v = scanReal(cursor);
        scene_.uvs[static_cast<std::size_t>(index)] = {u, v};
    }
    shortUvLines_.add(static_cast<int>(rangeFirst_), static_cast<int>(index),
                      static_cast<int>(rangeLast_));
    return true;
}

// Two vertices per edge, then its third number (the edge's smoothing) is skipped.
bool SceneScanner::readEdges(LineCursor& cursor) {
    long long index = rangeFirst_;
    for (; index <= rangeLast_ && !restReadsAsZero(cursor); ++index) {
        const int from = scanInt(cursor);
        const int to = scanInt(cursor);
        skipNumber(cursor);
        // Vertex numbers size the weld's tables; a file cannot hold more vertices than
        // it has bytes.
        for (int vertex : {from, to})
            if (vertex > 0 && static_cast<std::size_t>(vertex) >= input_.size())
                return refuse("edge " + std::to_string(index) + " names vertex " +
                              std::to_string(vertex) + ", more vertices than the file has bytes");
        scene_.edges[2 * static_cast<std::size_t>(index)] = from;
        scene_.edges[2 * static_cast<std::size_t>(index) + 1] = to;
    }
    shortEdgeLines_.add(static_cast<int>(rangeFirst_), static_cast<int>(index),
                        static_cast<int>(rangeLast_));
    return true;
}

bool SceneScanner::readFaces(LineCursor& cursor) {
    // Every face read moves the cursor on, so a huge range costs no more than its line.
    for (long long face = rangeFirst_; face <= rangeLast_; ++face) {
        skipBlanks(cursor);
        if (cursor.atEnd()) break; // the rest are faces without corners
        if (!readFace(cursor, face)) return false;
    }
    return true;
}

// "f N e1 .. eN mu S M t1 .. tM": the "f", the "mu" and the UV set number S are skipped.
bool SceneScanner::readFace(LineCursor& cursor, long long face) {
    const auto refuseFace = [&](const std::string& reason) {
        return refuse("face " + std::to_string(face) + " " + reason);
    };
    ++cursor.pos;
    const int corners = scanInt(cursor);
    if (corners != 0 && corners != 3 && corners != 4)
        return refuseFace("has " + std::to_string(corners) + " corners (a face has 3 or 4)");
    const int edgeCount = scene_.sentinel();
    for (int i = 0; i < corners; ++i) {
        // k is edge k forwards, -(k + 1) edge k in reverse.
        const int edge = scanInt(cursor);
        if (edge >= edgeCount || edge < -edgeCount)
            return refuseFace("uses edge " + std::to_string(edge) + ", outside the edge count " +
                              std::to_string(edgeCount));
        scene_.faceEdges.push_back(edge);
    }
    if (corners == 3) scene_.faceEdges.push_back(edgeCount);

    skipBlanks(cursor);
    const bool hasMu = cursor.remaining() >= 2 && cursor.pos[0] == 'm' && cursor.pos[1] == 'u';
    cursor.pos += std::min<std::size_t>(2, cursor.remaining());
    skipNumber(cursor);
    const int uvCount = scanInt(cursor);
    if (corners != 0 && !hasMu) return refuseFace("has no \"mu\" part");
    if (uvCount != corners)
        return refuseFace("has " + std::to_string(corners) + " corners but " +
                          std::to_string(uvCount) + " UVs");
    for (int i = 0; i < uvCount; ++i) {
        const int uv = scanInt(cursor);
        if (uv >= 0 && static_cast<std::size_t>(uv) >= scene_.uvs.size())
            return refuseFace("uses UV " + std::to_string(uv) + ", past the UV count " +
                              std::to_string(scene_.uvs.size()));
        scene_.faceUVs.push_back(uv);
    }
    if (uvCount == 3) scene_.faceUVs.push_back(-1);
    return true;
}

void SceneScanner::keep(std::size_t begin, std::size_t end) {
    if (!scene_.pieces.empty() && scene_.pieces.back().flags == 0 &&
        scene_.pieces.back().end == begin) {
        scene_.pieces.back().end = end;
        return;
    }
    scene_.pieces.push_back({begin, end, 0});
}

// Removed lines in a row share one mark: no text was kept between them.
void SceneScanner::mark(unsigned mode) {
    mode_ = mode;
    if (scene_.pieces.empty() || scene_.pieces.back().flags == 0) scene_.pieces.push_back({});
    scene_.pieces.back().flags |= mode;
    scene_.hasMark = true;
}

bool SceneScanner::refuse(const std::string& reason) {
    refusal_ = "line " + std::to_string(lineNumber_) + ": " + reason;
    return false;
}

bool SceneScanner::weld(MayaUvRewrite& result) {
    SceneData& s = scene_;
    shortEdgeLines_.applyZeros(s.edges.size() / 2, [&s](std::size_t i) {
        s.edges[2 * i] = 0;
        s.edges[2 * i + 1] = 0;
    });
    shortUvLines_.applyZeros(s.uvs.size(), [&s](std::size_t i) { s.uvs[i] = VDVector2f(); });
    if (!s.hasMark) return true;

    // Each corner's vertex: the first vertex of its edge, or the second when the edge
    // is used in reverse; a triangle's fourth slot is a filler.
    VDArray<int> vertices;
    platform::reserveLarge(vertices, s.faceEdges.size());
    vertices.resize(s.faceEdges.size());
    const int sentinel = s.sentinel();
    for (std::size_t slot = 0; slot < s.faceEdges.size(); ++slot) {
        const int edge = s.faceEdges[slot];
        vertices[slot] = edge == sentinel ? -1
                         : edge >= 0      ? s.edges[2 * static_cast<std::size_t>(edge)]
                                          : s.edges[2 * static_cast<std::size_t>(-(edge + 1)) + 1];
    }
    result.uvsBefore = s.uvs.size();
    result.faces = s.faceCount();
    for (std::size_t face = 0; face < s.faceCount(); ++face)
        result.triangles += s.faceEdges[4 * face + 3] == sentinel;
    if (!VDUVMergeAlgo::mergeUVs(s.uvs, s.faceUVs, vertices, -1)) {
        refusal_ = s.uvs.empty() ? "nothing to weld: the UV count is 0"
                                 : "nothing to weld: no face has corners";
        return false;
    }
    result.uvsAfter = s.uvs.size();
    return true;
}

} // namespace

MayaSceneWeld::MayaSceneWeld(std::string_view scene) : input_(scene) {
    if (scene.empty()) {
        outcome_.refusal = "the file is empty";
        return;
    }
    SceneScanner scanner(scene);
    if (!scanner.scan() || !scanner.weld(outcome_)) {
        outcome_.refusal = scanner.refusal();
        return;
    }
    scene_ = std::make_unique<SceneData>(std::move(scanner.scene()));
    outcome_.welded = scene_->hasMark;
    outcome_.ok = true;
}

MayaSceneWeld::~MayaSceneWeld() = default;

bool MayaSceneWeld::write(TextSink& sink) const {
    return outcome_.ok && writeScene(*scene_, input_, sink);
}

MayaUvRewrite rewriteMayaUvs(std::string_view scene) {
    const MayaSceneWeld weld(scene);
    MayaUvRewrite result = weld.outcome();
    platform::reserveLarge(result.text, scene.size()); // welding rarely makes a scene longer
    StringSink sink(result.text);
    weld.write(sink);
    return result;
}

// "\tsetAttr \"NAME[start:last]\"" and the rest of a block's header line.
void blockHeader(TextWriter& out, const char* name, std::size_t start, std::size_t last,
                 const char* rest) {
    out.append("\tsetAttr \"");
    out.append(name, std::strlen(name));
    out.append("[");
    out.number(static_cast<long long>(start));
    out.append(":");
    out.number(static_cast<long long>(last));
    out.append("]\"");
    out.append(rest, std::strlen(rest));
}

namespace {

// The statements the rewrite generates: the UV count, the UVs in blocks of 250, the
// face count and the faces in blocks of 500.

constexpr std::size_t kUvsPerBlock = 250;
constexpr std::size_t kFacesPerBlock = 500;

void writeUvCount(TextWriter& out, std::size_t count) {
    out.append("\tsetAttr \".uvst[0].uvsn\" -type \"string\" \"map1\";setAttr -s ");
    out.number(static_cast<long long>(count));
    out.append(" \".uvst[0].uvsp\";\n");
}

void writeUvs(TextWriter& out, const VDArray<VDVector2f>& uvs) {
    forEachBlock(uvs.size(), kUvsPerBlock, [&](std::size_t start, std::size_t last) {
        blockHeader(out, ".uvst[0].uvsp", start, last, " -type \"float2\"\n");
        for (std::size_t i = start; i <= last; ++i) {
            char* p = out.reserve(2 * (1 + kMaxFloatFixed5Chars));
            *p++ = ' ';
            p = formatFloatFixed5(p, uvs[i].x);
            *p++ = ' ';
            out.commit(formatFloatFixed5(p, uvs[i].y));
        }
        out.append(";\n");
    });
}

void writeFaceCount(TextWriter& out, std::size_t count) {
    out.append("\tsetAttr -s ");
    out.number(static_cast<long long>(count));
    out.append(" \".fc\";\n");
}

// " f 4 e e e e mu 0 4 t t t t", or with 3 for a triangle (fourth edge slot = sentinel).
char* writeFace(char* p, const int* edges, const int* uvs, int sentinel) {
    const int corners = edges[3] == sentinel ? 3 : 4;
    std::memcpy(p, corners == 3 ? " f 3" : " f 4", 4);
    p += 4;
    for (int i = 0; i < corners; ++i) {
        *p++ = ' ';
        p = formatInt(p, edges[i]);
    }
    std::memcpy(p, corners == 3 ? " mu 0 3" : " mu 0 4", 7);
    p += 7;
    for (int i = 0; i < corners; ++i) {
        *p++ = ' ';
        p = formatInt(p, uvs[i]);
    }
    return p;
}

void writeFaces(TextWriter& out, const SceneData& scene) {
    constexpr std::size_t kMaxFaceChars = 11 + 8 * (1 + kMaxIntChars);
    const int sentinel = scene.sentinel();
    forEachBlock(scene.faceCount(), kFacesPerBlock, [&](std::size_t start, std::size_t last) {
        blockHeader(out, ".fc", start, last, " -type \"polyFaces\"\n");
        for (std::size_t face = start; face <= last; ++face)
            out.commit(writeFace(out.reserve(kMaxFaceChars), &scene.faceEdges[4 * face],
                                 &scene.faceUVs[4 * face], sentinel));
        out.append(";\n");
    });
}

} // namespace

bool writeScene(const SceneData& scene, std::string_view input, TextSink& sink) {
    TextWriter text(sink, TextWriter::kCachedBufferSize);
    unsigned unwritten = kUvCountMode | kUvDataMode | kFaceCountMode | kFaceDataMode;
    for (const ScenePiece& piece : scene.pieces) {
        if (piece.flags == 0) {
            text.append(input.data() + piece.begin, piece.end - piece.begin);
            continue;
        }
        const unsigned blocks = piece.flags & unwritten;
        unwritten &= ~blocks;
        if (blocks & kUvCountMode) writeUvCount(text, scene.uvs.size());
        if (blocks & kUvDataMode) writeUvs(text, scene.uvs);
        if (blocks & kFaceCountMode) writeFaceCount(text, scene.faceCount());
        if (blocks & kFaceDataMode) writeFaces(text, scene);
    }
    return text.flush();
}

} // namespace neq::uvmerge
