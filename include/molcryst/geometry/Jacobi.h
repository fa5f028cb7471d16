// Jacobi: eigenvalues and eigenvectors of a real symmetric matrix by the
// classical cyclic Jacobi method, the diagonalisation beneath displacement
// ellipsoids and least-squares planes.
#ifndef MOLCRYST_GEOMETRY_JACOBI_H
#define MOLCRYST_GEOMETRY_JACOBI_H

#include <cmath>
#include <stdexcept>

#include "molcryst/geometry/Matrix.h"

namespace molcryst {

/// Diagonalises the symmetric matrix `m` (only its upper triangle is read).
/// On return `values` holds the eigenvalues, unsorted, and column i of
/// `vectors` the unit eigenvector of values[i].
///
/// Sweeps run over the pairs (0,1), (0,2), (1,2), ... by plane rotations that
/// annihilate one off-diagonal element each. A sweep starts by summing the
/// absolute off-diagonal elements; a sum of 0 ends the search. During the first
/// three sweeps a rotation is skipped for an element not above a fifth of that
/// sum over the square of the dimension, and an element negligible against
/// both diagonal terms is set to zero; later sweeps rotate every non-zero
/// element. Fifty sweeps without convergence throw std::overflow_error.
template <int N>
void Jacobi(Matrix<double, N, N> m, Vector<double, N>& values, Matrix<double, N, N>& vectors) {
    vectors = Matrix<double, N, N>::identity();
    Vector<double, N> b;  // the diagonal at the start of the sweep
    Vector<double, N> z;  // what the sweep's rotations have added to it
    for (int p = 0; p < N; ++p) {
        b[p] = m(p, p);
        values[p] = m(p, p);
    }

    for (int sweep = 1; sweep <= 50; ++sweep) {
        double sum = 0.0;
        for (int p = 0; p < N - 1; ++p)
            for (int q = p + 1; q < N; ++q) sum += std::fabs(m(p, q));
        if (sum == 0.0) return;

        const double threshold = sweep <= 3 ? 0.2 * sum / (N * N) : 0.0;
        for (int p = 0; p < N - 1; ++p) {
            for (int q = p + 1; q < N; ++q) {
                const double g = 100.0 * std::fabs(m(p, q));
                if (sweep <= 3 && std::fabs(values[p]) + g == std::fabs(values[p]) &&
                    std::fabs(values[q]) + g == std::fabs(values[q])) {
                    m(p, q) = 0.0;
                } else if (std::fabs(m(p, q)) > threshold) {
                    double h = values[q] - values[p];
                    double t;
                    if (std::fabs(h) + g == std::fabs(h)) {
                        t = m(p, q) / h;
                    } else {
                        const double theta = 0.5 * h / m(p, q);
                        t = 1.0 / (std::fabs(theta) + std::sqrt(1.0 + theta * theta));
                        if (theta < 0.0) t = -t;
                    }
                    const double c = 1.0 / std::sqrt(1.0 + t * t);
                    const double s = t * c;
                    const double tau = s / (1.0 + c);
                    h = t * m(p, q);
                    z[p] -= h;
                    z[q] += h;
                    values[p] -= h;
                    values[q] += h;
                    m(p, q) = 0.0;
                    auto rotate = [s, tau](double& x, double& y) {
                        const double gx = x;
                        const double hy = y;
                        x = gx - s * (hy + gx * tau);
                        y = hy + s * (gx - hy * tau);
                    };
                    for (int j = 0; j < p; ++j) rotate(m(j, p), m(j, q));
                    for (int j = p + 1; j < q; ++j) rotate(m(p, j), m(j, q));
                    for (int j = q + 1; j < N; ++j) rotate(m(p, j), m(q, j));
                    for (int j = 0; j < N; ++j) rotate(vectors(j, p), vectors(j, q));
                }
            }
        }
        for (int p = 0; p < N; ++p) {
            b[p] += z[p];
            values[p] = b[p];
            z[p] = 0.0;
        }
    }
    throw std::overflow_error("Jacobi: 50 iterations should never happen.");
}

extern template void Jacobi<3>(Matrix<double, 3, 3>, Vector<double, 3>&, Matrix<double, 3, 3>&);

}  // namespace molcryst

#endif
