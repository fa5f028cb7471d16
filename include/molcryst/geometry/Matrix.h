// Matrix: an R by C matrix stored row by row on Array<T, R*C>.
//
// Element access `m(i, j)` counts from 0, like every C++ container; `row(k)`
// and `column(k)` count from 1, as the kernel's callers use them (the rows of
// a change-of-axes matrix are "rows 1, 2, 3"). The 3 by 3 instantiations of
// int and double are compiled once in Matrix.cpp.
#ifndef MOLCRYST_GEOMETRY_MATRIX_H
#define MOLCRYST_GEOMETRY_MATRIX_H

#include <cmath>
#include <ostream>
#include <stdexcept>
#include <type_traits>

#include "molcryst/geometry/Vector.h"

namespace molcryst {

/// R rows by C columns, row-major.
template <class T, int R, int C>
class Matrix : public Array<T, R * C> {
public:
    /// The zero matrix.
    Matrix() = default;
    Matrix(const Array<T, R * C>& a) : Array<T, R * C>(a) {}  // NOLINT: storage converts

    /// The nine elements of a 3 by 3 matrix, row by row.
    template <int M = R * C, typename std::enable_if<M == 9 && R == 3, int>::type = 0>
    Matrix(T a11, T a12, T a13, T a21, T a22, T a23, T a31, T a32, T a33) {
        T* e = this->data();
        e[0] = a11; e[1] = a12; e[2] = a13;
        e[3] = a21; e[4] = a22; e[5] = a23;
        e[6] = a31; e[7] = a32; e[8] = a33;
    }

    /// Element-wise conversion, as static_cast of each element.
    template <class U>
    explicit Matrix(const Matrix<U, R, C>& other) {
        for (int i = 0; i < R * C; ++i) (*this)[i] = static_cast<T>(other[i]);
    }

    /// The identity of a square matrix.
    static Matrix identity() {
        static_assert(R == C, "identity needs a square matrix");
        Matrix m;
        for (int i = 0; i < R; ++i) m(i, i) = T(1);
        return m;
    }

    static constexpr int rows() { return R; }
    static constexpr int columns() { return C; }

    /// Element (i, j), both counted from 0; unchecked.
    T& operator()(int i, int j) { return (*this)[i * C + j]; }
    const T& operator()(int i, int j) const { return (*this)[i * C + j]; }

    /// Row k, counted from 1. Outside 1 to R: std::out_of_range.
    Vector<T, C> row(int k) const;
    /// Column k, counted from 1. Outside 1 to C: std::out_of_range.
    Vector<T, R> column(int k) const;
    /// Replaces row k, counted from 1.
    void set_row(int k, const Vector<T, C>& v);
    /// Replaces column k, counted from 1.
    void set_column(int k, const Vector<T, R>& v);

    Matrix<T, C, R> transpose() const {
        Matrix<T, C, R> t;
        for (int i = 0; i < R; ++i)
            for (int j = 0; j < C; ++j) t(j, i) = (*this)(i, j);
        return t;
    }

    T trace() const {
        static_assert(R == C, "trace needs a square matrix");
        T sum = T();
        for (int i = 0; i < R; ++i) sum += (*this)(i, i);
        return sum;
    }

    /// Determinant of a square matrix.
    T determinant() const;

    /// The inverse of a square matrix. A singular matrix throws
    /// std::domain_error; so does an integer matrix whose inverse is not an
    /// integer matrix (determinant other than 1 or -1).
    Matrix inverse() const;

    /// Replaces the matrix by its inverse; see inverse().
    Matrix& invert() {
        *this = inverse();
        return *this;
    }

    /// Replaces each off-diagonal pair by its mean, so that the matrix is
    /// exactly symmetric.
    Matrix& make_symmetric() {
        static_assert(R == C, "make_symmetric needs a square matrix");
        for (int i = 0; i < R; ++i)
            for (int j = i + 1; j < C; ++j) {
                const T mean = ((*this)(i, j) + (*this)(j, i)) / T(2);
                (*this)(i, j) = mean;
                (*this)(j, i) = mean;
            }
        return *this;
    }

    Matrix& operator+=(const Matrix& other) {
        for (int i = 0; i < R * C; ++i) (*this)[i] += other[i];
        return *this;
    }
    Matrix& operator-=(const Matrix& other) {
        for (int i = 0; i < R * C; ++i) (*this)[i] -= other[i];
        return *this;
    }
    Matrix& operator*=(T s) {
        for (int i = 0; i < R * C; ++i) (*this)[i] *= s;
        return *this;
    }
    Matrix operator-() const {
        Matrix m;
        for (int i = 0; i < R * C; ++i) m[i] = -(*this)[i];
        return m;
    }

    /// "(a, b, c; d, e, f; g, h, i)": rows separated by semicolons.
    void print(std::ostream& os) const;

private:
    static void check_index(int k, int limit, const char* message) {
        if (k < 1 || k > limit) throw std::out_of_range(message);
    }
};

template <class T, int R, int C>
Vector<T, C> Matrix<T, R, C>::row(int k) const {
    check_index(k, R, "Matrix<T,R,C>::row(int) row out of range");
    Vector<T, C> v;
    for (int j = 0; j < C; ++j) v[j] = (*this)(k - 1, j);
    return v;
}

template <class T, int R, int C>
Vector<T, R> Matrix<T, R, C>::column(int k) const {
    check_index(k, C, "Matrix<T,R,C>::column(int) column out of range");
    Vector<T, R> v;
    for (int i = 0; i < R; ++i) v[i] = (*this)(i, k - 1);
    return v;
}

template <class T, int R, int C>
void Matrix<T, R, C>::set_row(int k, const Vector<T, C>& v) {
    check_index(k, R, "Matrix<T,R,C>::set_row(int, const Vector<T,C>&) row out of range");
    for (int j = 0; j < C; ++j) (*this)(k - 1, j) = v[j];
}

template <class T, int R, int C>
void Matrix<T, R, C>::set_column(int k, const Vector<T, R>& v) {
    check_index(k, C, "Matrix<T,R,C>::set_column(int, const Vector<T,R>&) column out of range");
    for (int i = 0; i < R; ++i) (*this)(i, k - 1) = v[i];
}

template <class T, int R, int C>
T Matrix<T, R, C>::determinant() const {
    static_assert(R == C, "determinant needs a square matrix");
    const Matrix& m = *this;
    if constexpr (R == 1) {
        return m(0, 0);
    } else if constexpr (R == 2) {
        return m(0, 0) * m(1, 1) - m(0, 1) * m(1, 0);
    } else if constexpr (R == 3) {
        return m(0, 0) * (m(1, 1) * m(2, 2) - m(1, 2) * m(2, 1)) -
               m(0, 1) * (m(1, 0) * m(2, 2) - m(1, 2) * m(2, 0)) +
               m(0, 2) * (m(1, 0) * m(2, 1) - m(1, 1) * m(2, 0));
    } else {
        static_assert(std::is_floating_point<T>::value, "determinant above 3 by 3 needs floating point");
        // Gaussian elimination with partial pivoting.
        Matrix a(m);
        T det = T(1);
        for (int k = 0; k < R; ++k) {
            int pivot = k;
            for (int i = k + 1; i < R; ++i)
                if (std::fabs(a(i, k)) > std::fabs(a(pivot, k))) pivot = i;
            if (a(pivot, k) == T(0)) return T(0);
            if (pivot != k) {
                for (int j = 0; j < C; ++j) std::swap(a(k, j), a(pivot, j));
                det = -det;
            }
            det *= a(k, k);
            for (int i = k + 1; i < R; ++i) {
                const T f = a(i, k) / a(k, k);
                for (int j = k; j < C; ++j) a(i, j) -= f * a(k, j);
            }
        }
        return det;
    }
}

template <class T, int R, int C>
Matrix<T, R, C> Matrix<T, R, C>::inverse() const {
    static_assert(R == C, "inverse needs a square matrix");
    const Matrix& m = *this;
    Matrix r;
    if constexpr (R <= 3) {
        const T det = determinant();
        if constexpr (std::is_integral<T>::value) {
            if (det != T(1) && det != T(-1))
                throw std::domain_error("Matrix<T,R,C>::inverse() matrix has no integer inverse");
        } else {
            if (det == T(0) || !std::isfinite(det))
                throw std::domain_error("Matrix<T,R,C>::inverse() matrix is singular");
        }
        if constexpr (R == 1) {
            r(0, 0) = T(1) / det;
        } else if constexpr (R == 2) {
            r(0, 0) = m(1, 1) / det;
            r(0, 1) = -m(0, 1) / det;
            r(1, 0) = -m(1, 0) / det;
            r(1, 1) = m(0, 0) / det;
        } else {
            // The adjugate over the determinant.
            r(0, 0) = (m(1, 1) * m(2, 2) - m(1, 2) * m(2, 1)) / det;
            r(0, 1) = (m(0, 2) * m(2, 1) - m(0, 1) * m(2, 2)) / det;
            r(0, 2) = (m(0, 1) * m(1, 2) - m(0, 2) * m(1, 1)) / det;
            r(1, 0) = (m(1, 2) * m(2, 0) - m(1, 0) * m(2, 2)) / det;
            r(1, 1) = (m(0, 0) * m(2, 2) - m(0, 2) * m(2, 0)) / det;
            r(1, 2) = (m(0, 2) * m(1, 0) - m(0, 0) * m(1, 2)) / det;
            r(2, 0) = (m(1, 0) * m(2, 1) - m(1, 1) * m(2, 0)) / det;
            r(2, 1) = (m(0, 1) * m(2, 0) - m(0, 0) * m(2, 1)) / det;
            r(2, 2) = (m(0, 0) * m(1, 1) - m(0, 1) * m(1, 0)) / det;
        }
        if constexpr (std::is_floating_point<T>::value) {
            for (int i = 0; i < R * C; ++i)
                if (!std::isfinite(r[i])) throw std::domain_error("Matrix<T,R,C>::inverse() matrix is singular");
        }
    } else {
        static_assert(std::is_floating_point<T>::value, "inverse above 3 by 3 needs floating point");
        // Gauss-Jordan elimination with partial pivoting.
        Matrix a(m);
        r = identity();
        for (int k = 0; k < R; ++k) {
            int pivot = k;
            for (int i = k + 1; i < R; ++i)
                if (std::fabs(a(i, k)) > std::fabs(a(pivot, k))) pivot = i;
            if (a(pivot, k) == T(0) || !std::isfinite(a(pivot, k)))
                throw std::domain_error("Matrix<T,R,C>::inverse() matrix is singular");
            if (pivot != k) {
                for (int j = 0; j < C; ++j) {
                    std::swap(a(k, j), a(pivot, j));
                    std::swap(r(k, j), r(pivot, j));
                }
            }
            const T p = a(k, k);
            for (int j = 0; j < C; ++j) {
                a(k, j) /= p;
                r(k, j) /= p;
            }
            for (int i = 0; i < R; ++i) {
                if (i == k) continue;
                const T f = a(i, k);
                if (f == T(0)) continue;
                for (int j = 0; j < C; ++j) {
                    a(i, j) -= f * a(k, j);
                    r(i, j) -= f * r(k, j);
                }
            }
        }
        for (int i = 0; i < R * C; ++i)
            if (!std::isfinite(r[i])) throw std::domain_error("Matrix<T,R,C>::inverse() matrix is singular");
    }
    return r;
}

template <class T, int R, int C>
void Matrix<T, R, C>::print(std::ostream& os) const {
    os << '(';
    for (int i = 0; i < R; ++i) {
        if (i != 0) os << "; ";
        for (int j = 0; j < C; ++j) {
            if (j != 0) os << ", ";
            os << (*this)(i, j);
        }
    }
    os << ')';
}

template <class T, int R, int K, int C>
Matrix<T, R, C> operator*(const Matrix<T, R, K>& a, const Matrix<T, K, C>& b) {
    Matrix<T, R, C> m;
    for (int i = 0; i < R; ++i)
        for (int j = 0; j < C; ++j) {
            T sum = T();
            for (int k = 0; k < K; ++k) sum += a(i, k) * b(k, j);
            m(i, j) = sum;
        }
    return m;
}

template <class T, int R, int C>
Vector<T, R> operator*(const Matrix<T, R, C>& a, const Vector<T, C>& v) {
    Vector<T, R> r;
    for (int i = 0; i < R; ++i) {
        T sum = T();
        for (int j = 0; j < C; ++j) sum += a(i, j) * v[j];
        r[i] = sum;
    }
    return r;
}

template <class T, int R, int C>
Matrix<T, R, C> operator*(const Matrix<T, R, C>& a, typename Matrix<T, R, C>::value_type s) {
    Matrix<T, R, C> m(a);
    m *= s;
    return m;
}

template <class T, int R, int C>
Matrix<T, R, C> operator*(typename Matrix<T, R, C>::value_type s, const Matrix<T, R, C>& a) {
    Matrix<T, R, C> m(a);
    m *= s;
    return m;
}

template <class T, int R, int C>
Matrix<T, R, C> operator+(const Matrix<T, R, C>& a, const Matrix<T, R, C>& b) {
    Matrix<T, R, C> m(a);
    m += b;
    return m;
}

template <class T, int R, int C>
Matrix<T, R, C> operator-(const Matrix<T, R, C>& a, const Matrix<T, R, C>& b) {
    Matrix<T, R, C> m(a);
    m -= b;
    return m;
}

template <class T, int R, int C>
std::ostream& operator<<(std::ostream& os, const Matrix<T, R, C>& m) {
    m.print(os);
    return os;
}

/// Replaces `m` by its inverse; a singular matrix throws std::domain_error.
void Invert(Matrix<double, 3, 3>& m);

extern template class Array<double, 9>;
extern template class Array<int, 9>;
extern template class Matrix<double, 3, 3>;
extern template class Matrix<int, 3, 3>;

}  // namespace molcryst

#endif
