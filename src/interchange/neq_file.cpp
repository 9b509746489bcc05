// Whole NeQ meshes: every block read and checked, and the chain the host reads written.

#include "interchange/mesh.h"

#include "foundation/file_io.h"
#include "meshfile/neq_file.h"
#include "platform/system_hints.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>

namespace neq::interchange {

namespace mf = neq::meshfile;

namespace {

// Bulk copies of little-endian records are exact on little-endian machines only.
constexpr bool kLittleEndian = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;

std::string offsetText(std::uint64_t offset) {
    return "offset " + std::to_string(offset);
}

std::string blockName(std::uint32_t tag) {
    if (mf::recordSizeOf(tag) == 0) return "block";
    return std::string(mf::blockKindName(tag)) + " block";
}

// Where a known block's records lie.
struct Records {
    std::uint64_t blockOffset = 0;
    std::uint64_t offset = 0;
    std::uint32_t count = 0;
    bool present = false;
};

// The bytes the reader takes its fields from: a file's bytes in memory, or the file
// itself, read at each block's offset straight into the mesh's arrays.
class Source {
  public:
    explicit Source(std::string_view bytes) : data_(bytes.data()), size_(bytes.size()) {}
    Source(const files::RegularFile& file, const std::string& name)
        : file_(&file), size_(file.size()), name_(&name) {}

    std::uint64_t size() const { return size_; }
    // The bytes at `offset` where they are in memory; null when read from the file.
    const char* at(std::uint64_t offset) const { return data_ ? data_ + offset : nullptr; }

    // [offset, offset + size) lies inside the file: the reader checks it first.
    void read(std::uint64_t offset, void* out, std::size_t size) const {
        if (size == 0) return; // an empty array's data() may be null, which memcpy must not get
        if (data_) {
            std::memcpy(out, data_ + offset, size);
        } else if (!file_->readAt(offset, out, size)) {
            const int error = errno;
            throw FileError(*name_, error,
                            error == EIO ? "it became shorter while it was read"
                                         : std::string(std::strerror(error)));
        }
    }

  private:
    const char* data_ = nullptr;
    const files::RegularFile* file_ = nullptr;
    std::uint64_t size_;
    const std::string* name_ = nullptr;
};

// `count` four-byte little-endian records into `out`, which is given large pages first.
// Aligned records on a little-endian machine are taken in one copy, without clearing
// the memory first.
template <class T>
void readWords(const Source& source, std::uint64_t offset, std::vector<T>& out, std::size_t count) {
    static_assert(sizeof(T) == 4, "four-byte records");
    platform::reserveLarge(out, count);
    const char* in = source.at(offset);
    if (kLittleEndian && in != nullptr && count != 0 &&
        reinterpret_cast<std::uintptr_t>(in) % alignof(T) == 0) {
        const T* first = reinterpret_cast<const T*>(in);
        out.assign(first, first + count);
        return;
    }
    out.resize(count);
    source.read(offset, out.data(), count * 4);
    if (kLittleEndian) return;
    for (T& value : out) {
        std::uint8_t b[4];
        std::memcpy(b, &value, 4);
        const std::uint32_t bits = mf::assembleU32(b[0], b[1], b[2], b[3]);
        std::memcpy(&value, &bits, 4);
    }
}

class Reader {
  public:
    Reader(const Source& source, const std::string& name)
        : source_(source), size_(source.size()), name_(name) {}

    Mesh read() {
        if (size_ < mf::kFileHeaderSize)
            fail(0, "the file is " + std::to_string(size_) + " bytes, shorter than the " +
                        std::to_string(mf::kFileHeaderSize) + "-byte header");
        walk();
        Mesh mesh;
        source_.read(0, mesh.neqHeader.data(), mesh.neqHeader.size());
        if (!vertices_.present) fail(mf::kFileHeaderSize, "the file has no vertex block");
        if (!faces_.present) fail(mf::kFileHeaderSize, "the file has no face block");
        readVertices(mesh);
        readFaces(mesh);
        readUvs(mesh);
        readColours(mesh);
        readGroups(mesh);
        return mesh;
    }

  private:
    [[noreturn]] void fail(std::uint64_t offset, const std::string& what) const {
        throw FormatError(name_, offsetText(offset), what);
    }

    std::uint32_t u32(std::uint64_t offset) const {
        std::uint8_t p[4];
        source_.read(offset, p, 4);
        return mf::assembleU32(p[0], p[1], p[2], p[3]);
    }

    Records* slotOf(std::uint32_t tag) {
        switch (tag) {
        case mf::kVertexTag:
            return &vertices_;
        case mf::kFaceTag:
            return &faces_;
        case mf::kUvTag:
            return &uvs_;
        case mf::kColourTag:
            return &colours_;
        case mf::kGroupTag:
            return &groups_;
        default:
            return nullptr;
        }
    }

    // Blocks in any order until the 16 zero bytes or the end of the file.
    void walk() {
        std::uint64_t position = mf::kFileHeaderSize;
        while (position < size_) {
            if (size_ - position < mf::kBlockHeaderSize)
                fail(position, "a block header of 16 bytes runs past the end of the file (" +
                                   std::to_string(size_ - position) + " bytes left)");
            std::uint8_t h[mf::kBlockHeaderSize];
            source_.read(position, h, sizeof h);
            const std::uint32_t tag = mf::assembleU32(h[0], h[1], h[2], h[3]);
            const std::uint8_t* l = h + mf::kBlockLengthOffset;
            const std::uint32_t length = mf::assembleU32(l[0], l[1], l[2], l[3]);
            const std::uint8_t* c = h + mf::kBlockCountOffset;
            const std::uint32_t count = mf::assembleU32(c[0], c[1], c[2], c[3]);
            if (tag == 0 && length == 0) return;
            const std::uint64_t extent = length == 0 ? mf::kBlockHeaderSize : length;
            if (extent < mf::kBlockHeaderSize)
                fail(position, blockName(tag) + " (tag " + std::to_string(tag) + "): length " +
                                   std::to_string(length) + " is shorter than its 16-byte header");
            if (extent > size_ - position)
                fail(position, blockName(tag) + " (tag " + std::to_string(tag) + "): length " +
                                   std::to_string(length) + " runs past the end of the file (" +
                                   std::to_string(size_ - position) + " bytes left)");
            if (Records* slot = slotOf(tag)) {
                if (slot->present)
                    fail(position, std::string("a second ") + blockName(tag) +
                                       " (the first is at offset " +
                                       std::to_string(slot->blockOffset) + ")");
                const std::uint64_t needed =
                    mf::kBlockHeaderSize + std::uint64_t{count} * mf::recordSizeOf(tag);
                if (needed > extent)
                    fail(position, blockName(tag) + ": " + std::to_string(count) +
                                       " records need " + std::to_string(needed) +
                                       " bytes but the block is " + std::to_string(extent));
                *slot = Records{position, position + mf::kBlockHeaderSize, count, true};
            }
            position += extent;
        }
    }

    void requireCount(const Records& records, std::size_t expected, const char* per) const {
        if (records.count != expected)
            fail(records.blockOffset, blockName(tagOf(records)) + ": " +
                                          std::to_string(records.count) + " records for " +
                                          std::to_string(expected) + " " + per);
    }

    std::uint32_t tagOf(const Records& records) const { return u32(records.blockOffset); }

    void readVertices(Mesh& mesh) const {
        readWords(source_, vertices_.offset, mesh.positions, std::size_t{vertices_.count} * 3);
    }

    void readFaces(Mesh& mesh) const {
        readWords(source_, faces_.offset, mesh.faces, std::size_t{faces_.count} * 4);
        const std::uint32_t vertices = vertices_.count;
        for (std::size_t i = 0; i < mesh.faces.size(); ++i) {
            std::int32_t& index = mesh.faces[i];
            if (i % 4 == 3 && index < 0) {
                index = -1;
                continue;
            }
            if (index < 0 || static_cast<std::uint32_t>(index) >= vertices)
                fail(faces_.offset + i * 4, "face block: face " + std::to_string(i / 4) +
                                                " corner " + std::to_string(i % 4) +
                                                " names vertex " + std::to_string(index) + " of " +
                                                std::to_string(vertices));
        }
    }

    void readUvs(Mesh& mesh) const {
        if (!uvs_.present) return;
        requireCount(uvs_, mesh.faceCount(), "faces");
        readWords(source_, uvs_.offset, mesh.uvs, std::size_t{uvs_.count} * 8);
        // A triangle's fourth pair means nothing; it reads as (0, 0) so that meshes that
        // differ only there compare equal.
        for (std::size_t face = 0; face < mesh.faceCount(); ++face)
            if (mesh.isTriangle(face)) mesh.uvs[face * 8 + 6] = mesh.uvs[face * 8 + 7] = 0.0f;
    }

    void readColours(Mesh& mesh) const {
        if (!colours_.present) return;
        requireCount(colours_, mesh.vertexCount(), "vertices");
        platform::reserveLarge(mesh.colors, std::size_t{colours_.count} * 3);
        mesh.colors.resize(std::size_t{colours_.count} * 3);
        std::uint8_t* out = mesh.colors.data();
        forEachChunk(colours_, mf::kColourRecordSize,
                     [&out](const std::uint8_t* in, std::size_t n) {
                         for (std::size_t i = 0; i < n; ++i, in += 4, out += 3) {
                             out[0] = in[2]; // stored blue, green, red
                             out[1] = in[1];
                             out[2] = in[0];
                         }
                     });
    }

    void readGroups(Mesh& mesh) const {
        if (!groups_.present) return;
        requireCount(groups_, mesh.faceCount(), "faces");
        mesh.groups.resize(groups_.count);
        std::int16_t* out = mesh.groups.data();
        forEachChunk(groups_, mf::kGroupRecordSize, [&out](const std::uint8_t* in, std::size_t n) {
            for (std::size_t i = 0; i < n; ++i, in += 2)
                *out++ = mf::assembleI16(in[0], in[1]);
        });
    }

    // Hands a block's records to `take` a cache-sized run at a time.
    template <class Take>
    void forEachChunk(const Records& records, std::size_t recordSize, Take take) const {
        constexpr std::size_t kChunk = 1 << 14; // records per run
        std::vector<std::uint8_t> buffer(std::min<std::size_t>(records.count, kChunk) * recordSize);
        for (std::size_t done = 0; done < records.count;) {
            const std::size_t n = std::min<std::size_t>(records.count - done, kChunk);
            source_.read(records.offset + done * recordSize, buffer.data(), n * recordSize);
            take(buffer.data(), n);
            done += n;
        }
    }

    const Source& source_;
    std::uint64_t size_;
    const std::string& name_;
    Records vertices_, faces_, uvs_, colours_, groups_;
};

// Emits a block header for `count` records of the tag's size.
template <class Put> void putBlockHeader(Put& put, std::uint32_t tag, std::size_t count) {
    std::uint8_t h[mf::kBlockHeaderSize] = {};
    mf::storeU32(h, tag);
    mf::storeU32(h + mf::kBlockLengthOffset,
                 static_cast<std::uint32_t>(mf::kBlockHeaderSize + count * mf::recordSizeOf(tag)));
    mf::storeU32(h + mf::kBlockCountOffset, static_cast<std::uint32_t>(count));
    put(h, sizeof h);
}

// Emits `count` records of `size` bytes, each made by `make(index, out)`, a
// cache-sized run at a time.
template <class Put, class Make>
void putRecords(Put& put, std::size_t count, std::size_t size, Make make) {
    constexpr std::size_t kRun = 1 << 16; // bytes
    std::uint8_t run[kRun];
    const std::size_t perRun = kRun / size;
    for (std::size_t first = 0; first < count; first += perRun) {
        const std::size_t n = std::min(perRun, count - first);
        for (std::size_t i = 0; i < n; ++i)
            make(first + i, run + i * size);
        put(run, n * size);
    }
}

// Four-byte values as they stand in memory when that is the file's byte order.
template <class Put, class T> void putWords(Put& put, const ArrayView<T>& values) {
    if (kLittleEndian) {
        if (!values.empty()) put(values.data, values.size * 4);
        return;
    }
    putRecords(put, values.size, 4, [&values](std::size_t i, std::uint8_t* out) {
        std::uint32_t bits;
        std::memcpy(&bits, &values[i], 4);
        mf::storeU32(out, bits);
    });
}

// The chain the host reads: vertex, face, UV, colour and group blocks, then 16 zero
// bytes, handed to `put(data, size)` piece by piece.
// Whether every triangle's fourth index is already the -1 the file stores.
bool fourthIndicesAreMinusOneOrMore(const MeshView& mesh) {
    bool plain = true;
    for (std::size_t i = 3; i < mesh.faces.size; i += 4)
        plain &= mesh.faces[i] >= -1;
    return plain;
}

template <class Put> void emitNeq(const MeshView& mesh, Put put) {
    const std::size_t vertices = mesh.vertexCount();
    const std::size_t faces = mesh.faceCount();
    put(mesh.neqHeader, mf::kFileHeaderSize);
    putBlockHeader(put, mf::kVertexTag, vertices);
    putWords(put, mesh.positions);
    putBlockHeader(put, mf::kFaceTag, faces);
    if (fourthIndicesAreMinusOneOrMore(mesh)) // the usual case: the array is the block
        putWords(put, mesh.faces);
    else
        putRecords(put, faces, mf::kFaceRecordSize, [&mesh](std::size_t face, std::uint8_t* out) {
            const std::int32_t* f = &mesh.faces[face * 4];
            for (int c = 0; c < 4; ++c) // any negative fourth index is -1
                mf::storeU32(out + 4 * c,
                             static_cast<std::uint32_t>(c == 3 && f[3] < 0 ? -1 : f[c]));
        });
    if (!mesh.uvs.empty()) {
        putBlockHeader(put, mf::kUvTag, faces);
        putWords(put, mesh.uvs);
    }
    if (!mesh.colors.empty()) {
        putBlockHeader(put, mf::kColourTag, vertices);
        putRecords(put, vertices, mf::kColourRecordSize, [&mesh](std::size_t v, std::uint8_t* out) {
            const std::uint8_t* c = &mesh.colors[v * 3];
            out[0] = c[2]; // stored blue, green, red
            out[1] = c[1];
            out[2] = c[0];
            out[3] = 0;
        });
    }
    if (!mesh.groups.empty()) {
        putBlockHeader(put, mf::kGroupTag, faces);
        if (kLittleEndian)
            put(mesh.groups.data, mesh.groups.size * 2);
        else
            putRecords(put, faces, mf::kGroupRecordSize,
                       [&mesh](std::size_t face, std::uint8_t* out) {
                           const auto id = static_cast<std::uint16_t>(mesh.groups[face]);
                           out[0] = static_cast<std::uint8_t>(id);
                           out[1] = static_cast<std::uint8_t>(id >> 8);
                       });
    }
    const std::uint8_t end[mf::kBlockHeaderSize] = {};
    put(end, sizeof end);
}

void requireNeqSize(const MeshView& mesh) {
    validate(mesh);
    const std::size_t vertices = mesh.vertexCount();
    const std::size_t faces = mesh.faceCount();
    if (vertices > UINT32_MAX / mf::kVertexRecordSize || faces > UINT32_MAX / mf::kUvRecordSize)
        throw std::invalid_argument("mesh too large for a NeQ file: " + std::to_string(vertices) +
                                    " vertices, " + std::to_string(faces) + " faces");
}

} // namespace

Mesh readNeq(std::string_view bytes, const std::string& name) {
    return Reader(Source(bytes), name).read();
}

Mesh readNeqFile(const std::string& path) {
    files::RegularFile file;
    std::string reason;
    errno = 0;
    if (!file.open(path.c_str(), reason)) throw FileError(path, errno, reason);
    return Reader(Source(file, path), path).read();
}

std::string writeNeq(const Mesh& mesh) {
    requireNeqSize(mesh);
    std::string out;
    platform::reserveLarge(out, mf::kFileHeaderSize + 6 * mf::kBlockHeaderSize +
                                    mesh.vertexCount() * 16 + mesh.faceCount() * 50);
    emitNeq(mesh, [&out](const void* data, std::size_t size) {
        out.append(static_cast<const char*>(data), size);
    });
    return out;
}

bool writeNeqTo(const MeshView& mesh, const std::function<bool(const void*, std::size_t)>& put) {
    requireNeqSize(mesh);
    bool written = true;
    emitNeq(mesh,
            [&](const void* data, std::size_t size) { written = written && put(data, size); });
    return written;
}

} // namespace neq::interchange
