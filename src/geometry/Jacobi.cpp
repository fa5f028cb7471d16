#include "molcryst/geometry/Jacobi.h"

namespace molcryst {

template void Jacobi<3>(Matrix<double, 3, 3>, Vector<double, 3>&, Matrix<double, 3, 3>&);

}  // namespace molcryst
