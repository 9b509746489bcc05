#pragma once

// Small geometric value types. The components lie next to each other with nothing
// between them, so arrays of vectors are written to files as packed components.

#include "foundation/export.h"
#include "foundation/vd_array.h"

struct NEQBRIDGE_API VDVector2d {
    double x = 0.0;
    double y = 0.0;

    VDVector2d() = default;
    VDVector2d(double x_, double y_) : x(x_), y(y_) {}
    bool operator==(const VDVector2d& o) const { return x == o.x && y == o.y; }
    bool operator!=(const VDVector2d& o) const { return !(*this == o); }

    // Divides by the length when it is above 1e-06; otherwise leaves the vector.
    void normalize();
    // Scales to length len, under the same test.
    void normalize(double len);
    // Sets a component c to c truncated toward zero when they differ by less than tol:
    // only values just beyond an integer, on the side away from zero, snap (3.00001 and
    // -3.00001 do, 2.99999 does not).
    void snapToIntegerValues(double tol);

    static const VDVector2d m_zero;
};

struct NEQBRIDGE_API VDVector2f {
    float x = 0.0f;
    float y = 0.0f;

    VDVector2f() = default;
    VDVector2f(float x_, float y_) : x(x_), y(y_) {}
    bool operator==(const VDVector2f& o) const { return x == o.x && y == o.y; }
    bool operator!=(const VDVector2f& o) const { return !(*this == o); }

    void normalize();
    void normalize(float len);
    void snapToIntegerValues(float tol);

    static const VDVector2f m_zero;
};

struct NEQBRIDGE_API VDVector3d {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    VDVector3d() = default;
    VDVector3d(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
    bool operator==(const VDVector3d& o) const { return x == o.x && y == o.y && z == o.z; }
    bool operator!=(const VDVector3d& o) const { return !(*this == o); }

    // Returns the length. A length below 1e-24 leaves the vector as it is and gives 1.0,
    // not 0 (a NaN length still divides).
    double normalize();
    // v - (v . n) n, for n of unit length.
    void makeOrthogonalTo(const VDVector3d& n);
    // The cross product a x v, a being the axis of the component of smallest absolute
    // value (x before y before z on ties); not normalised.
    void findOrthogonalVector(VDVector3d& out) const;

    static const VDVector3d m_zero;
};

struct NEQBRIDGE_API VDVector3f {
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;

    VDVector3f() = default;
    VDVector3f(float x_, float y_, float z_) : x(x_), y(y_), z(z_) {}
    explicit VDVector3f(const VDVector2f& v) : x(v.x), y(v.y), z(0.0f) {}
    bool operator==(const VDVector3f& o) const { return x == o.x && y == o.y && z == o.z; }
    bool operator!=(const VDVector3f& o) const { return !(*this == o); }

    // Returns the length; a zero vector is left as it is and gives 0.
    float normalize();
    void makeOrthogonalTo(const VDVector3f& n);
    void findOrthogonalVector(VDVector3f& out) const;

    // indices becomes 0..n-1 sorted by (x, y, z) with components within tol treated
    // as equal, ties by index. The points do not move.
    static void indexedSort(VDArray<int>& indices, const VDArray<VDVector3f>& points, float tol);

    static const VDVector3f m_zero;
};

// The tolerant order of points: by x, then y, then z, a difference within tol (bounds
// included) counting as equal. It is not transitive for chains of near-equal values;
// callers accept that.
struct NEQBRIDGE_API VDVector3fComp {
    // -1 when a goes first, 1 when b does, 0 when all three components are within tol.
    static int compare(const VDVector3f& a, const VDVector3f& b, float tol) {
        const int byX = compareComponent(a.x - b.x, tol);
        if (byX != 0) return byX;
        const int byY = compareComponent(a.y - b.y, tol);
        return byY != 0 ? byY : compareComponent(a.z - b.z, tol);
    }

  private:
    static int compareComponent(float difference, float tol) {
        if (difference < -tol) return -1;
        return difference > tol ? 1 : 0;
    }
};

// Orders indices into a list of points (held by its first point) under Comp; indices
// of points equal within the tolerance keep their own order, so the result does not
// depend on how the sort visits them.
template <class T, class Comp> class NEQBRIDGE_API VDIndexedComparator {
  public:
    VDIndexedComparator(const T* first, float tol) : m_first(first), m_tol(tol) {}
    bool operator()(int i, int j) const {
        const int order = Comp::compare(m_first[i], m_first[j], m_tol);
        return order != 0 ? order < 0 : i < j;
    }

  private:
    const T* m_first;
    float m_tol;
};
