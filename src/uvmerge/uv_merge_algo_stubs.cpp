// The operations the host declared but never gave a body.

#include "uvmerge/vd_uv_merge_algo.h"

bool VDUVMergeAlgo::mergeUVsInNeQFile(const VDString&) {
    return false;
}

bool VDUVMergeAlgo::splitUVsInMayaFile(const VDString&) {
    return false;
}

bool VDUVMergeAlgo::splitUVsInNeQFile(const VDString&) {
    return false;
}
