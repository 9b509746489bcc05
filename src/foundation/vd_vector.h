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
    // Snaps a component just beyond an integer (on the side away from zero) onto it.
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

    // Returns the length; a (near) zero vector is left as it is and gives 1.0.
    double normalize();
    void makeOrthogonalTo(const VDVector3d& n);
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
    // as equal, ties by index.
    static void indexedSort(VDArray<int>& indices, const VDArray<VDVector3f>& points, float tol);

    static const VDVector3f m_zero;
};
