// Array: the fixed-size array beneath vectors, matrices and the small
// per-axis records of the kernel (coordinate uncertainties, tensor elements).
//
// Default construction zero-fills numeric element types and default-constructs
// class types. In an archive an Array is its N elements in order, with no
// count: the size is part of the type.
#ifndef MOLCRYST_GEOMETRY_ARRAY_H
#define MOLCRYST_GEOMETRY_ARRAY_H

#include <stdexcept>

#include "molcryst/support/Archive.h"

namespace molcryst {

/// N elements of T, stored inline.
template <class T, int N>
class Array {
    static_assert(N > 0, "Array<T,N> needs at least one element");

public:
    typedef T value_type;

    /// Zero for numeric T (value initialisation), default objects otherwise.
    Array() : data_() {}

    /// Every element set to `value`.
    explicit Array(const T& value) {
        for (int i = 0; i < N; ++i) data_[i] = value;
    }

    static constexpr int size() { return N; }

    /// Unchecked element access, 0 to N-1.
    T& operator[](int i) { return data_[i]; }
    const T& operator[](int i) const { return data_[i]; }

    /// Checked element access: outside 0 to N-1 is std::out_of_range.
    T& at(int i) {
        check(i);
        return data_[i];
    }
    const T& at(int i) const {
        check(i);
        return data_[i];
    }

    T* begin() { return data_; }
    T* end() { return data_ + N; }
    const T* begin() const { return data_; }
    const T* end() const { return data_ + N; }
    T* data() { return data_; }
    const T* data() const { return data_; }

    /// The N elements in order, no count.
    void write(Archive& ar) const {
        for (int i = 0; i < N; ++i) ar << data_[i];
    }
    /// N elements in order, read in place.
    void read(Archive& ar) {
        for (int i = 0; i < N; ++i) ar >> data_[i];
    }

private:
    static void check(int i) {
        if (i < 0 || i >= N) throw std::out_of_range("Array<T,N>::at(int) index out of range");
    }

    T data_[N];
};

template <class T, int N>
bool operator==(const Array<T, N>& a, const Array<T, N>& b) {
    for (int i = 0; i < N; ++i) {
        if (!(a[i] == b[i])) return false;
    }
    return true;
}

template <class T, int N>
bool operator!=(const Array<T, N>& a, const Array<T, N>& b) {
    return !(a == b);
}

/// N elements in order; no count.
template <class T, int N>
Archive& operator<<(Archive& ar, const Array<T, N>& a) {
    a.write(ar);
    return ar;
}

/// N elements in order, read in place.
template <class T, int N>
Archive& operator>>(Archive& ar, Array<T, N>& a) {
    a.read(ar);
    return ar;
}

/// Smallest archived size of an Array: N times that of its element.
template <class T, int N>
struct ArchiveMinSize<Array<T, N> > {
    static constexpr std::size_t value = N * ArchiveMinSize<T>::value;
};

}  // namespace molcryst

#endif
