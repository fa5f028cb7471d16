// The Python module molcryst (compiled part, molcryst._molcryst): the
// library's classes as a script needs them, and its faults as exceptions.
#include <sstream>
#include <stdexcept>

#include "Bindings.h"
#include "molcryst/io/CifError.h"

namespace py = pybind11;

PYBIND11_MODULE(_molcryst, m) {
    m.doc() =
        "molcryst: crystal structures read from CIF files as the library models them - cells, "
        "spacegroups, molecules with atoms, bonds, rings and SYBYL types, crystal views with contact "
        "criteria and formulae - and the reports of the molcryst command.";

    // std::invalid_argument becomes ValueError and std::out_of_range
    // IndexError (pybind11's own rules); std::runtime_error becomes
    // molcryst.Error, a RuntimeError, and a CifError molcryst.CifError, a
    // molcryst.Error. The message is the library's.
    static py::exception<std::runtime_error> error(m, "Error", PyExc_RuntimeError);
    static py::exception<molcryst::CifError> cif_error(m, "CifError", error.ptr());
    error.doc() = "A fault the library reports; the message is the library's, word for word.";
    cif_error.doc() = "A CIF file that cannot be read: 'FILE:LINE: what is wrong'.";
    py::register_exception_translator([](std::exception_ptr p) {
        try {
            if (p) std::rethrow_exception(p);
        } catch (const molcryst::CifError& e) {
            cif_error(e.what());
        } catch (const std::overflow_error&) {
            throw;  // these keep pybind11's OverflowError and ValueError
        } catch (const std::underflow_error&) {
            throw;
        } catch (const std::range_error&) {
            throw;
        } catch (const std::runtime_error& e) {
            error(e.what());
        }
    });

    molcryst::python::bind_geometry(m);
    molcryst::python::bind_molecule(m);
    molcryst::python::bind_crystal(m);
    molcryst::python::bind_formula(m);
    molcryst::python::bind_io(m);
}
