// Wavefront OBJ in: positions (with the common vertex-colour extension), texture
// coordinates, faces of any size (fanned into triangles beyond four corners) and the
// names of groups, objects and materials as polygroups.

#include "interchange/mesh.h"

#include "platform/system_hints.h"

#include <fast_float/fast_float.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <unordered_map>

namespace neq::interchange {

namespace {

constexpr float kNoUv[2] = {0.0f, 0.0f};

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v';
}

// One statement: its keyword and the rest of its line, comments cut off.
struct Line {
    const char* start; // of the statement, for the line number
    const char* p;     // the next unread character
    const char* end;

    void skipBlanks() {
        while (p < end && isBlank(*p))
            ++p;
    }
    // A '#' starts a comment that runs to the end of the line.
    bool atEnd() {
        skipBlanks();
        if (p < end && *p == '#') p = end;
        return p == end;
    }
    std::string_view token() {
        skipBlanks();
        const char* first = p;
        while (p < end && !isBlank(*p) && *p != '#')
            ++p;
        return {first, static_cast<std::size_t>(p - first)};
    }
};

struct CornerIndices {
    std::int64_t vertex = 0, uv = 0; // as written; 0 when absent
};

class ObjReader {
  public:
    ObjReader(std::string_view text, const std::string& name, ReadReport* report)
        : original_(text), name_(name), report_(report) {}

    Mesh read() {
        std::string_view text = original_;
        std::string joined;
        if (std::memchr(text.data(), '\\', text.size())) {
            joined = joinContinuations(text);
            text = joined;
        }
        base_ = text.data();
        reserve(text);
        const char* p = text.data();
        const char* const end = p + text.size();
        while (p < end) {
            const char* newline = static_cast<const char*>(std::memchr(p, '\n', end - p));
            const char* lineEnd = newline ? newline : end;
            Line line{p, p, lineEnd};
            statement(line);
            p = newline ? newline + 1 : end;
        }
        return finish();
    }

  private:
    // Room for what the statements will add, with large pages behind it: growing the
    // arrays statement by statement would copy them and fault their pages in one by one.
    void reserve(std::string_view text) {
        // Small files are counted; large ones are sampled in windows spread over the
        // whole file (OBJ lists its vertices, coordinates and faces in long runs), and an
        // estimate that falls short only means the arrays grow once more.
        constexpr std::size_t kWindows = 32, kWindow = std::size_t{1} << 17;
        std::size_t vertices = 0, texcoords = 0, faces = 0, sampled = 0;
        const std::size_t step = text.size() <= kWindows * kWindow ? 0 : text.size() / kWindows;
        for (std::size_t w = 0; w < (step ? kWindows : 1); ++w) {
            std::size_t at = w * step;
            if (at != 0) { // from the start of the next line
                const char* newline =
                    static_cast<const char*>(std::memchr(text.data() + at, '\n', text.size() - at));
                if (!newline) break;
                at = static_cast<std::size_t>(newline - text.data()) + 1;
            }
            const std::size_t end = step ? std::min(text.size(), at + kWindow) : text.size();
            sampled += end - at;
            while (at < end) {
                const char* p = text.data() + at;
                if (end - at >= 2) {
                    vertices += p[0] == 'v' && p[1] == ' ';
                    texcoords += p[0] == 'v' && p[1] == 't';
                    faces += p[0] == 'f' && p[1] == ' ';
                }
                const char* newline = static_cast<const char*>(std::memchr(p, '\n', end - at));
                at = newline ? static_cast<std::size_t>(newline - text.data()) + 1 : end;
            }
        }
        const auto scaled = [&](std::size_t count) {
            if (!step || sampled == 0) return count;
            return static_cast<std::size_t>(double(count) * double(text.size()) / double(sampled) *
                                            1.05) +
                   1024;
        };
        vertices = scaled(vertices), texcoords = scaled(texcoords), faces = scaled(faces);
        platform::reserveLarge(positions_, vertices * 3);
        platform::reserveLarge(texcoords_, texcoords * 2);
        platform::reserveLarge(faces_, faces * 4);
        platform::reserveLarge(faceUvs_, texcoords ? faces * 8 : 0);
        platform::reserveLarge(faceNames_, faces);
    }

    // A backslash at the end of a line joins the next line to it. The marks become
    // blanks in a copy of the same length, so offsets still name the original lines.
    static std::string joinContinuations(std::string_view text) {
        std::string copy(text);
        for (std::size_t i = 0; i < copy.size(); ++i) {
            if (copy[i] != '\\') continue;
            std::size_t j = i + 1;
            if (j < copy.size() && copy[j] == '\r') ++j;
            if (j < copy.size() && copy[j] == '\n')
                std::fill(copy.begin() + static_cast<std::ptrdiff_t>(i),
                          copy.begin() + static_cast<std::ptrdiff_t>(j) + 1, ' ');
        }
        return copy;
    }

    [[noreturn]] void fail(const Line& line, const std::string& what) const {
        const std::size_t offset = static_cast<std::size_t>(line.start - base_);
        const auto number =
            std::count(original_.begin(), original_.begin() + static_cast<std::ptrdiff_t>(offset),
                       '\n') +
            1;
        throw FormatError(name_, "line " + std::to_string(number), what);
    }

    void statement(Line& line) {
        const std::string_view keyword = line.token();
        if (keyword.empty()) return;
        if (keyword == "v") return vertex(line);
        if (keyword == "vt") return texture(line);
        if (keyword == "f") return face(line);
        if (keyword == "vn") return;
        if (keyword == "o") return name(line, 0);
        if (keyword == "g") return name(line, 1);
        if (keyword == "usemtl") return name(line, 2);
        ++skipped_;
    }

    float number(Line& line, const char* statement) {
        line.skipBlanks();
        const char* first = line.p;
        if (first < line.end && *first == '+') ++first;
        float value = 0;
        const fast_float::from_chars_result result = fast_float::from_chars(first, line.end, value);
        if (result.ec != std::errc() ||
            (result.ptr < line.end && !isBlank(*result.ptr) && *result.ptr != '#')) {
            const std::string_view bad = line.token();
            fail(line, std::string(statement) + ": '" + std::string(bad) + "' is not a number");
        }
        line.p = result.ptr;
        return value;
    }

    // Reads up to `most` numbers; returns how many there were.
    int numbers(Line& line, const char* statement, float* out, int most) {
        int count = 0;
        while (!line.atEnd()) {
            if (count == most)
                fail(line,
                     std::string(statement) + ": more than " + std::to_string(most) + " numbers");
            out[count++] = number(line, statement);
        }
        return count;
    }

    void vertex(Line& line) {
        float values[7];
        const int count = numbers(line, "v", values, 7);
        if (count != 3 && count != 4 && count != 6 && count != 7)
            fail(line, "v: expected 3, 4 or 6 numbers, found " + std::to_string(count));
        positions_.insert(positions_.end(), values, values + 3);
        if (count >= 6) {
            if (colors_.size() < positions_.size() - 3) colors_.resize(positions_.size() - 3, 255);
            const float* rgb = values + count - 3;
            for (int i = 0; i < 3; ++i) {
                const float scaled = std::nearbyint(rgb[i] * 255.0f);
                colors_.push_back(static_cast<std::uint8_t>(scaled >= 255.0f ? 255
                                                            : scaled > 0.0f
                                                                ? static_cast<int>(scaled)
                                                                : 0));
            }
        }
    }

    void texture(Line& line) {
        float values[3];
        const int count = numbers(line, "vt", values, 3);
        if (count < 1) fail(line, "vt: expected 2 or 3 numbers, found " + std::to_string(count));
        texcoords_.push_back(values[0]);
        texcoords_.push_back(count > 1 ? values[1] : 0.0f);
    }

    // Faces belong to the polygroup of the object, group and material names in force
    // together, written "object/group/material" with the names not given left out.
    void name(Line& line, int kind) {
        line.skipBlanks();
        const char* last = std::find(line.p, line.end, '#');
        while (last > line.p && isBlank(last[-1]))
            --last;
        current_[kind].assign(line.p, static_cast<std::size_t>(last - line.p));
        std::string name;
        for (const std::string& part : current_)
            if (!part.empty()) name += (name.empty() ? "" : "/") + part;
        const auto found = nameIds_.emplace(name, static_cast<int>(names_.size()));
        if (found.second) {
            if (names_.size() > INT16_MAX)
                fail(line, "more than " + std::to_string(INT16_MAX + 1) +
                               " distinct group, object and material names");
            names_.push_back(name);
        }
        currentName_ = found.first->second;
    }

    // An index as written: 1-based, or negative counting back from the latest entry.
    std::int64_t resolve(Line& line, std::int64_t index, std::size_t count, const char* what) {
        const std::int64_t size = static_cast<std::int64_t>(count);
        const std::int64_t resolved = index < 0 ? size + index : index - 1;
        if (index == 0 || resolved < 0 || resolved >= size)
            fail(line, std::string("f: ") + what + " index " + std::to_string(index) +
                           " is out of range (" + std::to_string(count) + " so far)");
        return resolved;
    }

    // A decimal integer; values too large for any index stop growing (and are then out
    // of range) instead of overflowing.
    static bool integer(const char*& p, const char* end, std::int64_t& value) {
        const bool negative = p < end && *p == '-';
        const char* digits = p + negative;
        const char* q = digits;
        std::int64_t magnitude = 0;
        for (; q < end && static_cast<unsigned>(*q - '0') < 10; ++q)
            if (magnitude < (std::int64_t{1} << 40)) magnitude = magnitude * 10 + (*q - '0');
        if (q == digits) return false;
        p = q;
        value = negative ? -magnitude : magnitude;
        return true;
    }

    CornerIndices corner(Line& line) {
        const std::string_view token = line.token();
        const char* p = token.data();
        const char* end = p + token.size();
        CornerIndices corner;
        bool good = integer(p, end, corner.vertex);
        if (good && p < end) { // v/vt, v/vt/vn or v//vn
            good = *p++ == '/' && p < end;
            if (good && *p != '/') good = integer(p, end, corner.uv);
            if (good && p < end) {
                std::int64_t normal = 0;
                good = *p++ == '/' && integer(p, end, normal) && p == end;
            }
        }
        if (!good)
            fail(line,
                 "f: '" + std::string(token) + "' is not a corner (v, v/vt, v/vt/vn or v//vn)");
        corner.vertex = resolve(line, corner.vertex, positions_.size() / 3, "vertex");
        if (corner.uv != 0)
            corner.uv = resolve(line, corner.uv, texcoords_.size() / 2, "texture");
        else
            corner.uv = -1;
        return corner;
    }

    void face(Line& line) {
        corners_.clear();
        while (!line.atEnd())
            corners_.push_back(corner(line));
        if (corners_.size() < 3)
            fail(line, "f: a face needs at least 3 corners, this one has " +
                           std::to_string(corners_.size()));
        if (corners_.size() <= 4) {
            addFace(corners_[0], corners_[1], corners_[2],
                    corners_.size() == 4 ? &corners_[3] : nullptr);
            return;
        }
        ++split_;
        for (std::size_t i = 1; i + 1 < corners_.size(); ++i)
            addFace(corners_[0], corners_[i], corners_[i + 1], nullptr);
    }

    void addFace(const CornerIndices& a, const CornerIndices& b, const CornerIndices& c,
                 const CornerIndices* d) {
        const CornerIndices* corners[4] = {&a, &b, &c, d};
        const std::size_t at = faces_.size();
        faces_.resize(at + 4); // within the room reserved up front, as a rule
        faceUvs_.resize(at * 2 + 8);
        std::int32_t* face = &faces_[at];
        float* uv = &faceUvs_[at * 2];
        for (const CornerIndices* corner : corners) {
            *face++ = corner ? static_cast<std::int32_t>(corner->vertex) : -1;
            const bool hasUv = corner && corner->uv >= 0;
            const float* value =
                hasUv ? &texcoords_[static_cast<std::size_t>(corner->uv) * 2] : kNoUv;
            *uv++ = value[0];
            *uv++ = value[1];
            anyUv_ = anyUv_ || hasUv;
        }
        faceNames_.push_back(currentName_);
    }

    // Names read "polygroup_<id>" everywhere (what writeObj writes) keep their ids;
    // otherwise each distinct name gets the next id in the order of first use.
    std::vector<std::int16_t> groupIds() const {
        std::vector<std::int16_t> ids(names_.size() + 1);
        bool written = true;
        for (std::size_t i = 0; i < names_.size() && written; ++i) {
            const std::string& name = names_[i];
            constexpr std::string_view kPrefix = "polygroup_";
            int id = 0;
            const char* first = name.data() + kPrefix.size();
            const char* last = name.data() + name.size();
            written =
                name.size() > kPrefix.size() && name.compare(0, kPrefix.size(), kPrefix) == 0 &&
                std::from_chars(first, last, id).ptr == last && id >= INT16_MIN && id <= INT16_MAX;
            ids[i + 1] = static_cast<std::int16_t>(id);
        }
        if (written) return ids;
        std::vector<bool> used(names_.size() + 1, false);
        for (int name : faceNames_)
            used[static_cast<std::size_t>(name + 1)] = true;
        std::int16_t next = 0;
        for (std::size_t i = 0; i < ids.size(); ++i)
            if (used[i]) ids[i] = next++;
        return ids;
    }

    Mesh finish() {
        Mesh mesh;
        mesh.positions = std::move(positions_);
        mesh.faces = std::move(faces_);
        if (anyUv_) mesh.uvs = std::move(faceUvs_);
        if (!colors_.empty()) {
            colors_.resize(mesh.positions.size(), 255);
            mesh.colors = std::move(colors_);
        }
        if (!names_.empty()) {
            const std::vector<std::int16_t> ids = groupIds();
            mesh.groups.resize(faceNames_.size());
            for (std::size_t i = 0; i < faceNames_.size(); ++i)
                mesh.groups[i] = ids[static_cast<std::size_t>(faceNames_[i] + 1)];
        }
        if (report_) {
            report_->splitPolygons = split_;
            report_->skippedStatements = skipped_;
            report_->groupNames.clear();
            if (!names_.empty()) {
                const std::vector<std::int16_t> ids = groupIds();
                for (std::size_t i = 0; i < names_.size(); ++i) {
                    if (ids[i + 1] < 0) continue; // a name cannot be listed under it
                    const auto id = static_cast<std::size_t>(ids[i + 1]);
                    if (report_->groupNames.size() <= id) report_->groupNames.resize(id + 1);
                    report_->groupNames[id] = names_[i];
                }
            }
        }
        return mesh;
    }

    std::string_view original_;
    const std::string& name_;
    ReadReport* report_;
    const char* base_ = nullptr; // of the text parsed: the original or its joined copy

    std::vector<float> positions_, texcoords_, faceUvs_;
    std::vector<std::uint8_t> colors_;
    std::vector<std::int32_t> faces_;
    std::vector<int> faceNames_; // index into names_, -1 before any name
    std::vector<CornerIndices> corners_;
    std::vector<std::string> names_;
    std::unordered_map<std::string, int> nameIds_;
    std::string current_[3]; // object, group, material
    int currentName_ = -1;
    bool anyUv_ = false;
    std::size_t split_ = 0, skipped_ = 0;
};

} // namespace

Mesh readObj(std::string_view text, const std::string& name, ReadReport* report) {
    return ObjReader(text, name, report).read();
}

} // namespace neq::interchange
