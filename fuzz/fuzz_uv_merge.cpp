// The UV weld on hostile corners: vertex and UV indices anywhere in the int range,
// given or computed vertex counts, NaNs. Whatever it gets, it refuses or gives a
// numbering with the weld's invariants, in time and memory sized by the corners.

#include "uvmerge/vd_uv_merge_algo.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// Input: a 4-byte vertex count (negative: computed), then 12 bytes per corner: its
// vertex, its UV index (negative: none) and the two halves of a UV value drawn from a
// small pool, so that equal values are common.
int readInt(const std::uint8_t* at) {
    std::int32_t value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

const float kPool[] = {0.0f, -0.0f, 0.5f, 0.25f, 1.0f, __builtin_nanf("")};

void check(bool condition) {
    if (!condition) std::abort();
}

// Bit for bit, so that NaNs compare equal to themselves.
bool sameBits(const VDArray<VDVector2f>& a, const VDArray<VDVector2f>& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(VDVector2f)) == 0);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    const char* seedDir = std::getenv("NEQBRIDGE_FUZZ_SEED_DIR");
    if (seedDir == nullptr) return 0;
    // Four corners on vertices 0, 1, 0 and 2,147,483,646, with a computed count.
    const std::int32_t seed[] = {-1, 0, 0, 0, 1, 1, 0x0102, 0, 2, 0x0200, 2147483646, 3, 0x0505};
    if (std::FILE* file = std::fopen((std::string(seedDir) + "/seed0").c_str(), "wb")) {
        std::fwrite(seed, sizeof seed, 1, file);
        std::fclose(file);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) return 0;
    const int nbVertices = readInt(data);
    VDArray<VDVector2f> uvs;
    VDArray<int> uvIndices, vertIndices;
    for (std::size_t at = 4; at + 12 <= size; at += 12) {
        vertIndices.push_back(readInt(data + at));
        uvIndices.push_back(readInt(data + at + 4));
        const std::uint32_t pick = static_cast<std::uint32_t>(readInt(data + at + 8));
        uvs.push_back({kPool[(pick & 0xff) % 6], kPool[((pick >> 8) & 0xff) % 6]});
    }
    // Both input forms: UV indices into the list (taken modulo its size when the
    // fourth byte is even, so that most are in range), or one value per corner.
    const bool perCorner = size % 2 == 1;
    if (perCorner) uvIndices.clear();
    for (int& index : uvIndices)
        if (index >= 0 && !uvs.empty() && (index & 0x1000000) == 0)
            index %= static_cast<int>(uvs.size());
    const VDArray<int> inputIndices = uvIndices;
    const VDArray<VDVector2f> inputUvs = uvs;
    if (!VDUVMergeAlgo::mergeUVs(uvs, uvIndices, vertIndices, nbVertices)) {
        check(sameBits(uvs, inputUvs) && uvIndices == inputIndices);
        return 0;
    }
    check(uvIndices.size() == vertIndices.size());
    for (std::size_t corner = 0; corner < vertIndices.size(); ++corner) {
        const int number = uvIndices[corner];
        if (vertIndices[corner] < 0) {
            check(number == -1);
            continue;
        }
        check(number >= 0 && static_cast<std::size_t>(number) < uvs.size());
        const int from = perCorner ? static_cast<int>(corner) : inputIndices[corner];
        const VDVector2f value =
            from >= 0 ? inputUvs[static_cast<std::size_t>(from)] : VDVector2f();
        const VDVector2f welded = uvs[static_cast<std::size_t>(number)];
        check(welded == value || (value.x != value.x || value.y != value.y));
    }
    return 0;
}
