// Vector: the N-component vector of the maths layer, on top of Array.
//
// Included nearly everywhere, so it stays small: arithmetic, lengths, dot and
// cross products, the tolerance comparison `equals` and the print form
// "(x, y, z)". The common instantiations are compiled once in Vector.cpp.
#ifndef MOLCRYST_GEOMETRY_VECTOR_H
#define MOLCRYST_GEOMETRY_VECTOR_H

#include <cmath>
#include <ostream>
#include <stdexcept>
#include <type_traits>

#include "molcryst/geometry/Array.h"

namespace molcryst {

/// An N-component vector; the components are the elements of the Array.
template <class T, int N>
class Vector : public Array<T, N> {
public:
    /// The zero vector.
    Vector() = default;
    Vector(const Array<T, N>& a) : Array<T, N>(a) {}  // NOLINT: an Array is a vector's storage

    template <int M = N, typename std::enable_if<M == 2, int>::type = 0>
    Vector(T x, T y) {
        (*this)[0] = x;
        (*this)[1] = y;
    }
    template <int M = N, typename std::enable_if<M == 3, int>::type = 0>
    Vector(T x, T y, T z) {
        (*this)[0] = x;
        (*this)[1] = y;
        (*this)[2] = z;
    }

    /// Component-wise conversion, as static_cast of each component.
    template <class U>
    explicit Vector(const Vector<U, N>& other) {
        for (int i = 0; i < N; ++i) (*this)[i] = static_cast<T>(other[i]);
    }

    /// Euclidean length.
    double length() const { return std::sqrt(length2()); }
    /// Square of the length.
    double length2() const {
        double sum = 0.0;
        for (int i = 0; i < N; ++i) sum += static_cast<double>((*this)[i]) * static_cast<double>((*this)[i]);
        return sum;
    }

    T dot(const Vector& other) const {
        T sum = T();
        for (int i = 0; i < N; ++i) sum += (*this)[i] * other[i];
        return sum;
    }

    /// Scales the vector to `length`, keeping its direction (for floating-point
    /// components). A zero vector has none: std::domain_error.
    Vector& set_length(double length);

    /// Scales the vector to unit length. A vector shorter than `tolerance`
    /// has no reliable direction: std::domain_error.
    Vector& normalise(double tolerance = 1e-07);

    /// A unit copy; see normalise.
    Vector unit(double tolerance = 1e-07) const {
        Vector v(*this);
        v.normalise(tolerance);
        return v;
    }

    Vector& operator+=(const Vector& other) {
        for (int i = 0; i < N; ++i) (*this)[i] += other[i];
        return *this;
    }
    Vector& operator-=(const Vector& other) {
        for (int i = 0; i < N; ++i) (*this)[i] -= other[i];
        return *this;
    }
    Vector& operator*=(T s) {
        for (int i = 0; i < N; ++i) (*this)[i] *= s;
        return *this;
    }
    Vector& operator/=(T s) {
        for (int i = 0; i < N; ++i) (*this)[i] /= s;
        return *this;
    }
    Vector operator-() const {
        Vector v;
        for (int i = 0; i < N; ++i) v[i] = -(*this)[i];
        return v;
    }

    /// "(x, y, z)", each component by the stream's own settings.
    void print(std::ostream& os) const;
};

template <class T, int N>
Vector<T, N>& Vector<T, N>::set_length(double length) {
    const double current = this->length();
    if (!(current > 0.0) || !std::isfinite(current))
        throw std::domain_error("Vector<T,N>::set_length(double) vector has zero length");
    const double factor = length / current;
    for (int i = 0; i < N; ++i) (*this)[i] = static_cast<T>((*this)[i] * factor);
    return *this;
}

template <class T, int N>
Vector<T, N>& Vector<T, N>::normalise(double tolerance) {
    const double current = this->length();
    if (!(current >= tolerance) || !(current > 0.0) || !std::isfinite(current))
        throw std::domain_error("Vector<T,N>::normalise(double) vector is shorter than the tolerance");
    for (int i = 0; i < N; ++i) (*this)[i] = static_cast<T>((*this)[i] / current);
    return *this;
}

template <class T, int N>
void Vector<T, N>::print(std::ostream& os) const {
    os << '(';
    for (int i = 0; i < N; ++i) {
        if (i != 0) os << ", ";
        os << (*this)[i];
    }
    os << ')';
}

template <class T, int N>
Vector<T, N> operator+(const Vector<T, N>& a, const Vector<T, N>& b) {
    Vector<T, N> v(a);
    v += b;
    return v;
}

template <class T, int N>
Vector<T, N> operator-(const Vector<T, N>& a, const Vector<T, N>& b) {
    Vector<T, N> v(a);
    v -= b;
    return v;
}

template <class T, int N>
Vector<T, N> operator*(const Vector<T, N>& a, typename Vector<T, N>::value_type s) {
    Vector<T, N> v(a);
    v *= s;
    return v;
}

template <class T, int N>
Vector<T, N> operator*(typename Vector<T, N>::value_type s, const Vector<T, N>& a) {
    Vector<T, N> v(a);
    v *= s;
    return v;
}

template <class T, int N>
Vector<T, N> operator/(const Vector<T, N>& a, typename Vector<T, N>::value_type s) {
    Vector<T, N> v(a);
    v /= s;
    return v;
}

template <class T, int N>
T dot(const Vector<T, N>& a, const Vector<T, N>& b) {
    return a.dot(b);
}

/// The cross product a x b. Never throws: parallel vectors give the zero
/// vector, which callers that need a direction test themselves.
template <class T>
Vector<T, 3> cross(const Vector<T, 3>& a, const Vector<T, 3>& b) {
    return Vector<T, 3>(a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]);
}

/// True if every component differs by strictly less than `tolerance`.
template <class T, int N>
bool equals(const Vector<T, N>& a, const Vector<T, N>& b, double tolerance) {
    for (int i = 0; i < N; ++i) {
        if (!(std::fabs(static_cast<double>(a[i]) - static_cast<double>(b[i])) < tolerance)) return false;
    }
    return true;
}

template <class T, int N>
std::ostream& operator<<(std::ostream& os, const Vector<T, N>& v) {
    v.print(os);
    return os;
}

extern template class Array<double, 2>;
extern template class Array<double, 3>;
extern template class Array<int, 3>;
extern template class Vector<double, 2>;
extern template class Vector<double, 3>;
extern template class Vector<int, 3>;

}  // namespace molcryst

#endif
