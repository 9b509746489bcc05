#include "foundation/vd_array.h"
#include "foundation/vd_vector.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// reinit, destroy and reverse on one element type, with two distinct values.
template <class T> void checkArray(const T& a, const T& b) {
    VDArray<T> array;
    for (int i = 0; i < 5; ++i)
        array.push_back(i % 2 ? a : b);
    array.reserve(40);
    const auto capacity = array.capacity();

    array.reinit(3, a);
    EXPECT_EQ(array.size(), 3u);
    EXPECT_EQ(array.capacity(), capacity);
    for (const T& value : array)
        EXPECT_EQ(value, a);
    array.reinit(0, b);
    EXPECT_TRUE(array.empty());
    array.reinit(-2, b);
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(array.capacity(), capacity);

    array = {a, b, b};
    array.reverse();
    EXPECT_EQ(array, (VDArray<T>{b, b, a}));
    array.push_back(a);
    array.reverse(); // even count
    EXPECT_EQ(array, (VDArray<T>{a, a, b, b}));
    EXPECT_EQ(array.getSize(), 4);

    array.destroy();
    EXPECT_EQ(array.size(), 0u);
    EXPECT_EQ(array.capacity(), 0u);
    array.reverse();
    EXPECT_TRUE(array.empty());
}

TEST(VDArray, ReinitDestroyAndReverseForEveryElementType) {
    checkArray<int>(-1, 7);
    checkArray<unsigned int>(0xFFFFFFFFu, 3u);
    checkArray<unsigned short>(65535, 1);
    checkArray<unsigned char>(255, 0);
    char text[] = "ab";
    checkArray<char*>(text, text + 1);
    checkArray(VDVector2f(1, 2), VDVector2f(-3, 0.5f));
    checkArray(VDVector3f(1, 2, 3), VDVector3f(0, 0, -1));
}

} // namespace
