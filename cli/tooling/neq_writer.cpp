#include "tooling/neq_writer.h"

#include "meshfile/neq_file.h"

#include <cstdio>
#include <cstring>

namespace neq::meshfile {
namespace {

// Any tag the readers do not look for; the OBJ export skips exactly one such block.
constexpr std::uint32_t kSkippedTag = 15001;

void putU32(NeqBytes& out, std::uint32_t value) {
    out.resize(out.size() + 4);
    storeU32(out.data() + out.size() - 4, value);
}

void putF32(NeqBytes& out, float value) {
    out.resize(out.size() + 4);
    storeF32(out.data() + out.size() - 4, value);
}

std::uint32_t count32(std::size_t n) {
    return static_cast<std::uint32_t>(n);
}

template <std::size_t N>
NeqBytes encodeFloatRecords(const std::vector<std::array<float, N>>& records) {
    NeqBytes out;
    out.reserve(records.size() * N * sizeof(float));
    for (const auto& record : records)
        for (float c : record)
            putF32(out, c);
    return out;
}

// The mesh's records of one kind as a block; every builder below is made of these.
void addVertices(NeqBuilder& builder, const Mesh& mesh) {
    builder.block(kVertexTag, count32(mesh.vertices.size()), encodeVertices(mesh).data(),
                  kVertexRecordSize);
}
void addFaces(NeqBuilder& builder, const Mesh& mesh) {
    builder.block(kFaceTag, count32(mesh.faces.size()), encodeFaces(mesh).data(), kFaceRecordSize);
}
void addColours(NeqBuilder& builder, const Mesh& mesh) {
    builder.block(kColourTag, count32(mesh.colours.size()), encodeColours(mesh).data(),
                  kColourRecordSize);
}

} // namespace

NeqBuilder::NeqBuilder() {
    static const char kHeader[kFileHeaderSize] = "NeQ mesh - neqbridge writer";
    bytes_.assign(kHeader, kHeader + sizeof kHeader);
}

NeqBuilder& NeqBuilder::block(std::uint32_t tag, std::uint32_t count, const void* records,
                              std::size_t recordSize) {
    const std::size_t recordBytes = static_cast<std::size_t>(count) * recordSize;
    putU32(bytes_, tag);
    putU32(bytes_, count32(kBlockHeaderSize + recordBytes));
    putU32(bytes_, count);
    putU32(bytes_, 0);
    return raw(records, recordBytes);
}

NeqBuilder& NeqBuilder::raw(const void* data, std::size_t size) {
    if (size == 0) return *this;
    const std::size_t used = bytes_.size();
    bytes_.resize(used + size);
    std::memcpy(bytes_.data() + used, data, size);
    return *this;
}

NeqBuilder& NeqBuilder::terminator() {
    bytes_.insert(bytes_.end(), kBlockHeaderSize, 0);
    return *this;
}

NeqBytes encodeVertices(const Mesh& mesh) {
    return encodeFloatRecords(mesh.vertices);
}

NeqBytes encodeFaces(const Mesh& mesh) {
    NeqBytes out;
    out.reserve(mesh.faces.size() * kFaceRecordSize);
    for (const auto& f : mesh.faces)
        for (std::int32_t index : f)
            putU32(out, static_cast<std::uint32_t>(index));
    return out;
}

NeqBytes encodeUvs(const Mesh& mesh) {
    return encodeFloatRecords(mesh.uvs);
}

NeqBytes encodeColours(const Mesh& mesh) {
    NeqBytes out;
    out.reserve(mesh.colours.size() * kColourRecordSize);
    for (const Rgb& c : mesh.colours) {
        out.push_back(c.blue);
        out.push_back(c.green);
        out.push_back(c.red);
        out.push_back(0);
    }
    return out;
}

NeqBytes encodeGroups(const Mesh& mesh) {
    NeqBytes out;
    out.reserve(mesh.groups.size() * kGroupRecordSize);
    for (std::int16_t g : mesh.groups) {
        const auto bits = static_cast<std::uint16_t>(g);
        out.push_back(static_cast<std::uint8_t>(bits));
        out.push_back(static_cast<std::uint8_t>(bits >> 8));
    }
    return out;
}

NeqBytes buildNeqChain(const Mesh& mesh) {
    NeqBuilder builder;
    addVertices(builder, mesh);
    if (!mesh.faces.empty()) addFaces(builder, mesh);
    if (!mesh.uvs.empty())
        builder.block(kUvTag, count32(mesh.uvs.size()), encodeUvs(mesh).data(), kUvRecordSize);
    if (!mesh.colours.empty()) addColours(builder, mesh);
    if (!mesh.groups.empty())
        builder.block(kGroupTag, count32(mesh.groups.size()), encodeGroups(mesh).data(),
                      kGroupRecordSize);
    return builder.terminator().take();
}

NeqBytes buildNeqForObjExport(const Mesh& mesh) {
    static const std::uint8_t kGap[4] = {0, 0, 0, 0};
    NeqBuilder builder;
    addVertices(builder, mesh);
    builder.block(kSkippedTag, 0, nullptr, 0).raw(kGap, sizeof kGap);
    addColours(builder, mesh);
    addFaces(builder, mesh);
    return builder.terminator().take();
}

NeqBytes buildNeqFacesFirst(const Mesh& mesh) {
    NeqBuilder builder;
    addFaces(builder, mesh);
    return builder.terminator().take();
}

NeqBytes buildNeqColoursFirst(const Mesh& mesh) {
    NeqBuilder builder;
    addColours(builder, mesh);
    return builder.terminator().take();
}

bool writeBytesToFile(const std::string& path, const NeqBytes& bytes) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && written;
}

} // namespace neq::meshfile
