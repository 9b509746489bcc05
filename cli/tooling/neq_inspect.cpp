#include "tooling/neq_inspect.h"

#include "meshfile/obj_export.h"

namespace neq::meshfile {
namespace {

// Problems of one block whose tag and length could be read.
void checkBlock(const NeqView& file, BlockInfo& block) {
    const std::uint32_t length = *block.length;
    const std::uint64_t left = file.size() - block.offset;
    const std::uint64_t step = length == 0 ? kBlockHeaderSize : length;
    if (step > left)
        block.problems.push_back("runs past the end of the file: " + std::to_string(step) +
                                 " bytes, " + std::to_string(left) + " left");
    if (length != 0 && length < kBlockHeaderSize)
        block.problems.push_back("length " + std::to_string(length) +
                                 " is shorter than the 16-byte block header");
    const std::uint64_t size = recordSizeOf(*block.tag);
    if (size == 0 || !block.count) return;
    const std::uint64_t needed = kBlockHeaderSize + *block.count * size;
    // A length of 0 is fine for a block without records; readers skip it as 16 bytes.
    if (needed != (length == 0 ? kBlockHeaderSize : length))
        block.problems.push_back("count " + std::to_string(*block.count) + " needs length " +
                                 std::to_string(needed) + " (16 + " + std::to_string(*block.count) +
                                 " x " + std::to_string(size) + "), but the length is " +
                                 std::to_string(length));
}

} // namespace

std::string kindOf(const BlockInfo& block) {
    if (block.endOfChain) return "end-of-chain";
    return block.tag ? blockKindName(*block.tag) : "unknown";
}

BlockInfo blockHeaderAt(const NeqView& file, std::uint64_t offset) {
    BlockInfo block;
    block.offset = offset;
    block.tag = file.u32(offset);
    block.length = file.u32(offset + kBlockLengthOffset);
    block.count = file.u32(offset + kBlockCountOffset);
    return block;
}

// Positions only grow (a step is at least 1), so the walk always ends.
ChainInfo describeChain(const NeqView& file) {
    ChainInfo chain;
    chain.size = file.size();
    if (file.size() < kFileHeaderSize) {
        chain.problems.push_back("the file is " + std::to_string(file.size()) +
                                 " bytes, shorter than the 32-byte file header");
        return chain;
    }
    std::uint64_t position = kFileHeaderSize;
    while (position < file.size()) {
        BlockInfo block = blockHeaderAt(file, position);
        if (!file.fits(position, kBlockHeaderSize))
            block.problems.push_back("truncated block header: " +
                                     std::to_string(file.size() - position) + " of 16 bytes");
        block.endOfChain = block.tag == 0u && block.length == 0u;
        if (block.tag && block.length && !block.endOfChain) checkBlock(file, block);
        chain.blocks.push_back(block);
        if (block.endOfChain || !block.length) {
            chain.terminated = block.endOfChain;
            break;
        }
        position += *block.length == 0 ? kBlockHeaderSize : *block.length;
    }
    if (!chain.terminated) {
        chain.problems.push_back("no end-of-chain block (16 zero bytes) before the end of the "
                                 "file");
    } else {
        // Not a problem: readers never look past the end of the chain.
        const std::uint64_t end = chain.blocks.back().offset + kBlockHeaderSize;
        chain.bytesAfterChain = end < file.size() ? file.size() - end : 0;
    }
    return chain;
}

ObjLayoutInfo describeObjLayout(const NeqView& file) {
    ObjLayoutInfo info;
    info.applies = file.u32(kFirstBlockOffset) == kVertexTag;
    if (!info.applies) return info;
    const ObjExportLayout layout = locateObjExportBlocks(file);
    info.colourBlock = layout.colourBlock;
    info.faceBlock = layout.faceBlock;
    if (layout.colourBlock) info.colourTag = file.u32(*layout.colourBlock);
    if (layout.faceBlock) info.faceTag = file.u32(*layout.faceBlock);
    return info;
}

} // namespace neq::meshfile
