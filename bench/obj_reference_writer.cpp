#include "obj_reference_writer.h"

#include <cstdio>
#include <cstring>

namespace neq::bench {
namespace {

bool readWholeFile(const std::string& path, std::vector<unsigned char>& bytes) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return false;
    std::fseek(file, 0, SEEK_END);
    bytes.resize(static_cast<std::size_t>(std::ftell(file)));
    std::fseek(file, 0, SEEK_SET);
    const bool read = std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size();
    std::fclose(file);
    return read;
}

} // namespace

bool writeReferenceObj(const std::string& inPath, const std::string& outPath,
                       const std::vector<std::uint32_t>& faceIds) {
    std::vector<unsigned char> bytes;
    if (!readWholeFile(inPath, bytes)) return false;
    // Little-endian host: fields are copied as they stand.
    const auto u32 = [&bytes](std::size_t offset) {
        std::uint32_t value;
        std::memcpy(&value, bytes.data() + offset, 4);
        return value;
    };
    const auto f32 = [&bytes](std::size_t offset) {
        float value;
        std::memcpy(&value, bytes.data() + offset, 4);
        return static_cast<double>(value);
    };
    if (bytes.size() < 48 || u32(32) != 10001) return false;
    const std::size_t vertices = u32(40);
    const std::size_t colourBlock = 36 + u32(36) + u32(36 + u32(36));

    std::FILE* out = std::fopen(outPath.c_str(), "w");
    if (out == nullptr) return false;
    std::fprintf(out, "# File exported by Clayvo plugin\n#Vertex count %zu\n#Face count %d\n",
                 vertices, static_cast<int>(u32(colourBlock + 4)));
    for (std::size_t i = 0; i < vertices; ++i) {
        const std::size_t at = 48 + 12 * i;
        std::fprintf(out, "v %g %g %g\n", f32(at), f32(at + 4), f32(at + 8));
    }

    if (u32(colourBlock) != 35001) return std::fclose(out), false;
    const std::size_t colours = u32(colourBlock + 8);
    std::fputs("# The following RGB block contains Clayvo Vertex Color (Polytint) output as 3 "
               "hexadecimal values per vertex. The vertex color format is RRGGBB with up to 32 "
               "entries per RGB line.\n",
               out);
    for (std::size_t i = 0; i < colours; ++i) {
        const unsigned char* bgr = bytes.data() + colourBlock + 16 + 4 * i;
        if (i % 32 == 0) std::fputs("#RGB ", out);
        std::fprintf(out, " %02x%02x%02x", bgr[2], bgr[1], bgr[0]);
        if (i % 32 == 31) std::fputc('\n', out);
    }
    std::fputs("\n# End of RGB block\n", out);

    const std::size_t faceBlock = colourBlock + 16 + 4 * colours;
    if (u32(faceBlock) != 20001) return std::fclose(out), false;
    const std::size_t faceBlockEnd = faceBlock + u32(faceBlock + 4);
    std::size_t record = faceBlock + 16;
    for (std::size_t group = 0; group < faceIds.size() && record < faceBlockEnd; ++group) {
        std::fprintf(out, "#FaceID %zu\n", group + 1);
        for (std::uint32_t face = 0; face < faceIds[group]; ++face, record += 16) {
            const int a = static_cast<int>(u32(record)), b = static_cast<int>(u32(record + 4));
            const int c = static_cast<int>(u32(record + 8)), d = static_cast<int>(u32(record + 12));
            if (d + 1 > 0)
                std::fprintf(out, "f %d %d %d %d\n", a + 1, b + 1, c + 1, d + 1);
            else
                std::fprintf(out, "f %d %d %d \n", a + 1, b + 1, c + 1);
        }
    }
    return std::fclose(out) == 0;
}

} // namespace neq::bench
