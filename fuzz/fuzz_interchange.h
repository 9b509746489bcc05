#pragma once

// One mesh reader of the interchange library on arbitrary bytes: a malformed input must
// end in FormatError, and whatever it accepts must be a valid mesh that every writer
// takes. Seeds: a small mesh in the reader's format, written where scripts/fuzz asks.

#include "interchange/mesh.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace neq::fuzz {

inline interchange::Mesh seedMesh() {
    interchange::Mesh mesh;
    mesh.positions = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 2, 0.5f, 0};
    mesh.faces = {0, 1, 2, 3, 1, 4, 2, -1};
    mesh.uvs = {0, 0, 1, 0, 1, 1, 0, 1, 0.5f, 0.25f, 1.5f, 0.5f, 1, 1, 0, 0};
    mesh.colors = {255, 0, 0, 0, 255, 0, 0, 0, 255, 17, 34, 51, 1, 2, 254};
    mesh.groups = {7, -3};
    return mesh;
}

inline void writeSeeds(const char* suffix, std::string (*write)(const interchange::Mesh&)) {
    const char* seedDir = std::getenv("NEQBRIDGE_FUZZ_SEED_DIR");
    if (seedDir == nullptr) return;
    interchange::Mesh mesh = seedMesh();
    for (int n = 0; n < 2; ++n) {
        const std::string bytes = write(mesh);
        const std::string path = std::string(seedDir) + "/seed" + std::to_string(n) + suffix;
        if (std::FILE* file = std::fopen(path.c_str(), "wb")) {
            std::fwrite(bytes.data(), 1, bytes.size(), file);
            std::fclose(file);
        }
        mesh.uvs.clear();
        mesh.groups.clear();
    }
}

template <class Read> void readAndWriteBack(const std::uint8_t* data, std::size_t size, Read read) {
    interchange::Mesh mesh;
    try {
        mesh = read(std::string_view(reinterpret_cast<const char*>(data), size));
    } catch (const interchange::FormatError&) {
        return;
    }
    interchange::validate(mesh); // throws, and so fails, when the reader let a fault through
    interchange::writeNeq(mesh);
    interchange::writeObj(mesh);
    if (mesh.faceCount() != 0) interchange::writeGlb(mesh);
}

} // namespace neq::fuzz
