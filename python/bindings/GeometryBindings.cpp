// Cell and Spacegroup: values, copied into Python.
#include "Bindings.h"
#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/Spacegroup.h"

namespace py = pybind11;

namespace molcryst {
namespace python {

namespace {

py::array_t<double> matrix_array(const Matrix<double, 3, 3>& m) {
    py::array_t<double> a({3, 3});
    auto r = a.mutable_unchecked<2>();
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) r(i, j) = m(i, j);
    return a;
}

Point to_point(const std::vector<double>& v, const char* what) {
    if (v.size() != 3) throw std::invalid_argument(std::string(what) + ": three coordinates are needed");
    return Point(v[0], v[1], v[2]);
}

}  // namespace

void bind_geometry(py::module_& m) {
    py::class_<Spacegroup>(m, "Spacegroup",
                           "A spacegroup: its name, number, crystal system and symmetry operators "
                           "(as x,y,z triplets).")
        .def(py::init<>(), "P1 with no operators.")
        .def(py::init<const std::string&, int, Spacegroup::System, const std::vector<std::string>&>(), py::arg("name"),
             py::arg("number"), py::arg("system"), py::arg("triplets"),
             "A spacegroup from its operators as triplets such as '-x,y+1/2,-z'.")
        .def("name", &Spacegroup::name)
        .def("number", &Spacegroup::number)
        .def("system", &Spacegroup::system)
        .def(
            "system_name", [](const Spacegroup& s) { return std::string(Spacegroup::system_name(s.system())); },
            "'triclinic', 'monoclinic', ...")
        .def("noperators", &Spacegroup::noperators)
        .def(
            "operators",
            [](const Spacegroup& s) {
                std::vector<std::string> triplets;
                for (const CrystalSymmetryOperator& op : s.operators()) triplets.push_back(op.triplet());
                return triplets;
            },
            "The operators as the library prints them, in order.")
        .def("is_centrosymmetric", &Spacegroup::is_centrosymmetric)
        .def("__repr__", [](const Spacegroup& s) {
            return "<molcryst.Spacegroup " + s.name() + " (" + std::to_string(s.number()) + ")>";
        });

    py::enum_<Spacegroup::System>(m.attr("Spacegroup"), "System")
        .value("TRICLINIC", Spacegroup::Triclinic)
        .value("MONOCLINIC", Spacegroup::Monoclinic)
        .value("ORTHORHOMBIC", Spacegroup::Orthorhombic)
        .value("TETRAGONAL", Spacegroup::Tetragonal)
        .value("TRIGONAL", Spacegroup::Trigonal)
        .value("HEXAGONAL", Spacegroup::Hexagonal)
        .value("CUBIC", Spacegroup::Cubic);

    py::class_<Cell>(m, "Cell",
                     "A unit cell: edge lengths (Angstrom), angles (degrees) in the standard orientation, "
                     "and its spacegroup; converts fractional and orthogonal coordinates.")
        .def(py::init<>())
        .def(py::init([](double a, double b, double c, double alpha, double beta, double gamma,
                         const Spacegroup& spacegroup) {
                 return Cell(a, b, c, Angle::from_degrees(alpha), Angle::from_degrees(beta), Angle::from_degrees(gamma),
                             spacegroup);
             }),
             py::arg("a"), py::arg("b"), py::arg("c"), py::arg("alpha") = 90.0, py::arg("beta") = 90.0,
             py::arg("gamma") = 90.0, py::arg("spacegroup") = Spacegroup(),
             "Lengths in Angstrom, angles in degrees; ValueError for a cell that closes no volume.")
        .def("a", &Cell::a)
        .def("b", &Cell::b)
        .def("c", &Cell::c)
        .def(
            "alpha", [](const Cell& c) { return c.alpha().degrees(); }, "In degrees.")
        .def(
            "beta", [](const Cell& c) { return c.beta().degrees(); }, "In degrees.")
        .def(
            "gamma", [](const Cell& c) { return c.gamma().degrees(); }, "In degrees.")
        .def("volume", &Cell::volume, "In cubic Angstrom.")
        .def("spacegroup", &Cell::spacegroup)
        .def(
            "orth_from_frac", [](const Cell& c) { return matrix_array(c.orth_from_frac()); },
            "The 3x3 matrix taking fractional to orthogonal coordinates (columns the axes).")
        .def("frac_from_orth", [](const Cell& c) { return matrix_array(c.frac_from_orth()); })
        .def(
            "orthogonal",
            [](const Cell& c, const std::vector<double>& p) {
                return point_array(c.orthogonal(to_point(p, "Cell.orthogonal")));
            },
            py::arg("fractional"), "A fractional point in orthogonal Angstrom.")
        .def(
            "fractional",
            [](const Cell& c, const std::vector<double>& p) {
                return point_array(c.fractional(to_point(p, "Cell.fractional")));
            },
            py::arg("orthogonal"))
        .def("__repr__", [](const Cell& c) {
            std::ostringstream out;
            out << "<molcryst.Cell " << c.a() << " " << c.b() << " " << c.c() << " " << c.alpha().degrees() << " "
                << c.beta().degrees() << " " << c.gamma().degrees() << " " << c.spacegroup().name() << ">";
            return out.str();
        });
}

}  // namespace python
}  // namespace molcryst
