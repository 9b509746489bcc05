#pragma once

// VDArray<T>: the program's growable array. It is the standard contiguous sequence
// (size, indexing, push_back, clear, reserve and the rest come from std::vector)
// with the three operations the older code was written against.

#include "foundation/export.h"

#include <algorithm>
#include <vector>

template <class T> class NEQBRIDGE_API VDArray : public std::vector<T> {
  public:
    using std::vector<T>::vector;

    // Clear, then n entries all equal to value; the capacity is kept.
    void reinit(int n, const T& value) {
        this->clear();
        if (n > 0) this->resize(static_cast<std::size_t>(n), value);
    }

    // Release the storage: size and capacity become 0.
    void destroy() { std::vector<T>().swap(*this); }

    // Reverse in place, swapping from both ends.
    void reverse() { std::reverse(this->begin(), this->end()); }

    int getSize() const { return static_cast<int>(this->size()); }
};
