// VDUVMergeAlgo: the weld itself, the weld of a scene on disk, and the operations the host
// declared but never gave a body.

#include "uvmerge/vd_uv_merge_algo.h"

#include "platform/system_hints.h"
#include "uvmerge/maya_file_rewrite.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <new>
#include <unordered_map>
#include <vector>

namespace {

// The UV of each corner: the per-corner list itself, or the entry the corner's UV index
// names, with (0, 0) for a negative index.
class CornerUvs {
  public:
    CornerUvs(const VDArray<VDVector2f>& uvs, const VDArray<int>& uvIndices)
        : uvs_(uvs), uvIndices_(uvIndices) {}
    VDVector2f operator[](int corner) const {
        if (uvIndices_.empty()) return uvs_[static_cast<std::size_t>(corner)];
        const int index = uvIndices_[static_cast<std::size_t>(corner)];
        return index >= 0 ? uvs_[static_cast<std::size_t>(index)] : VDVector2f();
    }

  private:
    const VDArray<VDVector2f>& uvs_;
    const VDArray<int>& uvIndices_;
};

bool uvIndicesInRange(const VDArray<int>& uvIndices, std::size_t uvCount) {
    return std::all_of(uvIndices.begin(), uvIndices.end(), [uvCount](int index) {
        return index < 0 || static_cast<std::size_t>(index) < uvCount;
    });
}

// Up to this many corners on one vertex are compared pair by pair, as the host always
// did. Larger groups, which only hostile or degenerate meshes have, go through a hash
// table that hands out the same numbers in linear time.
constexpr std::size_t kPairwiseGroupLimit = 32;

bool hasNaN(VDVector2f uv) {
    return uv.x != uv.x || uv.y != uv.y;
}

// Equal under == exactly when the keys are equal, for values without NaN: -0 is 0.
std::uint64_t equalityKey(VDVector2f uv) {
    const float u = uv.x == 0.0f ? 0.0f : uv.x;
    const float v = uv.y == 0.0f ? 0.0f : uv.y;
    std::uint32_t uBits, vBits;
    std::memcpy(&uBits, &u, sizeof uBits);
    std::memcpy(&vBits, &v, sizeof vBits);
    return std::uint64_t{uBits} << 32 | vBits;
}

// Numbers the corners of one vertex, given in the order they are met. The first corner
// of each value takes the next number, later corners with an equal value join it; a
// value with a NaN equals nothing. Returns the next free number.
int numberGroup(const int* group, std::size_t size, const CornerUvs& values, VDArray<int>& numbers,
                int next) {
    if (size <= kPairwiseGroupLimit) {
        for (std::size_t a = 0; a < size; ++a) {
            if (numbers[static_cast<std::size_t>(group[a])] >= 0) continue;
            const VDVector2f value = values[group[a]];
            for (std::size_t b = a; b < size; ++b)
                if (b == a || values[group[b]] == value)
                    numbers[static_cast<std::size_t>(group[b])] = next;
            ++next;
        }
        return next;
    }
    std::unordered_map<std::uint64_t, int> numberOfValue;
    numberOfValue.reserve(size);
    for (std::size_t a = 0; a < size; ++a) {
        const VDVector2f value = values[group[a]];
        int& number = numbers[static_cast<std::size_t>(group[a])];
        if (hasNaN(value)) {
            number = next++;
            continue;
        }
        const auto found = numberOfValue.emplace(equalityKey(value), next);
        if (found.second) ++next;
        number = found.first->second;
    }
    return next;
}

// The corners of every vertex, vertex after vertex, each vertex's corners from the
// highest corner number down: the order in which UV numbers are handed out. On return
// the runs start[r] .. start[r + 1] of `order` are the vertices' corner lists in
// increasing vertex order (empty runs allowed).
//
// Up to this many vertex numbers per corner (plus the constant) a table with one run
// per vertex number is filled in linear time. Vertex numbers far beyond the corners
// would make that table mostly empty and as large as the largest number, so the
// corners are sorted instead, with the same order and only their own size.
constexpr std::size_t kVerticesPerCorner = 4;
constexpr std::size_t kVertexTableSlack = 1024;

void groupCornersByVertex(const VDArray<int>& vertIndices, int vertexCount, std::vector<int>& start,
                          std::vector<int>& order) {
    const int cornerCount = static_cast<int>(vertIndices.size());
    if (static_cast<std::size_t>(vertexCount) >
        kVerticesPerCorner * vertIndices.size() + kVertexTableSlack) {
        for (int corner = 0; corner < cornerCount; ++corner)
            if (vertIndices[static_cast<std::size_t>(corner)] >= 0) order.push_back(corner);
        const auto vertexOf = [&](int corner) {
            return vertIndices[static_cast<std::size_t>(corner)];
        };
        std::sort(order.begin(), order.end(), [&](int a, int b) {
            return vertexOf(a) != vertexOf(b) ? vertexOf(a) < vertexOf(b) : a > b;
        });
        for (std::size_t at = 0; at < order.size(); ++at)
            if (at == 0 || vertexOf(order[at]) != vertexOf(order[at - 1]))
                start.push_back(static_cast<int>(at));
        start.push_back(static_cast<int>(order.size()));
        return;
    }
    neq::platform::reserveLarge(start, static_cast<std::size_t>(vertexCount) + 1);
    start.assign(static_cast<std::size_t>(vertexCount) + 1, 0);
    for (int vertex : vertIndices)
        if (vertex >= 0) ++start[static_cast<std::size_t>(vertex)];
    int end = 0;
    for (int& entry : start) // start[v] becomes the end of v's run
        end = entry += end;
    neq::platform::reserveLarge(order, static_cast<std::size_t>(end));
    order.resize(static_cast<std::size_t>(end));
    // Filling each run from its end with rising corner numbers leaves it descending and
    // moves start[v] back to the run's beginning.
    for (int corner = 0; corner < cornerCount; ++corner) {
        const int vertex = vertIndices[static_cast<std::size_t>(corner)];
        if (vertex >= 0)
            order[static_cast<std::size_t>(--start[static_cast<std::size_t>(vertex)])] = corner;
    }
    start.back() = end;
}

} // namespace

// Its arguments change only at the very end, by swaps that cannot fail, so a failed
// allocation leaves them as they were; it is reported like any refusal, as false.
bool VDUVMergeAlgo::mergeUVs(VDArray<VDVector2f>& uvs, VDArray<int>& uvIndices,
                             const VDArray<int>& vertIndices, int nbVertices) try {
    if (uvs.empty() || vertIndices.empty()) return false;
    const std::size_t cornerCount = vertIndices.size();
    if (cornerCount > static_cast<std::size_t>(INT_MAX)) return false;
    if (uvIndices.empty()
            ? uvs.size() < cornerCount
            : uvIndices.size() != cornerCount || !uvIndicesInRange(uvIndices, uvs.size()))
        return false;
    const int maxVertex = std::max(-1, *std::max_element(vertIndices.begin(), vertIndices.end()));
    if (nbVertices < 0) {
        if (maxVertex == INT_MAX) return false;
        nbVertices = maxVertex + 1;
    } else if (maxVertex >= nbVertices) {
        return false;
    }

    std::vector<int> start, order;
    groupCornersByVertex(vertIndices, nbVertices, start, order);
    const CornerUvs values(uvs, uvIndices);
    VDArray<int> numbers;
    neq::platform::reserveLarge(numbers, cornerCount);
    numbers.assign(cornerCount, -1);
    int uvCount = 0;
    for (std::size_t run = 0; run + 1 < start.size(); ++run) {
        const int begin = start[run];
        const int end = start[run + 1];
        uvCount = numberGroup(order.data() + begin, static_cast<std::size_t>(end - begin), values,
                              numbers, uvCount);
    }

    // Every corner writes its value to its number; equal values may still differ in the
    // sign of a zero, and then the highest corner's sign is the one kept.
    VDArray<VDVector2f> merged;
    neq::platform::reserveLarge(merged, static_cast<std::size_t>(uvCount));
    merged.resize(static_cast<std::size_t>(uvCount));
    for (std::size_t corner = 0; corner < cornerCount; ++corner)
        if (numbers[corner] >= 0)
            merged[static_cast<std::size_t>(numbers[corner])] = values[static_cast<int>(corner)];
    uvs.swap(merged);
    uvIndices.swap(numbers);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

// Running out of memory is a failure like any other: the scene is left as it was.
bool VDUVMergeAlgo::mergeUVsInMayaFile(const VDString& path) try {
    return neq::uvmerge::weldMayaFile(path.getValidFilePath()).failure ==
           neq::uvmerge::MayaFileWeld::Failure::none;
} catch (const std::bad_alloc&) {
    return false;
}

// Never implemented: always false.
bool VDUVMergeAlgo::mergeUVsInNeQFile(const VDString&) {
    return false;
}

bool VDUVMergeAlgo::splitUVsInMayaFile(const VDString&) {
    return false;
}

bool VDUVMergeAlgo::splitUVsInNeQFile(const VDString&) {
    return false;
}
