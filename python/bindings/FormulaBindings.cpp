// Sum, molecule and crystal formulae: values, printed as the library prints them.
#include "Bindings.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/formula/CrystalChemicalFormula.h"
#include "molcryst/formula/MoleculeChemicalFormula.h"
#include "molcryst/formula/SumFormula.h"
#include "molcryst/molecule/Molecule.h"
#include "molcryst/support/StringFunctions.h"

namespace py = pybind11;

namespace molcryst {
namespace python {

namespace {

template <class F>
std::map<std::string, double> element_counts(const F& formula) {
    std::map<std::string, double> counts;
    for (const auto& e : formula.elements()) counts[e.first.symbol()] = static_cast<double>(e.second);
    return counts;
}

}  // namespace

void bind_formula(py::module_& m) {
    py::class_<SumFormula>(m, "SumFormula", "Elements with (possibly fractional) multipliers, in Hill order.")
        .def("elements", &element_counts<SumFormula>, "Symbol to multiplier.")
        .def("molecular_weight", &SumFormula::molecular_weight)
        .def("nelements", &SumFormula::nelements)
        .def("__str__", &to_string<SumFormula>)
        .def("__repr__", [](const SumFormula& f) { return "<molcryst.SumFormula " + to_string(f) + ">"; })
        .def("__eq__", [](const SumFormula& a, const SumFormula& b) { return a == b; });

    py::class_<MoleculeChemicalFormula>(m, "MoleculeChemicalFormula",
                                        "The formula of one residue: element counts, charge and whether it is "
                                        "a polymer's repeat unit; text such as 'C6 H6', 'C2 H3 O2 -1', '(C2 H4)n'.")
        .def(py::init<const std::string&, bool>(), py::arg("text"), py::arg("D_is_H") = true,
             "Parses the text form; ValueError for text that is not one.")
        .def(py::init<const THandle<Molecule>&, bool>(), py::arg("molecule"), py::arg("D_is_H") = true)
        .def("elements", &element_counts<MoleculeChemicalFormula>, "Symbol to count.")
        .def("natoms", py::overload_cast<>(&MoleculeChemicalFormula::natoms, py::const_))
        .def("charge", &MoleculeChemicalFormula::charge)
        .def("polymeric", &MoleculeChemicalFormula::polymeric)
        .def("molecular_weight", &MoleculeChemicalFormula::molecular_weight)
        .def("__str__", &to_string<MoleculeChemicalFormula>)
        .def("__repr__",
             [](const MoleculeChemicalFormula& f) { return "<molcryst.MoleculeChemicalFormula " + to_string(f) + ">"; })
        .def("__eq__", [](const MoleculeChemicalFormula& a, const MoleculeChemicalFormula& b) { return a == b; });

    py::class_<CrystalChemicalFormula>(m, "CrystalChemicalFormula",
                                       "Residues with their multipliers: '2(C6 H6),H2 O1'.")
        .def(py::init<const std::string&, bool>(), py::arg("text"), py::arg("D_is_H") = true)
        .def(py::init<const THandle<CrystalMaker>&, bool>(), py::arg("crystal_maker"), py::arg("D_is_H") = true,
             "The residues of the asymmetric unit; ValueError for a structure without atoms.")
        .def("nresidues", &CrystalChemicalFormula::nresidues)
        .def(
            "residues",
            [](const CrystalChemicalFormula& f) {
                py::list residues;
                for (const CrystalChemicalFormula::tCrystalChemicalFormula_& r : f.residues())
                    residues.append(py::make_tuple(r.formula, r.unknown_multiplier
                                                                  ? py::object(py::none())
                                                                  : py::object(py::float_(r.multiplier))));
                return residues;
            },
            "(MoleculeChemicalFormula, multiplier or None when not known) for each residue.")
        .def("polymeric", &CrystalChemicalFormula::polymeric)
        .def("sum_formula", &CrystalChemicalFormula::sum_formula)
        .def("molecular_weight_sum", &CrystalChemicalFormula::molecular_weight_sum)
        .def("net_charge", &CrystalChemicalFormula::net_charge)
        .def("__str__", &to_string<CrystalChemicalFormula>)
        .def("__repr__",
             [](const CrystalChemicalFormula& f) { return "<molcryst.CrystalChemicalFormula " + to_string(f) + ">"; })
        .def("__eq__", [](const CrystalChemicalFormula& a, const CrystalChemicalFormula& b) { return a == b; });
}

}  // namespace python
}  // namespace molcryst
