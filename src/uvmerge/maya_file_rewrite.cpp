#include "uvmerge/maya_file_rewrite.h"

#include "foundation/file_io.h"

namespace neq::uvmerge {
namespace {

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
            FileSink sink(fd, true);
            return weld.write(sink);
        };
        if (!files::replaceFile(output ? output : input, write, result.reason))
            result.failure = MayaFileWeld::Failure::write;
    });
}

} // namespace neq::uvmerge
