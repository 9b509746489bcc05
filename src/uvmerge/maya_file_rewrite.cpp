#include "uvmerge/maya_file_rewrite.h"

#include "foundation/atomic_file.h"
#include "foundation/vd_disk_server_internal.h"
#include "foundation/vd_string.h"
#include "uvmerge/vd_uv_merge_algo.h"

namespace neq::uvmerge {
namespace {

// Text straight to a file descriptor.
class FileSink final : public TextSink {
  public:
    explicit FileSink(int fd) : fd_(fd) {}
    bool write(const char* data, std::size_t size) override {
        return diskserver::writeAll(fd_, data, size);
    }

  private:
    int fd_;
};

// Reads the scene and welds it; `welded` is called with the weld of an accepted scene.
template <class Welded> MayaFileWeld weldScene(const char* input, Welded welded) {
    MayaFileWeld result;
    std::string scene;
    if (!files::readRegularFile(input, scene, result.reason)) {
        result.failure = MayaFileWeld::Failure::read;
        return result;
    }
    const MayaSceneWeld weld(scene);
    result.rewrite = weld.outcome();
    if (!result.rewrite.ok) {
        result.failure = MayaFileWeld::Failure::refused;
        result.reason = result.rewrite.refusal;
        return result;
    }
    welded(weld, result);
    return result;
}

} // namespace

MayaFileWeld rewriteMayaFile(const char* input) {
    return weldScene(input, [](const MayaSceneWeld& weld, MayaFileWeld& result) {
        StringSink sink(result.rewrite.text);
        weld.write(sink);
    });
}

// The new text goes from the weld to the file in pieces; it is never held whole.
MayaFileWeld weldMayaFile(const char* input, const char* output) {
    return weldScene(input, [output, input](const MayaSceneWeld& weld, MayaFileWeld& result) {
        const auto write = [&weld](int fd) {
            FileSink sink(fd);
            return weld.write(sink);
        };
        if (!files::replaceFile(output ? output : input, write, result.reason))
            result.failure = MayaFileWeld::Failure::write;
    });
}

} // namespace neq::uvmerge

bool VDUVMergeAlgo::mergeUVsInMayaFile(const VDString& path) {
    return neq::uvmerge::weldMayaFile(path.getValidFilePath()).failure ==
           neq::uvmerge::MayaFileWeld::Failure::none;
}
