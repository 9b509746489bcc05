// The UV layout drawn in UV units: x is u, y is -v (SVG's y runs down), so tile (u, v)
// is the square from (u, -v - 1) to (u + 1, -v).

#include "interchange/uv_layout.h"

#include "foundation/text_writer.h"
#include "meshfile/uv_tiles.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>
#include <utility>

namespace neq::interchange {

namespace {

// Twelve colours that stay apart from each other; polygroup ids take them in turn.
constexpr const char* kPalette[] = {"#4e79a7", "#f28e2b", "#e15759", "#76b7b2",
                                    "#59a14f", "#edc948", "#b07aa1", "#ff9da7",
                                    "#9c755f", "#bab0ac", "#86bcb6", "#d37295"};
constexpr std::size_t kPaletteSize = sizeof kPalette / sizeof kPalette[0];
constexpr double kPixelsPerUnit = 512;
// UVs and tiles farther out than this (or NaN) do not widen the picture.
constexpr double kFar = 1000000;

const char* colourOf(std::int16_t group) {
    const int index = group % static_cast<int>(kPaletteSize);
    return kPalette[index < 0 ? index + static_cast<int>(kPaletteSize) : index];
}

void put(TextWriter& out, const std::string& text) {
    out.append(text);
}

// A coordinate to five decimals, trailing zeros dropped: 1/100000 of a tile.
void putNumber(TextWriter& out, double value) {
    char* p = out.reserve(48);
    if (!(value == value) || value > 1e9 || value < -1e9) value = 0; // NaN or far away
    value += 0.0;                                                    // no "-0"
    p = std::to_chars(p, p + 48, value, std::chars_format::fixed, 5).ptr;
    while (p[-1] == '0')
        --p;
    if (p[-1] == '.') --p;
    out.commit(p);
}

} // namespace

std::string uvLayoutSvg(const Mesh& mesh) {
    validate(mesh);
    if (mesh.uvs.empty()) throw std::invalid_argument("uvs: the mesh has no UVs");
    // Tiles of the faces (by their first corner, as the tile listing counts them), and
    // the faces of each polygroup.
    std::set<std::pair<std::int32_t, std::int32_t>> tiles;
    std::map<std::int16_t, std::vector<std::size_t>> groups;
    double left = 0, right = 1, top = -1, bottom = 0;
    for (std::size_t face = 0; face < mesh.faceCount(); ++face) {
        const float* uv = &mesh.uvs[face * 8];
        tiles.emplace(meshfile::tileIndexOf(uv[0]), meshfile::tileIndexOf(uv[1]));
        groups[mesh.groups.empty() ? std::int16_t{0} : mesh.groups[face]].push_back(face);
    }
    for (const auto& [u, v] : tiles) {
        if (u < -kFar || u > kFar || v < -kFar || v > kFar) continue;
        left = std::min(left, double(u));
        right = std::max(right, double(u) + 1);
        top = std::min(top, -double(v) - 1);
        bottom = std::max(bottom, -double(v));
    }
    // Faces may reach out of their tile: the picture holds them too.
    for (std::size_t i = 0; i + 1 < mesh.uvs.size(); i += 2) {
        const double u = mesh.uvs[i], v = -double(mesh.uvs[i + 1]);
        if (!(u > -kFar && u < kFar && v > -kFar && v < kFar)) continue;
        left = std::min(left, u);
        right = std::max(right, u);
        top = std::min(top, v);
        bottom = std::max(bottom, v);
    }
    const double margin = 0.05;
    left -= margin, top -= margin, right += margin, bottom += margin;

    std::string svg;
    StringSink sink(svg);
    TextWriter out(sink, TextWriter::kCachedBufferSize);
    out.append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"");
    putNumber(out, left);
    out.append(" ");
    putNumber(out, top);
    out.append(" ");
    putNumber(out, right - left);
    out.append(" ");
    putNumber(out, bottom - top);
    out.append("\" width=\"");
    putNumber(out, std::min((right - left) * kPixelsPerUnit, 8192.0));
    out.append("\" height=\"");
    putNumber(out, std::min((bottom - top) * kPixelsPerUnit, 8192.0));
    out.append("\">\n<rect x=\"");
    putNumber(out, left);
    out.append("\" y=\"");
    putNumber(out, top);
    out.append("\" width=\"100%\" height=\"100%\" fill=\"white\"/>\n"
               "<g fill=\"none\" stroke=\"#999\" stroke-width=\"1\" "
               "vector-effect=\"non-scaling-stroke\">\n");
    for (const auto& [u, v] : tiles) {
        out.append("<rect x=\"");
        out.number(u);
        out.append("\" y=\"");
        out.number(-static_cast<long long>(v) - 1);
        out.append("\" width=\"1\" height=\"1\" vector-effect=\"non-scaling-stroke\"/>\n");
    }
    out.append("</g>\n<g font-family=\"sans-serif\" font-size=\"0.05\" fill=\"#666\">\n");
    for (const auto& [u, v] : tiles) {
        out.append("<text x=\"");
        putNumber(out, u + 0.02);
        out.append("\" y=\"");
        putNumber(out, -static_cast<double>(v) - 1 + 0.07);
        out.append("\">");
        put(out, meshfile::uvTileName(u, v));
        out.append("</text>\n");
    }
    out.append("</g>\n<g fill-opacity=\"0.45\" stroke=\"#222\" stroke-width=\"0.5\" "
               "stroke-linejoin=\"round\">\n");
    for (const auto& [group, faces] : groups) {
        out.append("<path vector-effect=\"non-scaling-stroke\" fill=\"");
        put(out, colourOf(group));
        out.append("\" data-polygroup=\"");
        out.number(group);
        out.append("\" d=\"");
        for (std::size_t face : faces) {
            const int corners = mesh.isTriangle(face) ? 3 : 4;
            for (int corner = 0; corner < corners; ++corner) {
                const float* uv = &mesh.uvs[face * 8 + static_cast<std::size_t>(corner) * 2];
                out.append(corner == 0 ? "M" : "L");
                putNumber(out, uv[0]);
                out.append(" ");
                putNumber(out, -static_cast<double>(uv[1]));
            }
            out.append("Z");
        }
        out.append("\"/>\n");
    }
    out.append("</g>\n</svg>\n");
    out.flush();
    return svg;
}

} // namespace neq::interchange
