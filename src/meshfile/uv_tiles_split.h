#pragma once

// Splits a NeQ file's UV block into one NeQ file per UV tile. Each tile file is the
// input's prefix (file header, every block before the UV block and the UV block's own
// header, byte for byte), then every (u, v) pair of the block in file order, moved into
// the tile's unit square or marked -1, -1 when it lies outside the tile, then 16 zero
// bytes. Blocks after the UV block are not copied.

#include "foundation/output_file.h"
#include "meshfile/neq_bytes.h"
#include "meshfile/uv_tiles.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace neq::meshfile {

// Host codes of the split, besides the tile count and kNoUvBlockResult.
constexpr float kSplitCannotOpenResult = -1760.0f;
// Plus k + 1 when the file of the tile at 0-based position k cannot be written.
constexpr float kSplitCannotCreateBase = 1500.0f;

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
    // `names` once its file is complete. Returns the tile count, or 1500 + k + 1 when
    // file k cannot be created or written (disk full counts too); files and names
    // before it stay.
    float writeTileFiles(const std::string& stem, std::vector<std::string>& names) const;

  private:
    using PairBytes = std::array<std::uint8_t, 8>; // u then v, little-endian floats

    explicit UvTileSplit(const NeqView& file) : file_(file) {}
    // Writes `count` pairs of tile k's block, starting at pair `first`, to `out`.
    void fillPairs(std::size_t k, std::size_t first, std::size_t count, std::uint8_t* out) const;
    bool writeTileFile(std::size_t k, const char* path, OutputFile& out) const;

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

// Empties `names`, loads the file and writes its tile files next to `base`. Returns the
// tile count, -1760 when the file cannot be opened, -18 without a UV block, or
// 1500 + k + 1 as above. A null base names no creatable file: 1501 unless there are no
// tiles.
float splitUvTiles(const char* path, const char* base, std::vector<std::string>& names);

} // namespace neq::meshfile
