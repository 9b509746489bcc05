#pragma once

// UV tiles: the unit squares of UV space a mesh's faces lie in. A face's tile is the
// tile of the first (u, v) pair of its UV record.

#include "meshfile/neq_bytes.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>

namespace neq::meshfile {

// Host codes of the tile listing.
constexpr float kUvFileCannotOpenResult = -17.0f;
constexpr float kNoUvBlockResult = -18.0f;

struct UV_tile {
    std::string name; // "_u<u>_v<v>"
    std::int32_t u = 0;
    std::int32_t v = 0;

    // Tiles are keyed by name alone, compared as byte strings: "_u-1_v0" < "_u0_v0" <
    // "_u10_v0" < "_u2_v0". Tiles are listed and numbered in this order.
    bool operator<(const UV_tile& other) const { return name < other.name; }
};
using UVTileSet = std::set<UV_tile>;

// "_u" u "_v" v, both signed decimal.
std::string uvTileName(std::int32_t u, std::int32_t v);

// One coordinate split into its tile and its position inside that tile.
struct TileCoordinate {
    std::int32_t tile;
    float local;
};

// c, or c - 1 when c is negative, split into whole and fractional parts (both with the
// value's sign); the tile is the whole part, the local coordinate the fraction, plus 1
// when it is below 0. So 0.3 -> (0, 0.3), 1.0 -> (1, 0), -0.25 -> (-1, 0.75), and -1.0 ->
// (-2, -0.0): the shift applies to exact negative integers too, and that is how the
// host's tiles have always been numbered. Arithmetic stays in single precision, as the
// values are stored. A whole part outside the 32-bit range (or NaN) gets tile INT32_MIN,
// what the x86 conversion yields, so such faces share one tile instead of being UB.
TileCoordinate splitCoordinate(float c);

inline std::int32_t tileIndexOf(float c) {
    return splitCoordinate(c).tile;
}

// A tile as a pair of indices, cheap to compare and hash.
struct TileKey {
    std::int32_t u = 0;
    std::int32_t v = 0;

    std::uint64_t packed() const {
        return std::uint64_t{static_cast<std::uint32_t>(u)} << 32 | static_cast<std::uint32_t>(v);
    }
    bool operator==(const TileKey& other) const { return u == other.u && v == other.v; }
};

// The tile of the UV record at `offset` (its first pair). The caller has checked that
// the record lies in the buffer.
TileKey recordTile(const NeqView& file, std::size_t offset);

// Gathers distinct tiles. Names are made once per distinct tile, not once per face.
class TileCollector {
  public:
    void add(TileKey key);
    UVTileSet tiles() const;

  private:
    std::unordered_set<std::uint64_t> keys_;
    std::uint64_t lastKey_ = 0;
    bool hasLast_ = false;
};

struct UvTileScan {
    UVTileSet tiles;
    std::string lastTileName; // the tile of the last UV record; empty with no records
};

// The tiles of the file's UV block, or nullopt when it has none (see findRecordBlock for
// what counts as absent and how a count is clamped to the records present).
std::optional<UvTileScan> scanUvTiles(const NeqView& file);

// Loads the file and scans it. Returns the number of tiles, -17 when the file cannot be
// opened, -18 when it has no UV block; `scan` is filled only on success.
float listUvTiles(const char* path, UvTileScan& scan);

} // namespace neq::meshfile
