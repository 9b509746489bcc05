#include "uvmerge/maya_file_rewrite.h"

#include "foundation/atomic_file.h"
#include "foundation/vd_disk_server_internal.h"
#include "foundation/vd_string.h"
#include "platform/writeback.h"
#include "uvmerge/vd_uv_merge_algo.h"

#include <cstdint>

namespace neq::uvmerge {
namespace {

// Text straight to a file descriptor. Every few megabytes the system is asked to start
// writing what it holds to disk, so that the disk works while the rest of the text is
// made and the flush that follows the last write has little left to wait for.
class FileSink final : public TextSink {
  public:
    explicit FileSink(int fd) : fd_(fd) {}
    bool write(const char* data, std::size_t size) override {
        if (!diskserver::writeAll(fd_, data, size)) return false;
        written_ += size;
        constexpr std::uint64_t kWritebackStep = std::uint64_t{8} << 20;
        if (written_ - writebackStart_ >= kWritebackStep) {
            platform::startWriteback(fd_, writebackStart_, written_ - writebackStart_);
            writebackStart_ = written_;
        }
        return true;
    }

  private:
    int fd_;
    std::uint64_t written_ = 0, writebackStart_ = 0;
};

// Reads the scene and welds it; `welded` is called with the weld of an accepted scene.
template <class Welded> MayaFileWeld weldScene(const char* input, Welded welded) {
    MayaFileWeld result;
    files::FileBytes scene;
    if (!files::readRegularFile(input, scene, result.reason)) {
        result.failure = MayaFileWeld::Failure::read;
        return result;
    }
    const MayaSceneWeld weld(scene.view());
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
MayaFileWeld weldMayaFile(const char* input, const char* output, bool keepUnwelded) {
    return weldScene(input, [=](const MayaSceneWeld& weld, MayaFileWeld& result) {
        if (keepUnwelded && !result.rewrite.welded) {
            result.failure = MayaFileWeld::Failure::nothingToWeld;
            result.reason = "it holds no UV or face statements to weld";
            return;
        }
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
