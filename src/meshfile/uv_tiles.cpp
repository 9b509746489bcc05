#include "meshfile/uv_tiles.h"

#include "foundation/file_name_extract.h"
#include "foundation/number_format.h"
#include "meshfile/neq_file.h"

#include <algorithm>
#include <cmath>
#include <cstring>
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

ReadOutcome listUvTiles(const char* path, UvTileScan& scan) {
    NeqBytes bytes;
    if (!loadNeqFile(path, bytes)) return {ReadStatus::CannotOpen};
    std::optional<UvTileScan> found = scanUvTiles(NeqView(bytes));
    if (!found) return {ReadStatus::NoBlock};
    scan = std::move(*found);
    return {ReadStatus::Done, scan.tiles.size()};
}

} // namespace neq::meshfile

namespace neq::meshfile {
namespace {

constexpr std::size_t kPairSize = 8;
constexpr std::size_t kPairsPerRecord = kUvRecordSize / kPairSize;
// Pairs handed to the output buffer at a time; well under its size.
constexpr std::size_t kPairsPerChunk = 64 * 1024;
static_assert(kPairsPerChunk * kPairSize <= TextWriter::kDefaultBufferSize);

// A pair outside the tile being written.
const std::array<std::uint8_t, kPairSize> kOutsidePair = [] {
    std::array<std::uint8_t, kPairSize> pair{};
    storeF32(pair.data(), -1.0f);
    storeF32(pair.data() + 4, -1.0f);
    return pair;
}();

const std::uint8_t kEndBlock[kBlockHeaderSize] = {};

} // namespace

std::optional<UvTileSplit> UvTileSplit::plan(const NeqView& file) {
    const std::optional<RecordBlock> block = findRecordBlock(file, kUvTag, kUvRecordSize);
    if (!block) return std::nullopt;
    UvTileSplit split(file);
    split.prefixSize_ = static_cast<std::size_t>(block->headerEnd());

    // The count is clamped to the buffer, so these sizes are bounded by the file.
    const auto pairs = static_cast<std::size_t>(block->count * kPairsPerRecord);
    split.pairTile_.resize(pairs);
    split.pairLocal_.resize(pairs);
    TileCollector collector;
    std::size_t offset = split.prefixSize_;
    for (std::size_t pair = 0; pair < pairs; ++pair, offset += kPairSize) {
        const TileCoordinate u = splitCoordinate(file.f32Unchecked(offset));
        const TileCoordinate v = splitCoordinate(file.f32Unchecked(offset + 4));
        const TileKey key{u.tile, v.tile};
        // The first pair of a record decides the record's tile.
        if (pair % kPairsPerRecord == 0) collector.add(key);
        split.pairTile_[pair] = key.packed();
        storeF32(split.pairLocal_[pair].data(), u.local);
        storeF32(split.pairLocal_[pair].data() + 4, v.local);
    }
    const UVTileSet tiles = collector.tiles();
    split.tiles_.assign(tiles.begin(), tiles.end());
    return split;
}

std::uint64_t UvTileSplit::tileFileSize() const {
    return prefixSize_ + pairCount() * kPairSize + sizeof kEndBlock;
}

void UvTileSplit::fillPairs(std::size_t k, std::size_t first, std::size_t count,
                            std::uint8_t* out) const {
    const std::uint64_t tile = TileKey{tiles_[k].u, tiles_[k].v}.packed();
    for (std::size_t pair = first; pair < first + count; ++pair, out += kPairSize) {
        const std::uint8_t* bytes =
            pairTile_[pair] == tile ? pairLocal_[pair].data() : kOutsidePair.data();
        std::memcpy(out, bytes, kPairSize);
    }
}

NeqBytes UvTileSplit::tileImage(std::size_t k) const {
    NeqBytes image(static_cast<std::size_t>(tileFileSize()), 0);
    std::memcpy(image.data(), file_.data(), prefixSize_);
    fillPairs(k, 0, pairLocal_.size(), image.data() + prefixSize_);
    return image; // the closing 16 bytes are already zero
}

bool UvTileSplit::writeTileFile(std::size_t k, const char* path, FileSink& file,
                                TextWriter& out) const {
    if (!file.open(path)) return false;
    out.append(file_.data(), prefixSize_);
    for (std::size_t first = 0; first < pairLocal_.size(); first += kPairsPerChunk) {
        const std::size_t count = std::min(kPairsPerChunk, pairLocal_.size() - first);
        char* chunk = out.reserve(count * kPairSize);
        fillPairs(k, first, count, reinterpret_cast<std::uint8_t*>(chunk));
        out.commit(chunk + count * kPairSize);
    }
    out.append(kEndBlock, sizeof kEndBlock);
    return out.flush() && file.close();
}

ReadOutcome UvTileSplit::writeTileFiles(const std::string& stem,
                                        std::vector<std::string>& names) const {
    // One buffer for every tile file.
    FileSink file;
    TextWriter out(file);
    for (std::size_t k = 0; k < tiles_.size(); ++k) {
        if (!writeTileFile(k, uvTileFilePath(stem, k).c_str(), file, out))
            return {ReadStatus::CannotWrite, k};
        names.push_back(tiles_[k].name);
    }
    return {ReadStatus::Done, tiles_.size()};
}

std::string uvTileFileStem(const std::string& base) {
    std::string path = base;
    return FileNameExtract(path, 3);
}

std::string uvTileFilePath(const std::string& stem, std::size_t position) {
    char digits[kMaxIntChars];
    char* end = formatInt(digits, static_cast<std::int64_t>(position));
    return stem + std::string(digits, static_cast<std::size_t>(end - digits)) + ".NeQ";
}

ReadOutcome splitUvTiles(const char* path, const char* base, std::vector<std::string>& names) {
    names.clear();
    NeqBytes bytes;
    if (!loadNeqFile(path, bytes)) return {ReadStatus::CannotOpen};
    const std::optional<UvTileSplit> split = UvTileSplit::plan(NeqView(bytes));
    if (!split) return {ReadStatus::NoBlock};
    if (base == nullptr)
        return {split->tiles().empty() ? ReadStatus::Done : ReadStatus::CannotWrite, 0};
    return split->writeTileFiles(uvTileFileStem(base), names);
}

} // namespace neq::meshfile
