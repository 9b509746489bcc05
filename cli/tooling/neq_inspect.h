#pragma once

// A NeQ file described block by block, with what is malformed in it: what `neqbridge
// info` prints. Reading only; every field is checked against the loaded buffer.

#include "meshfile/neq_file.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace neq::meshfile {

struct BlockInfo {
    std::uint64_t offset = 0;
    // Nullopt for fields of a block header cut off by the end of the file.
    std::optional<std::uint32_t> tag, length, count;
    bool endOfChain = false;
    std::vector<std::string> problems;
};

struct ChainInfo {
    std::uint64_t size = 0;
    std::vector<BlockInfo> blocks;
    bool terminated = false;
    std::uint64_t bytesAfterChain = 0;
    std::vector<std::string> problems; // about the file as a whole

    bool wellFormed() const {
        if (!problems.empty()) return false;
        for (const BlockInfo& block : blocks)
            if (!block.problems.empty()) return false;
        return true;
    }
};

// Files made for the OBJ export are not a chain the walk can follow (the export finds
// its colour block by its own arithmetic), so they are checked as the export reads them.
struct ObjLayoutInfo {
    bool applies = false; // the file starts with a vertex block
    std::optional<std::uint64_t> colourBlock, faceBlock;
    std::optional<std::uint32_t> colourTag, faceTag;

    bool ready() const { return applies && colourTag == kColourTag && faceTag == kFaceTag; }
};

// The name of a block for people: "end-of-chain", "vertex", ..., "unknown".
std::string kindOf(const BlockInfo& block);

// The header fields of the block at `offset`, each nullopt where it is cut off.
BlockInfo blockHeaderAt(const NeqView& file, std::uint64_t offset);

// The walk of the readers, from offset 32 until the end-of-chain block or the end of
// the file, with the problems of each block and of the file as a whole.
ChainInfo describeChain(const NeqView& file);

// Where the OBJ export looks for its colour and face blocks, and what it finds there.
ObjLayoutInfo describeObjLayout(const NeqView& file);

} // namespace neq::meshfile
