#include "meshfile/uv_tiles.h"

#include "foundation/number_format.h"
#include "meshfile/neq_format.h"
#include "meshfile/record_block.h"

#include <cmath>
#include <limits>

namespace neq::meshfile {
namespace {

std::int32_t wholeToTile(float whole) {
    constexpr float kLimit = 2147483648.0f; // 2^31, exact in float
    if (whole >= -kLimit && whole < kLimit) return static_cast<std::int32_t>(whole);
    return std::numeric_limits<std::int32_t>::min();
}

} // namespace

std::string uvTileName(std::int32_t u, std::int32_t v) {
    char text[2 * kMaxIntChars + 4] = {'_', 'u'};
    char* end = formatInt(text + 2, u);
    *end++ = '_';
    *end++ = 'v';
    end = formatInt(end, v);
    return std::string(text, end);
}

TileCoordinate splitCoordinate(float c) {
    const float shifted = c >= 0.0f ? c : c - 1.0f;
    float whole;
    float local = std::modf(shifted, &whole);
    if (local < 0.0f) local += 1.0f;
    return {wholeToTile(whole), local};
}

TileKey recordTile(const NeqView& file, std::size_t offset) {
    return {tileIndexOf(file.f32Unchecked(offset)), tileIndexOf(file.f32Unchecked(offset + 4))};
}

void TileCollector::add(TileKey key) {
    // Neighbouring faces mostly share a tile; skip the hash for a repeat.
    const std::uint64_t packed = key.packed();
    if (hasLast_ && packed == lastKey_) return;
    hasLast_ = true;
    lastKey_ = packed;
    keys_.insert(packed);
}

UVTileSet TileCollector::tiles() const {
    UVTileSet tiles;
    for (const std::uint64_t packed : keys_) {
        const auto u = static_cast<std::int32_t>(static_cast<std::uint32_t>(packed >> 32));
        const auto v = static_cast<std::int32_t>(static_cast<std::uint32_t>(packed));
        tiles.insert(UV_tile{uvTileName(u, v), u, v});
    }
    return tiles;
}

std::optional<UvTileScan> scanUvTiles(const NeqView& file) {
    const std::optional<RecordBlock> block = findRecordBlock(file, kUvTag, kUvRecordSize);
    if (!block) return std::nullopt;
    TileCollector collector;
    TileKey last;
    for (std::uint64_t i = 0; i < block->count; ++i) {
        last = recordTile(file, static_cast<std::size_t>(block->recordOffset(i, kUvRecordSize)));
        collector.add(last);
    }
    UvTileScan scan;
    scan.tiles = collector.tiles();
    if (block->count != 0) scan.lastTileName = uvTileName(last.u, last.v);
    return scan;
}

float listUvTiles(const char* path, UvTileScan& scan) {
    NeqBytes bytes;
    if (!loadNeqFile(path, bytes)) return kUvFileCannotOpenResult;
    std::optional<UvTileScan> found = scanUvTiles(NeqView(bytes));
    if (!found) return kNoUvBlockResult;
    scan = std::move(*found);
    return static_cast<float>(scan.tiles.size());
}

} // namespace neq::meshfile
