// Every NeQ reader on arbitrary bytes, through the same file loading the host uses.
// To fuzz another reader, add one line to kReaders.

#include "meshfile/face_ids.h"
#include "meshfile/groups.h"
#include "meshfile/obj_export.h"
#include "meshfile/rgb_block.h"
#include "meshfile/uv_tiles.h"
#include "tooling/neq_writer.h"

#include "fuzz_input_file.h"

#include <sys/stat.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace neq::meshfile;

const char kOut[] = "/dev/null";

std::string scratchPath(const char* suffix) {
    return neq::fuzz::scratchPath("fuzz_neq_readers", suffix);
}

void faceIds(const char* path) {
    std::vector<std::uint32_t> ids;
    loadFaceIds(path, 2.0, ids);
}

void colours(const char* path) {
    exportColours(path, kOut);
}

// Face IDs read from the same bytes, or a fixed list when they hold no faces, so the
// face groups are exercised too.
void objExport(const char* path) {
    std::vector<std::uint32_t> ids;
    loadFaceIds(path, 1.0, ids);
    if (ids.empty()) ids = {4, 3, 16};
    exportObj(path, kOut, ids);
}

void uvTiles(const char* path) {
    UvTileScan scan;
    listUvTiles(path, scan);
}

// Tile files go to a folder of this process (left behind: libFuzzer ends with _Exit). A
// folder already standing where the fifth tile file would go stops every split there,
// so an input with thousands of tiles costs four small files, and the failure path runs.
void uvSplit(const char* path) {
    static const std::string base = [] {
        const std::string dir = scratchPath(".tiles");
        ::mkdir(dir.c_str(), 0700);
        ::mkdir((dir + "/tile4.NeQ").c_str(), 0700);
        return dir + "/tile.NeQ";
    }();
    std::vector<std::string> names;
    splitUvTiles(path, base.c_str(), names);
}

void groups(const char* path) {
    countGroupsInFile(path);
}

void (*const kReaders[])(const char* path) = {
    faceIds, colours, objExport, uvTiles, uvSplit, groups,
};

const neq::fuzz::InputFile& input() {
    static const neq::fuzz::InputFile file(scratchPath(".neq"));
    return file;
}

Mesh smallMesh(int size) {
    Mesh mesh;
    for (int i = 0; i < size * 3; ++i)
        mesh.vertices.push_back({i * 0.5f, -i * 1e5f, 1e-7f * i});
    for (int i = 0; i < size; ++i) {
        mesh.faces.push_back({i, i + 1, i + 2, i % 2 ? -1 : i + 3});
        mesh.uvs.push_back({i - 1.5f, 0.25f * i, 1, 0, 1, 1, static_cast<float>(i), 1});
        mesh.groups.push_back(static_cast<std::int16_t>(i % 3));
    }
    for (int i = 0; i < size * 3; ++i)
        mesh.colours.push_back({static_cast<std::uint8_t>(i), 0x80, 0xFF});
    return mesh;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    const char* seedDir = std::getenv("NEQBRIDGE_FUZZ_SEED_DIR");
    if (seedDir == nullptr) return 0;
    int n = 0;
    for (int size : {0, 1, 4, 12}) {
        const Mesh mesh = smallMesh(size);
        for (const NeqBytes& seed : {buildNeqChain(mesh), buildNeqForObjExport(mesh),
                                     buildNeqFacesFirst(mesh), buildNeqColoursFirst(mesh)})
            writeBytesToFile(std::string(seedDir) + "/seed" + std::to_string(n++) + ".neq", seed);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (!input().write(data, size)) return 0;
    for (auto reader : kReaders)
        reader(input().path());
    return 0;
}
