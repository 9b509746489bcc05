// The host's UV weld entry: a Maya ASCII scene is welded, a NeQ file is not (that
// merge was never written and reports failure).

#include "api/host_entry.h"
#include "foundation/vd_disk_server.h"
#include "uvmerge/vd_uv_merge_algo.h"

NEQBRIDGE_HOST_ENTRY NeQMergeUVs(char* text, double, char*) {
    return neq::api::guardedEntry([&] {
        const VDString path(VDString(text).getValidFilePath());
        if (!VDDiskServer::fileExists(path)) return -1.0f;
        bool merged = false;
        if (path.endsWith(".ma", true))
            merged = VDUVMergeAlgo::mergeUVsInMayaFile(path);
        else if (path.endsWith(".NeQ", true))
            merged = VDUVMergeAlgo::mergeUVsInNeQFile(path);
        return merged ? 0.0f : -1.0f;
    });
}
