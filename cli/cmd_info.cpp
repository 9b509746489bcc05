#include "args.h"
#include "command.h"
#include "json_text.h"
#include "neq_input.h"

#include "meshfile/neq_file.h"
#include "meshfile/obj_export.h"
#include "tooling/neq_inspect.h"

#include <cstdio>
#include <optional>
#include <string>

namespace neq::cli {
namespace {

using meshfile::BlockInfo;
using meshfile::ChainInfo;
using meshfile::NeqView;
using meshfile::ObjLayoutInfo;

std::string describeExpected(const char* block, const std::optional<std::uint64_t>& offset,
                             const std::optional<std::uint32_t>& tag) {
    if (!offset) return std::string(block) + " block: its offset lies past the end";
    return std::string(block) + " block at " + std::to_string(*offset) + ": found " +
           meshfile::describeFoundTag(tag);
}

std::string field(const std::optional<std::uint32_t>& value) {
    return value ? std::to_string(*value) : std::string("-");
}

// A file in the OBJ export's layout is not a chain the block walk can follow: its
// colour block sits 4 bytes past where a chain would put it. It is named as what it is.
bool inExportLayout(const ChainInfo& chain, const ObjLayoutInfo& obj) {
    return obj.ready() && !chain.wellFormed();
}

void printBlocks(const std::vector<BlockInfo>& blocks) {
    if (!blocks.empty())
        std::printf("  %10s %10s  %-13s %10s %10s\n", "offset", "tag", "block", "length", "count");
    for (const BlockInfo& block : blocks) {
        std::printf("  %10llu %10s  %-13s %10s %10s\n",
                    static_cast<unsigned long long>(block.offset), field(block.tag).c_str(),
                    kindOf(block).c_str(), field(block.length).c_str(), field(block.count).c_str());
        for (const std::string& problem : block.problems)
            std::printf("      problem: %s\n", problem.c_str());
    }
}

void printExportLayout(const NeqView& file, const ObjLayoutInfo& obj) {
    const BlockInfo vertices = meshfile::blockHeaderAt(file, meshfile::kFirstBlockOffset);
    printBlocks({vertices,
                 meshfile::blockHeaderAt(file, meshfile::kFirstBlockOffset + *vertices.length),
                 meshfile::blockHeaderAt(file, *obj.colourBlock),
                 meshfile::blockHeaderAt(file, *obj.faceBlock)});
    std::puts("layout: the host's OBJ export layout, not a plain block chain: the colour block "
              "sits 4 bytes after the end of the block after the vertex block, the face block "
              "right after the colours");
    std::puts("OBJ export: ready");
}

void printText(const std::string& path, const NeqView& file, const ChainInfo& chain,
               const ObjLayoutInfo& obj) {
    std::printf("%s: %llu bytes\n", path.c_str(), static_cast<unsigned long long>(chain.size));
    if (inExportLayout(chain, obj)) return printExportLayout(file, obj);
    printBlocks(chain.blocks);
    if (chain.bytesAfterChain != 0)
        std::printf("  note: %llu bytes after the end of the chain\n",
                    static_cast<unsigned long long>(chain.bytesAfterChain));
    for (const std::string& problem : chain.problems)
        std::printf("  problem: %s\n", problem.c_str());
    std::puts(chain.wellFormed() ? "block chain: well formed" : "block chain: malformed");
    if (chain.wellFormed() && obj.applies && !obj.ready())
        std::puts("OBJ export: the host's export would need the colour block 4 bytes after the "
                  "end of the block after the vertex block and the face block right after the "
                  "colours; neqbridge obj lays the file out so itself");
    else if (obj.applies)
        std::printf("OBJ export layout: %s; %s: %s\n",
                    describeExpected("colour", obj.colourBlock, obj.colourTag).c_str(),
                    describeExpected("face", obj.faceBlock, obj.faceTag).c_str(),
                    obj.ready() ? "ready" : "not ready");
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
           ",\"objExport\":" + jsonObjLayout(obj) +
           ",\"layout\":" + (inExportLayout(chain, obj) ? "\"objExport\"" : "\"chain\"") + "}\n";
    std::fputs(out.c_str(), stdout);
}

int run(const std::vector<std::string>& args) {
    const ParsedArgs parsed = parseArgs(kInfoCommand, args);
    parsed.requirePositionals(1, 1);
    const std::string& path = parsed.positional[0];
    const meshfile::NeqBytes bytes = loadNeqOrFail(path);
    // The loader appends one repeat of the last byte; describe the file as it is on disk
    // so that a block cut short by one byte is reported.
    const NeqView file(bytes.data(), bytes.size() - 1);
    const ChainInfo chain = describeChain(file);
    const ObjLayoutInfo obj = describeObjLayout(file);
    if (parsed.has("--json"))
        printJson(path, chain, obj);
    else
        printText(path, file, chain, obj);
    return chain.wellFormed() || obj.ready() ? kExitOk : kExitFailed;
}

} // namespace

const Command kInfoCommand = {
    "info",
    "list the blocks of a NeQ file",
    "FILE [--json]",
    "Lists the blocks of the NeQ mesh file FILE and says what is malformed. The chain is "
    "walked as the library's readers walk it: from offset 32, each block skipped by its "
    "length (16 bytes when it is 0) until the end-of-chain block or the end of the file. "
    "Each block shows its offset, tag and kind, length and record count; problems are a "
    "file shorter than its header, a truncated block header, a block past the end of the "
    "file, a length shorter than a header, a count that does not match the length, and a "
    "missing end-of-chain block. A file that starts with a vertex block is also checked "
    "the way the OBJ export reads it (the colour block 4 bytes after the end of the block "
    "after the vertex block, the face block after the colours); a file in that layout is "
    "named so and listed by its four blocks. Exit status 0 means the chain is well formed "
    "or the file in the OBJ export layout, 1 that neither is.",
    {{"FILE", "NeQ mesh file"}},
    {{"--json", nullptr, "print the same as one JSON object"}},
    run,
};

} // namespace neq::cli
