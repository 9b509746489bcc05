#include "args.h"
#include "command.h"

#include "meshfile/neq_bytes.h"
#include "meshfile/neq_format.h"
#include "meshfile/obj_export.h"
#include "meshfile/obj_export_outcome.h"

#include <cstdio>
#include <optional>
#include <string>

namespace neq::cli {
namespace {

using meshfile::NeqView;

const char kHelp[] =
    "usage: neqbridge info FILE [--json]\n"
    "\n"
    "Lists the blocks of the NeQ mesh file FILE and says what is malformed. The chain is\n"
    "walked as the library's readers walk it: from offset 32 (after the 32-byte file\n"
    "header), each block is skipped by its length (16 bytes when the length is 0) until\n"
    "the end-of-chain block (tag 0, length 0) or the end of the file.\n"
    "\n"
    "For each block: its offset, its tag and what the tag means (vertex 10001, face\n"
    "20001, UV 25001, colour 35001, group 40001, end-of-chain, unknown), its length in\n"
    "bytes counted from the tag, and its record count. Reported as problems: a file\n"
    "shorter than its header, a truncated block header, a block running past the end of\n"
    "the file, a length shorter than a block header, a record count that does not match\n"
    "the length, a missing end-of-chain block. Bytes after the end of the chain are noted.\n"
    "\n"
    "A file that starts with a vertex block is also checked the way the OBJ export reads\n"
    "it (`neqbridge obj`): the colour block 4 bytes after the end of the block that\n"
    "follows the vertex block, the face block straight after the colour records. Such\n"
    "files are not a chain the walk can follow, so their chain reads as malformed.\n"
    "\n"
    "options:\n"
    "  --json   print one JSON object instead: {\"file\", \"size\", \"blocks\": [{\"offset\",\n"
    "           \"tag\", \"kind\", \"length\", \"count\", \"problems\": [...]}, ...],\n"
    "           \"terminated\", \"bytesAfterChain\", \"problems\": [...], \"wellFormed\"};\n"
    "           a field of a truncated block header is null; then \"objExport\": null,\n"
    "           or {\"colourBlock\", \"colourTag\", \"faceBlock\", \"faceTag\", \"ready\"}.\n"
    "\n"
    "exit status: 0 the chain is well formed or the OBJ export layout is ready,\n"
    "             1 malformed or not readable, 2 wrong command line\n"
    "\n"
    "example: neqbridge info mesh.neq --json\n";

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

std::uint64_t recordSize(std::uint32_t tag) {
    switch (tag) {
    case meshfile::kVertexTag:
        return meshfile::kVertexRecordSize;
    case meshfile::kFaceTag:
        return meshfile::kFaceRecordSize;
    case meshfile::kUvTag:
        return meshfile::kUvRecordSize;
    case meshfile::kColourTag:
        return meshfile::kColourRecordSize;
    case meshfile::kGroupTag:
        return meshfile::kGroupRecordSize;
    default:
        return 0;
    }
}

std::string kindOf(const BlockInfo& block) {
    if (block.endOfChain) return "end-of-chain";
    return block.tag ? meshfile::blockKindName(*block.tag) : "unknown";
}

// Problems of one block whose tag and length could be read.
void checkBlock(const NeqView& file, BlockInfo& block) {
    const std::uint32_t length = *block.length;
    const std::uint64_t left = file.size() - block.offset;
    const std::uint64_t step = length == 0 ? meshfile::kBlockHeaderSize : length;
    if (step > left)
        block.problems.push_back("runs past the end of the file: " + std::to_string(step) +
                                 " bytes, " + std::to_string(left) + " left");
    if (length != 0 && length < meshfile::kBlockHeaderSize)
        block.problems.push_back("length " + std::to_string(length) +
                                 " is shorter than the 16-byte block header");
    const std::uint64_t size = recordSize(*block.tag);
    if (size == 0 || !block.count) return;
    const std::uint64_t needed = meshfile::kBlockHeaderSize + *block.count * size;
    // A length of 0 is fine for a block without records; readers skip it as 16 bytes.
    if (needed != (length == 0 ? meshfile::kBlockHeaderSize : length))
        block.problems.push_back("count " + std::to_string(*block.count) + " needs length " +
                                 std::to_string(needed) + " (16 + " + std::to_string(*block.count) +
                                 " x " + std::to_string(size) + "), but the length is " +
                                 std::to_string(length));
}

// The walk of the readers, from offset 32 until the end-of-chain block or the end of
// the file. Positions only grow (a step is at least 1), so it always ends.
ChainInfo describeChain(const NeqView& file) {
    ChainInfo chain;
    chain.size = file.size();
    if (file.size() < meshfile::kFileHeaderSize) {
        chain.problems.push_back("the file is " + std::to_string(file.size()) +
                                 " bytes, shorter than the 32-byte file header");
        return chain;
    }
    std::uint64_t position = meshfile::kFileHeaderSize;
    while (position < file.size()) {
        BlockInfo block;
        block.offset = position;
        block.tag = file.u32(position);
        block.length = file.u32(position + meshfile::kBlockLengthOffset);
        block.count = file.u32(position + meshfile::kBlockCountOffset);
        if (!file.fits(position, meshfile::kBlockHeaderSize))
            block.problems.push_back("truncated block header: " +
                                     std::to_string(file.size() - position) + " of 16 bytes");
        block.endOfChain = block.tag == 0u && block.length == 0u;
        if (block.tag && block.length && !block.endOfChain) checkBlock(file, block);
        chain.blocks.push_back(block);
        if (block.endOfChain || !block.length) {
            chain.terminated = block.endOfChain;
            break;
        }
        position += *block.length == 0 ? meshfile::kBlockHeaderSize : *block.length;
    }
    if (!chain.terminated) {
        chain.problems.push_back("no end-of-chain block (16 zero bytes) before the end of the "
                                 "file");
    } else {
        // Not a problem: readers never look past the end of the chain.
        const std::uint64_t end = chain.blocks.back().offset + meshfile::kBlockHeaderSize;
        chain.bytesAfterChain = end < file.size() ? file.size() - end : 0;
    }
    return chain;
}

// Files made for the OBJ export are not a chain the walk can follow (the export finds
// its colour block by its own arithmetic), so they are checked as the export reads them.
struct ObjLayoutInfo {
    bool applies = false; // the file starts with a vertex block
    std::optional<std::uint64_t> colourBlock, faceBlock;
    std::optional<std::uint32_t> colourTag, faceTag;

    bool ready() const {
        return applies && colourTag == meshfile::kColourTag && faceTag == meshfile::kFaceTag;
    }
};

ObjLayoutInfo describeObjLayout(const NeqView& file) {
    ObjLayoutInfo info;
    info.applies = file.u32(meshfile::kFirstBlockOffset) == meshfile::kVertexTag;
    if (!info.applies) return info;
    const meshfile::ObjExportLayout layout = meshfile::locateObjExportBlocks(file);
    info.colourBlock = layout.colourBlock;
    info.faceBlock = layout.faceBlock;
    if (layout.colourBlock) info.colourTag = file.u32(*layout.colourBlock);
    if (layout.faceBlock) info.faceTag = file.u32(*layout.faceBlock);
    return info;
}

std::string describeExpected(const char* block, const std::optional<std::uint64_t>& offset,
                             const std::optional<std::uint32_t>& tag) {
    if (!offset) return std::string(block) + " block: its offset lies past the end";
    return std::string(block) + " block at " + std::to_string(*offset) + ": found " +
           meshfile::describeFoundTag(tag);
}

std::string field(const std::optional<std::uint32_t>& value) {
    return value ? std::to_string(*value) : std::string("-");
}

void printText(const std::string& path, const ChainInfo& chain, const ObjLayoutInfo& obj) {
    std::printf("%s: %llu bytes\n", path.c_str(), static_cast<unsigned long long>(chain.size));
    if (!chain.blocks.empty())
        std::printf("  %10s %10s  %-13s %10s %10s\n", "offset", "tag", "block", "length", "count");
    for (const BlockInfo& block : chain.blocks) {
        std::printf("  %10llu %10s  %-13s %10s %10s\n",
                    static_cast<unsigned long long>(block.offset), field(block.tag).c_str(),
                    kindOf(block).c_str(), field(block.length).c_str(), field(block.count).c_str());
        for (const std::string& problem : block.problems)
            std::printf("      problem: %s\n", problem.c_str());
    }
    if (chain.bytesAfterChain != 0)
        std::printf("  note: %llu bytes after the end of the chain\n",
                    static_cast<unsigned long long>(chain.bytesAfterChain));
    for (const std::string& problem : chain.problems)
        std::printf("  problem: %s\n", problem.c_str());
    std::puts(chain.wellFormed() ? "block chain: well formed" : "block chain: malformed");
    if (obj.applies)
        std::printf("OBJ export layout: %s; %s: %s\n",
                    describeExpected("colour", obj.colourBlock, obj.colourTag).c_str(),
                    describeExpected("face", obj.faceBlock, obj.faceTag).c_str(),
                    obj.ready() ? "ready" : "not ready");
}

std::string jsonString(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (byte < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", byte);
            out += escaped;
        } else {
            out += c;
        }
    }
    return out + '"';
}

template <class Number> std::string jsonField(const std::optional<Number>& value) {
    return value ? std::to_string(*value) : std::string("null");
}

std::string jsonList(const std::vector<std::string>& items) {
    std::string out = "[";
    for (std::size_t i = 0; i < items.size(); ++i)
        out += (i ? "," : "") + jsonString(items[i]);
    return out + "]";
}

std::string jsonObjLayout(const ObjLayoutInfo& obj) {
    if (!obj.applies) return "null";
    return "{\"colourBlock\":" + jsonField(obj.colourBlock) +
           ",\"colourTag\":" + jsonField(obj.colourTag) +
           ",\"faceBlock\":" + jsonField(obj.faceBlock) + ",\"faceTag\":" + jsonField(obj.faceTag) +
           ",\"ready\":" + (obj.ready() ? "true" : "false") + "}";
}

void printJson(const std::string& path, const ChainInfo& chain, const ObjLayoutInfo& obj) {
    std::string out = "{\"file\":" + jsonString(path) + ",\"size\":" + std::to_string(chain.size) +
                      ",\"blocks\":[";
    for (std::size_t i = 0; i < chain.blocks.size(); ++i) {
        const BlockInfo& block = chain.blocks[i];
        out += (i ? ",{" : "{");
        out += "\"offset\":" + std::to_string(block.offset) + ",\"tag\":" + jsonField(block.tag) +
               ",\"kind\":" + jsonString(kindOf(block)) + ",\"length\":" + jsonField(block.length) +
               ",\"count\":" + jsonField(block.count) +
               ",\"problems\":" + jsonList(block.problems) + "}";
    }
    out += std::string("],\"terminated\":") + (chain.terminated ? "true" : "false") +
           ",\"bytesAfterChain\":" + std::to_string(chain.bytesAfterChain) +
           ",\"problems\":" + jsonList(chain.problems) +
           ",\"wellFormed\":" + (chain.wellFormed() ? "true" : "false") +
           ",\"objExport\":" + jsonObjLayout(obj) + "}\n";
    std::fputs(out.c_str(), stdout);
}

int run(const std::vector<std::string>& args) {
    ParsedArgs parsed;
    std::string error;
    if (!parseArgs(args, {}, {"--json"}, parsed, error)) return usageError(kInfoCommand, error);
    if (parsed.positional.size() != 1)
        return usageError(kInfoCommand,
                          parsed.positional.empty() ? "missing FILE" : "too many arguments");
    const std::string& path = parsed.positional[0];
    meshfile::NeqBytes bytes;
    if (!meshfile::loadNeqFile(path.c_str(), bytes)) {
        printError("cannot open input file " + path);
        return kExitFailed;
    }
    // The loader appends one repeat of the last byte; describe the file as it is on disk
    // so that a block cut short by one byte is reported.
    const NeqView file(bytes.data(), bytes.size() - 1);
    const ChainInfo chain = describeChain(file);
    const ObjLayoutInfo obj = describeObjLayout(file);
    if (parsed.has("--json"))
        printJson(path, chain, obj);
    else
        printText(path, chain, obj);
    return chain.wellFormed() || obj.ready() ? kExitOk : kExitFailed;
}

} // namespace

const Command kInfoCommand = {"info", "list the blocks of a NeQ file", kHelp, run};

} // namespace neq::cli
