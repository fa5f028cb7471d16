#include "molcryst/geometry/Matrix.h"

namespace molcryst {

template class Array<double, 9>;
template class Array<int, 9>;
template class Matrix<double, 3, 3>;
template class Matrix<int, 3, 3>;

void Invert(Matrix<double, 3, 3>& m) { m.invert(); }

}  // namespace molcryst
