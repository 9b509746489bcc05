// The tolerant indexed sort of a point list.

#include "foundation/vd_vector.h"

#include <algorithm>
#include <numeric>

void VDVector3f::indexedSort(VDArray<int>& indices, const VDArray<VDVector3f>& points, float tol) {
    indices.resize(points.size());
    std::iota(indices.begin(), indices.end(), 0);
    // Introsort, not a stable sort: the comparator's index tie-break makes the result
    // independent of the visiting order. It is irreflexive and antisymmetric, which keeps
    // the sort inside the array even where the tolerance breaks transitivity.
    std::sort(indices.begin(), indices.end(),
              VDIndexedComparator<VDVector3f, VDVector3fComp>(points.data(), tol));
}
