// The vectors of two and three components (float and double twins) and the indexed sort.

#include "foundation/vd_vector.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

// Shorter vectors are left alone rather than blown up.
constexpr double kMinLength = 1e-06;

template <class V> auto planarLength(const V& v) {
    return std::sqrt(v.x * v.x + v.y * v.y);
}

template <class V> bool longEnough(decltype(V::x) length) {
    return std::fabs(length) > kMinLength;
}

// Truncation toward zero, not rounding: only values just beyond an integer, on the
// side away from zero, come back onto it. This one-sided snap is what callers expect.
template <class T> void snap(T& c, T tol) {
    const T whole = std::trunc(c);
    const T off = c - whole;
    if (-tol < off && off < tol) c = whole;
}

template <class V> void normalizeTo(V& v) {
    const auto length = planarLength(v);
    if (!longEnough<V>(length)) return;
    v.x /= length;
    v.y /= length;
}

template <class V> void scaleTo(V& v, decltype(V::x) len) {
    const auto length = planarLength(v);
    if (!longEnough<V>(length)) return;
    const auto factor = len / length;
    v.x *= factor;
    v.y *= factor;
}

} // namespace

const VDVector2d VDVector2d::m_zero;
const VDVector2f VDVector2f::m_zero;

void VDVector2d::normalize() {
    normalizeTo(*this);
}

void VDVector2d::normalize(double len) {
    scaleTo(*this, len);
}

void VDVector2d::snapToIntegerValues(double tol) {
    snap(x, tol);
    snap(y, tol);
}

void VDVector2f::normalize() {
    normalizeTo(*this);
}

void VDVector2f::normalize(float len) {
    scaleTo(*this, len);
}

void VDVector2f::snapToIntegerValues(float tol) {
    snap(x, tol);
    snap(y, tol);
}

// The three-component vectors: normalising and orthogonal directions.

namespace {

template <class V> auto spaceLength(const V& v) {
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
    const double length = spaceLength(*this);
    // Below 1e-24 the vector stays and 1.0 is answered, on purpose; NaN divides.
    if (std::fabs(length) < 1e-24) return 1.0;
    divideBy(*this, length);
    return length;
}

float VDVector3f::normalize() {
    const float length = spaceLength(*this);
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

// The tolerant indexed sort of a point list.

void VDVector3f::indexedSort(VDArray<int>& indices, const VDArray<VDVector3f>& points, float tol) {
    indices.resize(points.size());
    std::iota(indices.begin(), indices.end(), 0);
    // Introsort, not a stable sort: the comparator's index tie-break makes the result
    // independent of the visiting order. It is irreflexive and antisymmetric, which keeps
    // the sort inside the array even where the tolerance breaks transitivity.
    std::sort(indices.begin(), indices.end(),
              VDIndexedComparator<VDVector3f, VDVector3fComp>(points.data(), tol));
}
