#pragma once

// Bit arrays written as text for compact expectations: "0110" is bit 0 clear, bits 1
// and 2 set, bit 3 clear.

#include "foundation/vd_bool_array.h"

#include <string>

namespace neq::test {

inline std::string bitsOf(const VDBoolArray& a) {
    std::string text;
    for (int i = 0; i < a.getSize(); ++i)
        text += a.get(i) ? '1' : '0';
    return text;
}

inline VDBoolArray arrayOf(const std::string& text) {
    VDBoolArray a(static_cast<int>(text.size()), false);
    for (int i = 0; i < a.getSize(); ++i)
        if (text[i] == '1') a.set(i);
    return a;
}

} // namespace neq::test
