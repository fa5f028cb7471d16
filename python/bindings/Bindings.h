// The Python module's bindings, one source per part of the library. Objects
// the library shares by THandle are held in Python by THandle too, so that a
// Python object and the library share ownership exactly as two handles do.
#ifndef MOLCRYST_PYTHON_BINDINGS_H
#define MOLCRYST_PYTHON_BINDINGS_H

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <sstream>
#include <string>

#include "molcryst/geometry/Vector.h"
#include "molcryst/support/THandle.h"

namespace pybind11 {
namespace detail {
template <typename T>
struct holder_helper<molcryst::THandle<T> > {
    static T* get(const molcryst::THandle<T>& p) { return p.unhand(); }
};
}  // namespace detail
}  // namespace pybind11

PYBIND11_DECLARE_HOLDER_TYPE(T, molcryst::THandle<T>)

namespace molcryst {
namespace python {

void bind_geometry(pybind11::module_& m);
void bind_molecule(pybind11::module_& m);
void bind_crystal(pybind11::module_& m);
void bind_formula(pybind11::module_& m);
void bind_io(pybind11::module_& m);

/// A point or vector as a NumPy array of three doubles.
inline pybind11::array_t<double> point_array(const Vector<double, 3>& p) {
    pybind11::array_t<double> a(3);
    auto r = a.mutable_unchecked<1>();
    for (int i = 0; i < 3; ++i) r(i) = p[i];
    return a;
}

/// The text an object's print(std::ostream&) writes.
template <class T>
std::string printed(const T& object) {
    std::ostringstream out;
    object.print(out);
    return out.str();
}

}  // namespace python
}  // namespace molcryst

#endif
