// Meshes from and to files, by the format of their extension.

#include "interchange/mesh.h"

#include "foundation/file_io.h"
#include "foundation/text_writer.h"

#include <cerrno>
#include <exception>

namespace neq::interchange {

namespace {

Format formatOrFail(const std::string& path) {
    const std::optional<Format> format = formatOfPath(path);
    if (!format)
        throw FileError(path, EINVAL,
                        "the extension names no mesh format (.NeQ, .obj, .glb or .gltf)");
    return *format;
}

void replaceOrFail(const std::string& path, std::string_view bytes, bool durable) {
    std::string reason;
    errno = 0;
    if (!files::replaceFile(path.c_str(), bytes, reason, durable))
        throw FileError(path, errno, reason);
}

// Makes the file's content what `write` hands its sink, atomically. A mesh the format
// cannot hold (an exception from `write`) leaves no file behind.
template <class Write> void replaceWithOrFail(const std::string& path, bool durable, Write write) {
    std::string reason;
    std::exception_ptr refused;
    errno = 0;
    const auto writeFile = [&write, &refused, durable](int fd) {
        try {
            FileSink sink(fd, durable);
            return write(sink);
        } catch (...) {
            refused = std::current_exception();
            return false;
        }
    };
    const bool written = files::replaceFile(path.c_str(), writeFile, reason, durable);
    if (refused) std::rethrow_exception(refused);
    if (!written) throw FileError(path, errno, reason);
}

} // namespace

Mesh readMeshFile(const std::string& path, ReadReport* report) {
    const Format format = formatOrFail(path);
    if (format == Format::neq) return readNeqFile(path); // no copy of the whole file
    std::string reason;
    errno = 0;
    // Read, not mapped: a mapped file that another process shortens meanwhile would end
    // the program (SIGBUS) instead of giving an error.
    files::FileBytes bytes;
    if (!files::readRegularFile(path.c_str(), bytes, reason)) throw FileError(path, errno, reason);
    if (format == Format::obj) return readObj(bytes.view(), path, report);
    return readGltf(bytes.view(), path, report);
}

void writeNeqFile(const std::string& path, const MeshView& mesh, const WriteOptions& options) {
    // Written straight from the arrays, with no copy of the file.
    replaceWithOrFail(path, options.durable, [&mesh](FileSink& sink) {
        return writeNeqTo(mesh, [&sink](const void* data, std::size_t size) {
            return sink.write(static_cast<const char*>(data), size);
        });
    });
}

void writeMeshFile(const std::string& path, const Mesh& mesh, const WriteOptions& options) {
    switch (formatOrFail(path)) {
    case Format::neq:
        writeNeqFile(path, mesh, options);
        return;
    case Format::obj:
        replaceWithOrFail(path, options.durable, [&mesh](FileSink& sink) {
            return writeObjTo(mesh, [&sink](const char* data, std::size_t size) {
                return sink.write(data, size);
            });
        });
        return;
    case Format::glb:
        replaceOrFail(path, writeGlb(mesh), options.durable);
        return;
    case Format::gltf: {
        if (!options.gltfSideBuffer) {
            replaceOrFail(path, writeGltf(mesh, "", nullptr), options.durable);
            return;
        }
        const std::string binPath = sideBufferPath(path);
        std::string bin;
        const std::string json = writeGltf(mesh, binPath.substr(binPath.rfind('/') + 1), &bin);
        // The buffer first: a .gltf in place always finds the buffer it names.
        replaceOrFail(binPath, bin, options.durable);
        replaceOrFail(path, json, options.durable);
        return;
    }
    }
}

std::string sideBufferPath(const std::string& gltfPath) {
    const std::size_t dot = gltfPath.rfind('.');
    const std::size_t slash = gltfPath.rfind('/');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash))
        return gltfPath + ".bin";
    return gltfPath.substr(0, dot) + ".bin";
}

ReadReport convertFile(const std::string& in, const std::string& out, const Transform& transform,
                       const WriteOptions& options) {
    ReadReport report;
    Mesh mesh = readMeshFile(in, &report);
    if (formatOfPath(out) != Format::neq || formatOfPath(in) != Format::neq) mesh.neqHeader.fill(0);
    apply(mesh, transform);
    writeMeshFile(out, mesh, options);
    return report;
}

} // namespace neq::interchange
