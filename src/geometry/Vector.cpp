#include "molcryst/geometry/Vector.h"

namespace molcryst {

template class Array<double, 2>;
template class Array<double, 3>;
template class Array<int, 3>;
template class Vector<double, 2>;
template class Vector<double, 3>;
template class Vector<int, 3>;

}  // namespace molcryst
