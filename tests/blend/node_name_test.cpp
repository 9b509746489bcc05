#include "blend/node_name.h"

#include <gtest/gtest.h>

namespace neq::test {
namespace {

TEST(NodeName, OnlyLettersDigitsUnderscoresAndNamespacesArePlain) {
    for (const char* plain : {"Smile", "_a1", "Head:defaultMat", "a_B_9", "Zz"})
        EXPECT_TRUE(blend::isPlainNodeName(plain)) << plain;
    for (const char* odd : {"", "2nd", "my head", "a-b", "a.b", "Sm\xC3\xADle", "a\"b"})
        EXPECT_FALSE(blend::isPlainNodeName(odd)) << odd;
}

// The blend statements quote names; these would end the string they stand in.
TEST(NodeName, QuotesBackslashesAndControlCharactersAreNotQuotable) {
    for (const char* fine : {"", "a.b", "Head.v1", "my head", "Sm\xC3\xADle", "a'b$(x)`y`"})
        EXPECT_TRUE(blend::isQuotableNodeName(fine)) << fine;
    for (const char* breaking : {"a\"b", "a\\b", "a\nb", "a\rb", "\t", "\x1f", "\x7f"})
        EXPECT_FALSE(blend::isQuotableNodeName(breaking)) << breaking;
}

} // namespace
} // namespace neq::test
