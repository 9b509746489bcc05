#include "neq_input.h"

#include "command.h"
#include "files.h"

#include "api/result_codes.h"
#include "meshfile/neq_file.h"
#include "meshfile/obj_export.h"
#include "tooling/neq_inspect.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <cerrno>
#include <optional>

namespace neq::cli {

meshfile::NeqBytes loadNeqOrFail(const std::string& path) {
    requireInputFile(path);
    meshfile::NeqBytes bytes;
    errno = 0;
    if (!meshfile::loadNeqFile(path.c_str(), bytes))
        throw Failure("cannot read input " + quoted(path) + ": " + reasonOf(errno) +
                      codeDetail(api::kCannotOpenInput));
    return bytes;
}

namespace {

using meshfile::NeqBytes;
using meshfile::NeqView;

// The block of `tag` and its bytes as far as its length field says (at least its header,
// at most to the end of the file); fails when the file has none.
std::pair<std::uint64_t, std::uint64_t> blockOrFail(const NeqView& file, std::uint32_t tag,
                                                    const std::string& path,
                                                    const std::string& role) {
    const std::optional<std::uint64_t> at = meshfile::findBlock(file, tag);
    if (!at)
        throw Failure(role + " " + quoted(path) + " has no " + meshfile::blockKindName(tag) +
                      " block (tag " + std::to_string(tag) + ")");
    const std::uint64_t length = file.u32(*at + meshfile::kBlockLengthOffset).value_or(0);
    const std::uint64_t wanted = std::max<std::uint64_t>(length, meshfile::kBlockHeaderSize);
    return {*at, std::min<std::uint64_t>(wanted, file.size() - *at)};
}

// Appends up to `size` bytes from `offset`, never past the end of the file.
void append(NeqBytes& to, const NeqView& file, std::uint64_t offset, std::uint64_t size) {
    if (offset >= file.size()) return;
    const std::uint64_t end = offset + std::min<std::uint64_t>(size, file.size() - offset);
    to.insert(to.end(), file.data() + offset, file.data() + end);
}

} // namespace

NeqBytes loadWithBlockFirst(const std::string& path, std::uint32_t tag, const std::string& role) {
    NeqBytes bytes = loadNeqOrFail(path);
    const NeqView file(bytes);
    if (file.u32(meshfile::kFirstBlockOffset) == tag) return bytes;
    const std::uint64_t at = blockOrFail(file, tag, path, role).first;
    NeqBytes laid(bytes.begin(), bytes.begin() + meshfile::kFirstBlockOffset);
    append(laid, file, at, file.size() - at);
    return laid;
}

NeqBytes loadInExportLayout(const std::string& path, const std::string& role) {
    NeqBytes bytes = loadNeqOrFail(path);
    const NeqView file(bytes);
    if (meshfile::describeObjLayout(file).ready()) return bytes;
    const auto vertices = blockOrFail(file, meshfile::kVertexTag, path, role);
    const auto colours = blockOrFail(file, meshfile::kColourTag, path, role);
    const auto faces = blockOrFail(file, meshfile::kFaceTag, path, role);
    NeqBytes laid(bytes.begin(), bytes.begin() + meshfile::kFirstBlockOffset);
    append(laid, file, vertices.first, vertices.second);
    // The block the export skips: an empty one of 16 bytes, then the 4 bytes it leaves.
    const std::uint8_t skipped[meshfile::kBlockHeaderSize + 4] = {0, 0, 0, 0, 16};
    laid.insert(laid.end(), std::begin(skipped), std::end(skipped));
    // The export reads the colour records by their count and the faces right after them.
    const std::uint64_t colourCount =
        file.u32(colours.first + meshfile::kBlockCountOffset).value_or(0);
    const std::uint64_t colourRecords = file.recordsThatFit(
        colours.first + meshfile::kBlockHeaderSize, colourCount, meshfile::kColourRecordSize);
    append(laid, file, colours.first,
           meshfile::kBlockHeaderSize + colourRecords * meshfile::kColourRecordSize);
    append(laid, file, faces.first, file.size() - faces.first);
    return laid;
}

} // namespace neq::cli
