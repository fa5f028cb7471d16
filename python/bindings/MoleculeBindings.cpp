// Atom, Bond and Molecule: shared with the library by handle. Coordinates
// come out as NumPy arrays, an atom without a site as a row of NaN.
#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <set>

#include "Bindings.h"
#include "molcryst/graph/OrderedGraph.h"
#include "molcryst/io/BondOrderPerception.h"
#include "molcryst/molecule/Atom.h"
#include "molcryst/molecule/Bond.h"
#include "molcryst/molecule/Molecule.h"
#include "molcryst/molecule/MoleculeFunctions.h"
#include "molcryst/molecule/Site.h"

namespace py = pybind11;

namespace molcryst {
namespace python {

namespace {

const double not_a_number = std::numeric_limits<double>::quiet_NaN();

/// One row per atom, in index order: the orthogonal (or fractional) point of its site.
py::array_t<double> coordinates(const Molecule& m, bool fractional) {
    const int n = m.natoms();
    py::array_t<double> a({n, 3});
    auto r = a.mutable_unchecked<2>();
    for (int i = 0; i < n; ++i) {
        const HAtom atom = m.atom(i);
        for (int k = 0; k < 3; ++k)
            r(i, k) =
                atom->has_site() ? (fractional ? atom->site()->frac()[k] : atom->site()->orth()[k]) : not_a_number;
    }
    return a;
}

/// The rings of the molecule's basic ring set, each as atom indices in ring
/// order from its lowest index, sorted.
std::vector<std::vector<int> > rings(const Molecule& m) {
    const HMoleculeGraph graph = m.graph();
    std::deque<std::set<HAtom> > sets;
    graph->basic_ring_set(sets);
    std::vector<std::vector<int> > result;
    for (const std::set<HAtom>& ring : sets) {
        HAtom start;
        for (const HAtom& a : ring)
            if (start.unhand() == nullptr || a->index() < start->index()) start = a;
        const THandle<std::vector<HAtom> > order = connected_ring(start, ring, graph);
        std::vector<int> indices;
        for (const HAtom& a : *order) indices.push_back(a->index());
        result.push_back(indices);
    }
    // The ring set walks handles in address order, which differs from run to
    // run; by atom indices the list is the same every time.
    std::sort(result.begin(), result.end());
    return result;
}

const char* bond_type_name(BondType type) {
    static const char* const names[] = {"unknown",  "single",    "double",      "triple",   "quadruple",
                                        "aromatic", "polymeric", "delocalised", "reserved", "pi"};
    return type >= 0 && type <= PI_BOND ? names[type] : "unknown";
}

}  // namespace

void bind_molecule(py::module_& m) {
    py::class_<Atom, HAtom>(m, "Atom",
                            "An atom: element, label, formal charge and, when it has one, a site (orthogonal "
                            "Angstrom and fractional coordinates, occupancy). Index, neighbours and rings are "
                            "those of the molecule holding it.")
        .def(
            "element", [](const Atom& a) { return a.element().symbol(); }, "The element's symbol.")
        .def("atomic_number", [](const Atom& a) { return a.element().atomic_number(); })
        .def("label", &Atom::label)
        .def("formal_charge", &Atom::formal_charge)
        .def("symmtag", &Atom::symmtag, "The number of the deposited site it stands for.")
        .def("index", &Atom::index, "Its index in its molecule.")
        .def("nbonds", &Atom::nbonds)
        .def("cyclic", &Atom::cyclic, "Whether it lies on a ring.")
        .def("nhydrogens", &Atom::nhydrogens, py::arg("all_isotopes") = true)
        .def("has_site", &Atom::has_site)
        .def(
            "orth",
            [](const Atom& a) -> py::object {
                if (!a.has_site()) return py::none();
                return point_array(a.site()->orth());
            },
            "The orthogonal point (Angstrom), or None without a site.")
        .def(
            "frac",
            [](const Atom& a) -> py::object {
                if (!a.has_site()) return py::none();
                return point_array(a.site()->frac());
            },
            "The fractional point, or None without a site.")
        .def("occupancy",
             [](const Atom& a) -> py::object {
                 if (!a.has_site()) return py::none();
                 return py::float_(a.site()->occupancy().value());
             })
        .def("neighbours",
             [](const Atom& a) {
                 const std::deque<HAtom> n = a.neighbours();
                 return std::vector<HAtom>(n.begin(), n.end());
             })
        .def("__repr__",
             [](const Atom& a) { return "<molcryst.Atom " + a.label() + " " + a.element().symbol() + ">"; });

    py::class_<Bond, HBond>(m, "Bond", "A bond between two atoms of a molecule, with its type.")
        .def("atom1", &Bond::atom1)
        .def("atom2", &Bond::atom2)
        .def(
            "type", [](const Bond& b) { return std::string(bond_type_name(b.type())); },
            "'single', 'double', 'triple', 'aromatic', 'delocalised', ...")
        .def("index", &Bond::index)
        .def("cyclic", &Bond::cyclic)
        .def("rotatable", &Bond::rotatable)
        .def("__repr__", [](const Bond& b) {
            return "<molcryst.Bond " + b.atom1()->label() + "-" + b.atom2()->label() + " " + bond_type_name(b.type()) +
                   ">";
        });

    py::class_<Molecule, HMolecule>(m, "Molecule",
                                    "A molecule: atoms and bonds as a graph with perceived rings, SYBYL types, "
                                    "and geometry from the atoms' sites. Indices count from 0.")
        .def("natoms", &Molecule::natoms)
        .def("nbonds", &Molecule::nbonds)
        .def("__len__", &Molecule::natoms)
        .def("atom", &Molecule::atom, py::arg("index"), "IndexError outside the molecule.")
        .def("bond", py::overload_cast<int>(&Molecule::bond, py::const_), py::arg("index"))
        .def("atoms",
             [](const Molecule& mol) {
                 std::vector<HAtom> atoms;
                 for (int i = 0; i < mol.natoms(); ++i) atoms.push_back(mol.atom(i));
                 return atoms;
             })
        .def("bonds",
             [](const Molecule& mol) {
                 std::vector<HBond> bonds;
                 for (int i = 0; i < mol.nbonds(); ++i) bonds.push_back(mol.bond(i));
                 return bonds;
             })
        .def("labels",
             [](const Molecule& mol) {
                 std::vector<std::string> labels;
                 for (int i = 0; i < mol.natoms(); ++i) labels.push_back(mol.atom(i)->label());
                 return labels;
             })
        .def("elements",
             [](const Molecule& mol) {
                 std::vector<std::string> symbols;
                 for (int i = 0; i < mol.natoms(); ++i) symbols.push_back(mol.atom(i)->element().symbol());
                 return symbols;
             })
        .def(
            "bond_atoms",
            [](const Molecule& mol) {
                py::array_t<int> a({mol.nbonds(), 2});
                auto r = a.mutable_unchecked<2>();
                for (int i = 0; i < mol.nbonds(); ++i) {
                    r(i, 0) = mol.bond(i)->atom1()->index();
                    r(i, 1) = mol.bond(i)->atom2()->index();
                }
                return a;
            },
            "The (nbonds, 2) array of each bond's atom indices.")
        .def("bond_index", &Molecule::bond_index, py::arg("atom1"), py::arg("atom2"), "-1 when they are not bonded.")
        .def(
            "atom_connections", [](const Molecule& mol, int i) { return *mol.atom_connections(i); }, py::arg("index"))
        .def(
            "perceive_bond_orders", [](Molecule& mol) { BondOrderPerception::perceive(mol); },
            "Gives every bond a type (single, double, triple, aromatic) from its elements and its length, as "
            "`molcryst convert` does before writing SYBYL types; a structure read from a CIF has single bonds "
            "until then.")
        .def("atom_sybyl_type", &Molecule::atom_sybyl_type, py::arg("index"))
        .def("bond_sybyl_type", &Molecule::bond_sybyl_type, py::arg("index"))
        .def(
            "sybyl_types",
            [](const Molecule& mol) {
                std::vector<std::string> types;
                for (int i = 0; i < mol.natoms(); ++i) types.push_back(mol.atom_sybyl_type(i));
                return types;
            },
            "The SYBYL type of every atom, in index order.")
        .def("rings", &rings,
             "The rings of the basic ring set, each as atom indices in ring order from its lowest one; the "
             "list sorted.")
        .def(
            "coordinates", [](const Molecule& mol) { return coordinates(mol, false); },
            "The (natoms, 3) array of orthogonal coordinates (Angstrom); NaN for an atom without a site.")
        .def(
            "fractional_coordinates", [](const Molecule& mol) { return coordinates(mol, true); },
            "The (natoms, 3) array of fractional coordinates; NaN for an atom without a site.")
        .def("ncomponents", &Molecule::ncomponents)
        .def("formal_charge", &Molecule::formal_charge)
        .def("distance", &Molecule::distance, py::arg("atom1"), py::arg("atom2"), "In Angstrom.")
        .def(
            "angle", [](const Molecule& mol, int a, int apex, int c) { return mol.angle(a, apex, c).degrees(); },
            py::arg("atom1"), py::arg("apex"), py::arg("atom3"), "In degrees.")
        .def(
            "torsion_angle",
            [](const Molecule& mol, int a, int b, int c, int d) { return mol.torsion_angle(a, b, c, d).degrees(); },
            py::arg("atom1"), py::arg("atom2"), py::arg("atom3"), py::arg("atom4"), "In degrees.")
        .def(
            "centroid", [](const Molecule& mol) { return point_array(mol.centroid()); },
            "Of the atoms with sites, orthogonal.")
        .def(
            "split", [](const Molecule& mol) { return *mol.split(); }, "New molecules, one per connected part.")
        .def("__str__", &printed<Molecule>)
        .def("__repr__", [](const Molecule& mol) {
            return "<molcryst.Molecule " + std::to_string(mol.natoms()) + " atoms, " + std::to_string(mol.nbonds()) +
                   " bonds>";
        });
}

}  // namespace python
}  // namespace molcryst
