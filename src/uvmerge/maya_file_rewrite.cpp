#include "uvmerge/maya_file_rewrite.h"

#include "foundation/vd_string.h"
#include "uvmerge/atomic_file.h"
#include "uvmerge/vd_uv_merge_algo.h"

namespace neq::uvmerge {

MayaFileWeld weldMayaFile(const char* input, const char* output) {
    MayaFileWeld weld;
    std::string scene;
    if (!readRegularFile(input, scene, weld.reason)) {
        weld.failure = MayaFileWeld::Failure::read;
        return weld;
    }
    weld.rewrite = rewriteMayaUvs(scene);
    scene = std::string(); // the input's memory is not needed while writing
    if (!weld.rewrite.ok) {
        weld.failure = MayaFileWeld::Failure::refused;
        weld.reason = weld.rewrite.refusal;
        return weld;
    }
    if (!replaceFile(output ? output : input, weld.rewrite.text, weld.reason))
        weld.failure = MayaFileWeld::Failure::write;
    weld.rewrite.text = std::string();
    return weld;
}

} // namespace neq::uvmerge

bool VDUVMergeAlgo::mergeUVsInMayaFile(const VDString& path) {
    return neq::uvmerge::weldMayaFile(path.getValidFilePath()).failure ==
           neq::uvmerge::MayaFileWeld::Failure::none;
}
