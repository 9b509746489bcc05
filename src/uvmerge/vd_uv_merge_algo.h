#pragma once

// VDUVMergeAlgo: welding split UVs. A UV is shared by the corners of one vertex that
// carry exactly the same value; corners of different vertices never share one, so
// seams that meet in UV space stay split. The class holds no state.

#include "foundation/export.h"
#include "foundation/vd_array.h"
#include "foundation/vd_string.h"
#include "foundation/vd_vector.h"

class NEQBRIDGE_API VDUVMergeAlgo {
  public:
    // Rebuilds `uvs` and `uvIndices` so that there is one UV per distinct (vertex, value)
    // pair. One entry per face corner in `vertIndices` (negative: a filler slot, which
    // ends with UV index -1) and in `uvIndices` (negative: no UV, read as (0, 0)); an
    // empty `uvIndices` means `uvs` already holds one value per corner. New UVs are
    // numbered by increasing vertex, then by decreasing corner; values are compared with
    // ==, so a NaN is never shared. A negative `nbVertices` is computed from the corners.
    // False, with every argument untouched, when `uvs` or `vertIndices` is empty or an
    // index is out of range (a UV index at or past uvs, a vertex at or past nbVertices,
    // uvIndices neither empty nor one per corner, fewer per-corner UVs than corners).
    static bool mergeUVs(VDArray<VDVector2f>& uvs, VDArray<int>& uvIndices,
                         const VDArray<int>& vertIndices, int nbVertices);

    // Welds the UVs of the one mesh in a Maya ASCII scene and rewrites the file
    // atomically. False, with the file untouched, when it cannot be read or written, is
    // not a regular file, holds nothing to weld or strays from the layout the rewrite
    // reads (see uvmerge/maya_uv_rewrite.h).
    static bool mergeUVsInMayaFile(const VDString& path);

    // Not implemented: always false.
    static bool mergeUVsInNeQFile(const VDString& path);
    static bool splitUVsInMayaFile(const VDString& path);
    static bool splitUVsInNeQFile(const VDString& path);
};
