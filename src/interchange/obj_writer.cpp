// Wavefront OBJ out: every float in the shortest text that reads back to the same float,
// so that positions, UVs and colours survive a round trip to the bit.

#include "interchange/mesh.h"

#include "foundation/text_writer.h"
#include "platform/system_hints.h"

#include <charconv>
#include <cstring>
#include <functional>
#include <utility>
#include <vector>

namespace neq::interchange {

namespace {

constexpr std::size_t kMaxFloatChars = 24; // "-1.1754944e-38" and room to spare

char* putFloat(char* out, float value) {
    *out++ = ' ';
    return std::to_chars(out, out + kMaxFloatChars, value).ptr;
}

char* putIndex(char* out, std::size_t index) {
    return std::to_chars(out, out + 20, index).ptr;
}

// " c/255" for every colour value, in the shortest form that reads back to the float.
struct ColourTexts {
    char text[256][kMaxFloatChars + 1] = {};
    std::uint8_t size[256] = {};
    ColourTexts() {
        for (int c = 0; c < 256; ++c)
            size[c] = static_cast<std::uint8_t>(putFloat(text[c], c / 255.0f) - text[c]);
    }
};

char* putColour(char* out, std::uint8_t value) {
    static const ColourTexts texts;
    std::memcpy(out, texts.text[value], kMaxFloatChars);
    return out + texts.size[value];
}

std::uint64_t bitsOf(const float* uv) {
    std::uint64_t key;
    std::memcpy(&key, uv, sizeof key);
    return key;
}

// UV values to their numbers: open addressing over the values' bits, sized for every
// corner at once, so a million faces never rehash or allocate per entry.
class UvNumbers {
  public:
    explicit UvNumbers(std::size_t most) {
        std::size_t capacity = 16;
        while (capacity < most * 2)
            capacity *= 2;
        platform::reserveLarge(keys_, capacity);
        keys_.resize(capacity);
        platform::reserveLarge(numbers_, capacity);
        numbers_.assign(capacity, 0);
        mask_ = capacity - 1;
    }
    // The number of `key`, and whether it is new (numbered count() + 1).
    std::pair<std::uint32_t, bool> find(std::uint64_t key) {
        std::size_t slot = (key * 0x9E3779B97F4A7C15ull) >> 20 & mask_;
        while (numbers_[slot] != 0) {
            if (keys_[slot] == key) return {numbers_[slot], false};
            slot = (slot + 1) & mask_;
        }
        keys_[slot] = key;
        numbers_[slot] = ++count_;
        return {count_, true};
    }

  private:
    std::vector<std::uint64_t> keys_;
    std::vector<std::uint32_t> numbers_; // 0: a free slot
    std::size_t mask_ = 0;
    std::uint32_t count_ = 0;
};

// One texture coordinate per distinct value (by its bits, so -0 and 0 stay apart),
// numbered from 1 in the order the faces meet them; one number per face corner.
std::vector<std::uint32_t> numberUvs(const Mesh& mesh, TextWriter& text) {
    std::vector<std::uint32_t> numbers(mesh.faceCount() * 4, 0);
    if (mesh.uvs.empty()) return numbers;
    UvNumbers numberOf(mesh.faceCount() * 4);
    for (std::size_t face = 0; face < mesh.faceCount(); ++face) {
        const int corners = mesh.isTriangle(face) ? 3 : 4;
        for (int corner = 0; corner < corners; ++corner) {
            const float* uv = &mesh.uvs[(face * 4 + static_cast<std::size_t>(corner)) * 2];
            const auto found = numberOf.find(bitsOf(uv));
            if (found.second) {
                char* p = text.reserve(64);
                std::memcpy(p, "vt", 2);
                p = putFloat(putFloat(p + 2, uv[0]), uv[1]);
                *p++ = '\n';
                text.commit(p);
            }
            numbers[face * 4 + static_cast<std::size_t>(corner)] = found.first;
        }
    }
    return numbers;
}

} // namespace

namespace {

// False when the sink refused the text.
bool writeObjText(const Mesh& mesh, TextSink& sink) {
    TextWriter text(sink, TextWriter::kCachedBufferSize);
    const bool colours = !mesh.colors.empty();
    for (std::size_t v = 0; v < mesh.vertexCount(); ++v) {
        char* p = text.reserve(8 * kMaxFloatChars);
        *p++ = 'v';
        for (int axis = 0; axis < 3; ++axis)
            p = putFloat(p, mesh.positions[v * 3 + static_cast<std::size_t>(axis)]);
        if (colours)
            for (int channel = 0; channel < 3; ++channel)
                p = putColour(p, mesh.colors[v * 3 + static_cast<std::size_t>(channel)]);
        *p++ = '\n';
        text.commit(p);
    }
    const std::vector<std::uint32_t> uvNumbers = numberUvs(mesh, text);
    const bool uvs = !mesh.uvs.empty();
    const bool groups = !mesh.groups.empty();
    for (std::size_t face = 0; face < mesh.faceCount(); ++face) {
        char* p = text.reserve(160);
        if (groups && (face == 0 || mesh.groups[face] != mesh.groups[face - 1])) {
            static const char kGroup[] = "g polygroup_";
            std::memcpy(p, kGroup, sizeof kGroup - 1);
            p = std::to_chars(p + sizeof kGroup - 1, p + sizeof kGroup + 8, mesh.groups[face]).ptr;
            *p++ = '\n';
        }
        *p++ = 'f';
        const int corners = mesh.isTriangle(face) ? 3 : 4;
        for (int corner = 0; corner < corners; ++corner) {
            const std::size_t slot = face * 4 + static_cast<std::size_t>(corner);
            *p++ = ' ';
            p = putIndex(p, static_cast<std::size_t>(mesh.faces[slot]) + 1);
            if (uvs) {
                *p++ = '/';
                p = putIndex(p, uvNumbers[slot]);
            }
        }
        *p++ = '\n';
        text.commit(p);
    }
    return text.flush();
}

// Hands the text to a put function.
class PutSink final : public TextSink {
  public:
    explicit PutSink(const std::function<bool(const char*, std::size_t)>& put) : put_(put) {}
    bool write(const char* data, std::size_t size) override { return put_(data, size); }

  private:
    const std::function<bool(const char*, std::size_t)>& put_;
};

} // namespace

std::string writeObj(const Mesh& mesh) {
    validate(mesh);
    std::string out; // large pages: filling a fresh string page by page costs more than the text
    platform::reserveLarge(out, mesh.vertexCount() * (mesh.colors.empty() ? 40 : 75) +
                                    mesh.faceCount() * (mesh.uvs.empty() ? 30 : 80));
    StringSink sink(out);
    writeObjText(mesh, sink);
    return out;
}

bool writeObjTo(const Mesh& mesh, const std::function<bool(const char*, std::size_t)>& put) {
    validate(mesh);
    PutSink sink(put);
    return writeObjText(mesh, sink);
}

} // namespace neq::interchange
