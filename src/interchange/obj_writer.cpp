// Wavefront OBJ out: every float in the shortest text that reads back to the same float,
// so that positions, UVs and colours survive a round trip to the bit.

#include "interchange/mesh.h"

#include "uvmerge/text_out.h"

#include <charconv>
#include <cstring>
#include <unordered_map>

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

std::uint64_t bitsOf(const float* uv) {
    std::uint64_t key;
    std::memcpy(&key, uv, sizeof key);
    return key;
}

// One texture coordinate per distinct value (by its bits, so -0 and 0 stay apart),
// numbered from 1 in the order the faces meet them; one number per face corner.
std::vector<std::uint32_t> numberUvs(const Mesh& mesh, uvmerge::TextOut& text) {
    std::vector<std::uint32_t> numbers(mesh.faceCount() * 4, 0);
    if (mesh.uvs.empty()) return numbers;
    std::unordered_map<std::uint64_t, std::uint32_t> numberOf;
    numberOf.reserve(mesh.faceCount() * 2);
    for (std::size_t face = 0; face < mesh.faceCount(); ++face) {
        const int corners = mesh.isTriangle(face) ? 3 : 4;
        for (int corner = 0; corner < corners; ++corner) {
            const float* uv = &mesh.uvs[(face * 4 + static_cast<std::size_t>(corner)) * 2];
            const auto found = numberOf.emplace(bitsOf(uv), numberOf.size() + 1);
            if (found.second) {
                char* p = text.room(64);
                std::memcpy(p, "vt", 2);
                p = putFloat(putFloat(p + 2, uv[0]), uv[1]);
                *p++ = '\n';
                text.advance(p);
            }
            numbers[face * 4 + static_cast<std::size_t>(corner)] = found.first->second;
        }
    }
    return numbers;
}

} // namespace

std::string writeObj(const Mesh& mesh) {
    validate(mesh);
    std::string out;
    out.reserve(mesh.vertexCount() * 40 + mesh.faceCount() * 40);
    uvmerge::StringSink sink(out);
    uvmerge::TextOut text(sink);
    const bool colours = !mesh.colors.empty();
    for (std::size_t v = 0; v < mesh.vertexCount(); ++v) {
        char* p = text.room(8 * kMaxFloatChars);
        *p++ = 'v';
        for (int axis = 0; axis < 3; ++axis)
            p = putFloat(p, mesh.positions[v * 3 + static_cast<std::size_t>(axis)]);
        if (colours)
            for (int channel = 0; channel < 3; ++channel)
                p = putFloat(p, mesh.colors[v * 3 + static_cast<std::size_t>(channel)] / 255.0f);
        *p++ = '\n';
        text.advance(p);
    }
    const std::vector<std::uint32_t> uvNumbers = numberUvs(mesh, text);
    const bool uvs = !mesh.uvs.empty();
    const bool groups = !mesh.groups.empty();
    for (std::size_t face = 0; face < mesh.faceCount(); ++face) {
        char* p = text.room(160);
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
        text.advance(p);
    }
    text.flush();
    return out;
}

} // namespace neq::interchange
