// This program links the shared library alone: each use below is one it exports.

#include "foundation/vd_bit_mgr.h"
#include "foundation/vd_bool_array.h"
#include "foundation/vd_vector.h"

#include <gtest/gtest.h>

namespace {

TEST(ContainerExports, TablesArraysAndVectorsAreExported) {
    EXPECT_EQ(VDBitMgr::first1[0], 8);
    EXPECT_EQ(VDBitMgr::first1[0x60], 5);
    EXPECT_EQ(VDVector3f::m_zero, VDVector3f(0, 0, 0));

    VDBoolArray bits;
    bits.resize(10, false);
    bits.set(7);
    VDBoolArray other(bits);
    other.merge(bits);
    EXPECT_EQ(other.findFirst(true, 0), 7);
    EXPECT_EQ(VDBitMgr::getFirstBit1(0x60UL), 5);
    EXPECT_EQ(VDBitMgr::getNumBits1(static_cast<unsigned short>(0x0F0F)), 8);
    VDVector2f uv(3, 4);
    uv.normalize(1.0f);
    EXPECT_FLOAT_EQ(uv.x, 0.6f);
    VDVector3d point(0, 0, 2);
    point.normalize();
    EXPECT_DOUBLE_EQ(point.z, 1.0);
    VDVector3f axis(1, 0, 0), orthogonal;
    axis.findOrthogonalVector(orthogonal);
    EXPECT_FLOAT_EQ(orthogonal.x * axis.x + orthogonal.y * axis.y + orthogonal.z * axis.z, 0.0f);

    VDArray<int> indices;
    VDVector3f::indexedSort(indices, VDArray<VDVector3f>{VDVector3f(2, 0, 0), VDVector3f(1, 0, 0)},
                            0.0f);
    EXPECT_EQ(indices, (VDArray<int>{1, 0}));
}

} // namespace
