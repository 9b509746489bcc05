// The two-component vectors: normalising and snapping onto integers.

#include "foundation/vd_vector.h"

#include <cmath>

namespace {

// Shorter vectors are left alone rather than blown up.
constexpr double kMinLength = 1e-06;

template <class V> auto lengthOf(const V& v) {
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
    const auto length = lengthOf(v);
    if (!longEnough<V>(length)) return;
    v.x /= length;
    v.y /= length;
}

template <class V> void scaleTo(V& v, decltype(V::x) len) {
    const auto length = lengthOf(v);
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
