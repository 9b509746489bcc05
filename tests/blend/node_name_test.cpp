#include "blend/node_name.h"

#include <gtest/gtest.h>

namespace neq::test {
namespace {

TEST(NodeName, OnlyLettersDigitsUnderscoresAndNamespacesArePlain) {
    for (const char* plain : {"Smile", "_a1", "Head:defaultMat", "a_B_9"})
        EXPECT_TRUE(blend::isPlainNodeName(plain)) << plain;
    for (const char* odd : {"", "2nd", "my head", "a-b", "a.b", "Sm\xC3\xADle", "a\"b"})
        EXPECT_FALSE(blend::isPlainNodeName(odd)) << odd;
}

} // namespace
} // namespace neq::test
