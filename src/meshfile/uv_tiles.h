#pragma once

// UV tiles: the unit squares of UV space a mesh's faces lie in. A face's tile is the
// tile of the first (u, v) pair of its UV record.

#include "foundation/text_writer.h"
#include "meshfile/neq_file.h"

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

namespace neq::meshfile {

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

// Loads the file and scans it. Returns Done with the number of tiles, CannotOpen, or
// NoBlock when it has no UV block; `scan` is filled only on success.
ReadOutcome listUvTiles(const char* path, UvTileScan& scan);

} // namespace neq::meshfile

// Splits a NeQ file's UV block into one NeQ file per UV tile. Each tile file is the
// input's prefix (file header, every block before the UV block and the UV block's own
// header, byte for byte), then every (u, v) pair of the block in file order, moved into
// the tile's unit square or marked -1, -1 when it lies outside the tile, then 16 zero
// bytes. Blocks after the UV block are not copied.

namespace neq::meshfile {

// Everything a split needs, worked out once: the tiles in naming order and, per pair,
// its tile and remapped bytes. Writing a tile file is then a copy and a select per pair.
// Holds a view of the file: the bytes must outlive the plan.
class UvTileSplit {
  public:
    // Nullopt when the file has no UV block. Only the records that lie wholly inside the
    // buffer are split; the copied UV block header keeps the count it claims.
    static std::optional<UvTileSplit> plan(const NeqView& file);

    const std::vector<UV_tile>& tiles() const { return tiles_; }
    std::uint64_t pairCount() const { return pairLocal_.size(); }
    std::uint64_t tileFileSize() const;

    // The whole file of the tile at position k, in memory.
    NeqBytes tileImage(std::size_t k) const;

    // Writes one file per tile, named `stem` k ".NeQ", appending each tile's name to
    // `names` once its file is complete. Returns Done with the tile count, or
    // CannotWrite with k when file k cannot be created or written (disk full counts
    // too); files and names before it stay.
    ReadOutcome writeTileFiles(const std::string& stem, std::vector<std::string>& names) const;

  private:
    using PairBytes = std::array<std::uint8_t, 8>; // u then v, little-endian floats

    explicit UvTileSplit(const NeqView& file) : file_(file) {}
    // Writes `count` pairs of tile k's block, starting at pair `first`, to `out`.
    void fillPairs(std::size_t k, std::size_t first, std::size_t count, std::uint8_t* out) const;
    bool writeTileFile(std::size_t k, const char* path, FileSink& file, TextWriter& out) const;

    NeqView file_;
    std::size_t prefixSize_ = 0;
    std::vector<UV_tile> tiles_;
    std::vector<std::uint64_t> pairTile_; // TileKey::packed() of each pair's own tile
    std::vector<PairBytes> pairLocal_;    // each pair moved into its own tile
};

// The base path up to its last "." (the whole path without one): "/tmp/Head.NeQ" ->
// "/tmp/Head".
std::string uvTileFileStem(const std::string& base);
// stem k ".NeQ": "/tmp/Head" and 1 -> "/tmp/Head1.NeQ".
std::string uvTileFilePath(const std::string& stem, std::size_t position);

// Empties `names`, loads the file and writes its tile files next to `base`. Returns Done
// with the tile count, CannotOpen, NoBlock without a UV block, or CannotWrite as above.
// A null base names no creatable file: CannotWrite with 0 unless there are no tiles.
ReadOutcome splitUvTiles(const char* path, const char* base, std::vector<std::string>& names);

} // namespace neq::meshfile
