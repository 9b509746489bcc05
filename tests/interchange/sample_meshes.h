#pragma once

// Small meshes the conversion tests share, a readable comparison of two meshes, and the
// message a failing call gives.

#include "interchange/mesh.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace neq::interchange::test {

// A quad and a triangle on five vertices, with every optional array filled; UVs,
// positions and colours chosen so that shortest float text matters (0.1, 1/3, -0).
inline Mesh sampleMesh() {
    Mesh mesh;
    mesh.positions = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0.1f, 2, 0.5f, -0.0f};
    mesh.faces = {0, 1, 2, 3, 1, 4, 2, -1};
    mesh.uvs = {0, 0, 1, 0, 1, 1, 0, 1, 1.0f / 3, 0.25f, 1.5f, 0.5f, 1, 1, 0, 0};
    mesh.colors = {255, 0, 0, 0, 255, 0, 0, 0, 255, 17, 34, 51, 1, 2, 254};
    mesh.groups = {7, -3};
    return mesh;
}

// Equal to the bit, array by array, so that a failure names the array.
inline void expectSameMesh(const Mesh& actual, const Mesh& expected) {
    auto bits = [](const auto& values) {
        return std::string(reinterpret_cast<const char*>(values.data()),
                           values.size() * sizeof(values[0]));
    };
    EXPECT_EQ(bits(actual.positions), bits(expected.positions)) << "positions";
    EXPECT_EQ(actual.faces, expected.faces);
    EXPECT_EQ(bits(actual.uvs), bits(expected.uvs)) << "uvs";
    EXPECT_EQ(actual.colors, expected.colors);
    EXPECT_EQ(actual.groups, expected.groups);
}

// The message of the Error that call throws, or "no error".
template <typename Error, typename Call> std::string errorOf(Call call) {
    try {
        call();
    } catch (const Error& error) {
        return error.what();
    }
    return "no error";
}

} // namespace neq::interchange::test
