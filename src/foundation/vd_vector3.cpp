// The three-component vectors: normalising and orthogonal directions.

#include "foundation/vd_vector.h"

#include <cmath>

namespace {

template <class V> auto lengthOf(const V& v) {
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

template <class V> void divideBy(V& v, decltype(V::x) length) {
    v.x /= length;
    v.y /= length;
    v.z /= length;
}

template <class V> void removeComponentAlong(V& v, const V& n) {
    const auto along = v.x * n.x + v.y * n.y + v.z * n.z;
    v.x -= along * n.x;
    v.y -= along * n.y;
    v.z -= along * n.z;
}

// a x v for the axis a of v's component of smallest absolute value: x when it is at
// most the other two, then y when it is at most z, else z.
template <class V> V orthogonalTo(const V& v) {
    using T = decltype(V::x);
    const T ax = std::fabs(v.x), ay = std::fabs(v.y), az = std::fabs(v.z);
    V axis(0, 0, 0);
    if (ax <= ay && ax <= az)
        axis.x = 1;
    else if (ay <= az && ax > ay)
        axis.y = 1;
    else
        axis.z = 1;
    return V(axis.y * v.z - axis.z * v.y, axis.z * v.x - axis.x * v.z, axis.x * v.y - axis.y * v.x);
}

} // namespace

const VDVector3d VDVector3d::m_zero;
const VDVector3f VDVector3f::m_zero;

double VDVector3d::normalize() {
    const double length = lengthOf(*this);
    // Below 1e-24 the vector stays and 1.0 is answered, on purpose; NaN divides.
    if (std::fabs(length) < 1e-24) return 1.0;
    divideBy(*this, length);
    return length;
}

float VDVector3f::normalize() {
    const float length = lengthOf(*this);
    if (length == 0.0f) return 0.0f;
    divideBy(*this, length);
    return length;
}

void VDVector3d::makeOrthogonalTo(const VDVector3d& n) {
    removeComponentAlong(*this, n);
}

void VDVector3f::makeOrthogonalTo(const VDVector3f& n) {
    removeComponentAlong(*this, n);
}

void VDVector3d::findOrthogonalVector(VDVector3d& out) const {
    out = orthogonalTo(*this);
}

void VDVector3f::findOrthogonalVector(VDVector3f& out) const {
    out = orthogonalTo(*this);
}
