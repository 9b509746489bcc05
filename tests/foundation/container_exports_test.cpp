// The bit tables, bit array and vectors are reachable through the shared library's
// exported names, as host-side code finds them.

#include "foundation/vd_bit_mgr.h"
#include "foundation/vd_bool_array.h"
#include "foundation/vd_vector.h"

#include "support/host_library.h"

#include <gtest/gtest.h>

namespace {

using neq::test::HostLibrary;

TEST(ContainerExports, TablesArraysAndVectorsAreExported) {
    const HostLibrary library;
    const auto& first1 = library.variable<const VDBitMgr::ByteTable>("_ZN8VDBitMgr6first1E");
    EXPECT_EQ(first1[0], 8);
    EXPECT_EQ(first1[0x60], 5);
    const auto& zero = library.variable<const VDVector3f>("_ZN10VDVector3f6m_zeroE");
    EXPECT_EQ(zero, VDVector3f(0, 0, 0));

    for (const char* name :
         {"_ZNK11VDBoolArray9findFirstEbi", "_ZN11VDBoolArray5mergeERKS_",
          "_ZN11VDBoolArray6resizeEib", "_ZN8VDBitMgr12getFirstBit1Em",
          "_ZN8VDBitMgr11getNumBits1Et", "_ZN10VDVector2f9normalizeEf",
          "_ZN10VDVector3d9normalizeEv", "_ZNK10VDVector3f20findOrthogonalVectorERS_"})
        EXPECT_NE(library.symbol(name), nullptr) << name;

    auto* sort = library.function(VDVector3f::indexedSort,
                                  "_ZN10VDVector3f11indexedSortER7VDArrayIiERKS0_IS_Ef");
    VDArray<int> indices;
    sort(indices, VDArray<VDVector3f>{VDVector3f(2, 0, 0), VDVector3f(1, 0, 0)}, 0.0f);
    EXPECT_EQ(indices, (VDArray<int>{1, 0}));
}

} // namespace
