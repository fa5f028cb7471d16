// CrystalMaker, Crystal, NewCrystal, contact criteria and contacts.
#include "Bindings.h"
#include "molcryst/contact/ContactCriterion.h"
#include "molcryst/contact/HBondCriterion.h"
#include "molcryst/contact/MolecularContact.h"
#include "molcryst/contact/VdWCriterion.h"
#include "molcryst/crystal/Crystal.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/crystal/NewCrystal.h"
#include "molcryst/molecule/Site.h"

namespace py = pybind11;

namespace molcryst {
namespace python {

namespace {

std::vector<HMolecule> molecule_list(const Hvector_HMolecule& molecules) {
    return molecules.unhand() == nullptr ? std::vector<HMolecule>() : *molecules;
}

std::vector<HMolecularContact> contact_list(const Hvector_HMolecularContact& contacts) {
    return contacts.unhand() == nullptr ? std::vector<HMolecularContact>() : *contacts;
}

/// The distance between the two anchor atoms, orthogonal Angstrom; None when either has no site.
py::object contact_distance(const MolecularContact& c) {
    const HAtom from = c.molecule_from()->atom(c.atom_from());
    const HAtom to = c.molecule_to()->atom(c.atom_to());
    if (!from->has_site() || !to->has_site()) return py::none();
    const Point d = from->site()->orth() - to->site()->orth();
    return py::float_(d.length());
}

}  // namespace

void bind_crystal(py::module_& m) {
    py::enum_<ContactType>(m, "ContactType", "Which pairs a contact criterion looks at.")
        .value("INTERMOLECULAR", INTERMOLECULAR)
        .value("INTRAMOLECULAR", INTRAMOLECULAR)
        .value("INTRA_AND_INTERMOLECULAR", INTRA_AND_INTERMOLECULAR);

    py::class_<ContactCriterion, HContactCriterion>(m, "ContactCriterion",
                                                    "The rule that decides whether two atoms are in contact.")
        .def("class_name", [](const ContactCriterion& c) { return std::string(c.class_name()); })
        .def("max_radius", &ContactCriterion::max_radius, "The farthest a contact can reach, Angstrom.")
        .def("__str__", [](const ContactCriterion& c) {
            std::ostringstream out;
            c.print(out);
            return out.str();
        });

    py::class_<VdWCriterion, ContactCriterion, THandle<VdWCriterion> >(
        m, "VdWCriterion",
        "Contacts by distance less the sum of the two van der Waals radii: a pair is in contact when that "
        "difference lies in [min_tolerance, max_tolerance] Angstrom and the atoms are min_path to max_path "
        "bonds apart (within a molecule).")
        .def(py::init([](double max_tolerance, double min_tolerance, ContactType type, int min_path, int max_path,
                         bool strongest_only) {
                 return THandle<VdWCriterion>(
                     new VdWCriterion(max_tolerance, min_tolerance, type, min_path, max_path, strongest_only));
             }),
             py::arg("max_tolerance") = 0.0, py::arg("min_tolerance") = -5.0, py::arg("type") = INTERMOLECULAR,
             py::arg("min_path") = 1, py::arg("max_path") = 999, py::arg("strongest_only") = false);

    py::class_<HBondCriterion, ContactCriterion, THandle<HBondCriterion> >(
        m, "HBondCriterion",
        "Hydrogen bonds from donors through their hydrogens to acceptors: distance limits (with vdw_corrected, "
        "on the distance less both van der Waals radii), the smallest D-H...A angle in degrees, and the "
        "bond path range within a molecule. The defaults are the molcryst command's.")
        .def(py::init([](double max_distance, double min_distance, double min_angle, bool vdw_corrected,
                         bool no_hydrogens, ContactType type, int min_path, int max_path) {
                 return THandle<HBondCriterion>(new HBondCriterion(max_distance, min_distance,
                                                                   Angle::from_degrees(min_angle), vdw_corrected,
                                                                   no_hydrogens, type, min_path, max_path));
             }),
             py::arg("max_distance") = 0.0, py::arg("min_distance") = -5.0, py::arg("min_angle") = 120.0,
             py::arg("vdw_corrected") = true, py::arg("no_hydrogens") = false,
             py::arg("type") = INTRA_AND_INTERMOLECULAR, py::arg("min_path") = 3, py::arg("max_path") = 999);

    py::class_<MolecularContact, HMolecularContact>(m, "MolecularContact",
                                                    "A contact from an atom of one molecule to an atom of another "
                                                    "(or of the same) molecule.")
        .def("molecule_from", &MolecularContact::molecule_from)
        .def("molecule_to", &MolecularContact::molecule_to)
        .def("atom_from", &MolecularContact::atom_from, "Index in molecule_from.")
        .def("atom_to", &MolecularContact::atom_to, "Index in molecule_to.")
        .def("type", &MolecularContact::type, "What found it: 1 a van der Waals rule, 2 distance, 3 hydrogen bond.")
        .def("intermolecular", &MolecularContact::intermolecular)
        .def(
            "strength",
            [](const MolecularContact& c) -> py::object {
                if (!c.has_strength()) return py::none();
                return py::float_(c.strength());
            },
            "None when not set.")
        .def("distance", &contact_distance, "Between the two atoms, Angstrom; None when either has no site.")
        .def("__repr__", [](const MolecularContact& c) {
            return "<molcryst.MolecularContact " + c.molecule_from()->atom(c.atom_from())->label() + "..." +
                   c.molecule_to()->atom(c.atom_to())->label() + ">";
        });

    py::class_<Crystal, HCrystal>(m, "Crystal", "A picture of a crystal: a cell, molecules and contacts.")
        .def("cell", &Crystal::cell)
        .def("nmolecules", &Crystal::nmolecules)
        .def("natoms", &Crystal::natoms)
        .def("molecules", [](const Crystal& c) { return molecule_list(c.molecules()); })
        .def("contacts", [](const Crystal& c) { return contact_list(c.contacts()); })
        .def("__repr__", [](const Crystal& c) {
            return "<molcryst.Crystal " + std::to_string(c.nmolecules()) + " molecules, " + std::to_string(c.natoms()) +
                   " atoms>";
        });

    py::class_<CrystalMaker, HCrystalMaker>(m, "CrystalMaker",
                                            "A structure as deposited: the cell and the molecules of the "
                                            "asymmetric unit. read_cif gives one per data block, with the "
                                            "block's name as `name`.",
                                            py::dynamic_attr())
        .def("cell", &CrystalMaker::cell)
        .def("nmolecules", &CrystalMaker::nmolecules)
        .def("molecule", &CrystalMaker::molecule, py::arg("index"), "IndexError outside the view.")
        .def(
            "molecules", [](const CrystalMaker& c) { return molecule_list(c.current_molecules()); },
            "The molecules of the current view.")
        .def("natoms", &CrystalMaker::natoms)
        .def("nbonds", &CrystalMaker::nbonds)
        .def("create_crystal", py::overload_cast<>(&CrystalMaker::create_crystal, py::const_),
             "The asymmetric unit as a Crystal, no symmetry applied.")
        .def("create_nonbonded_fill",
             py::overload_cast<const ContactCriterion&>(&CrystalMaker::create_nonbonded_fill, py::const_),
             py::arg("criterion"), "Every molecule with what touches it by the criterion, contacts included.")
        .def("__str__", &printed<CrystalMaker>)
        .def("__repr__", [](const CrystalMaker& c) {
            return "<molcryst.CrystalMaker " + std::to_string(c.nmolecules()) + " molecules, " +
                   std::to_string(c.natoms()) + " atoms>";
        });

    py::class_<NewCrystal, HNewCrystal>(m, "NewCrystal",
                                        "The crystal an application shows: a CrystalMaker, the picture wanted of "
                                        "it (asymmetric unit or packed box) and the contacts of the active "
                                        "criteria, each ending on a hanging atom until expanded.")
        .def(py::init([](const HCrystalMaker& maker) { return HNewCrystal(new NewCrystal(maker)); }),
             py::arg("crystal_maker"), "Selects the maker's 3D view.")
        .def("crystal_maker", &NewCrystal::crystal_maker)
        .def("crystal_snapshot", &NewCrystal::crystal_snapshot, "The picture shown, rebuilt first if stale.")
        .def("packing", &NewCrystal::packing)
        .def("set_packing", &NewCrystal::set_packing, py::arg("packing"))
        .def(
            "packing_box",
            [](const NewCrystal& c) {
                const Box& b = c.packing_box();
                return py::make_tuple(std::vector<double>{b.minimum()[0], b.minimum()[1], b.minimum()[2]},
                                      std::vector<double>{b.maximum()[0], b.maximum()[1], b.maximum()[2]});
            },
            "(low, high) corners, fractional.")
        .def(
            "set_packing_box",
            [](NewCrystal& c, const std::vector<double>& low, const std::vector<double>& high) {
                if (low.size() != 3 || high.size() != 3)
                    throw std::invalid_argument("NewCrystal.set_packing_box: corners of three coordinates are needed");
                c.set_packing_box(Box(Point(low[0], low[1], low[2]), Point(high[0], high[1], high[2])));
            },
            py::arg("low"), py::arg("high"), "Fractional corners of the box packed.")
        .def("add_contact_criterion", &NewCrystal::add_contact_criterion, py::arg("criterion"))
        .def("remove_contact_criterion", &NewCrystal::remove_contact_criterion, py::arg("criterion"))
        .def("set_contact_criterion", &NewCrystal::set_contact_criterion, py::arg("criterion"))
        .def("clear_contact_criteria", &NewCrystal::clear_contact_criteria)
        .def("ncontact_criteria", &NewCrystal::ncontact_criteria)
        .def("contact_criteria", &NewCrystal::contact_criteria)
        .def("contacts", [](const NewCrystal& c) { return contact_list(c.contacts()); })
        .def("expandable", py::overload_cast<>(&NewCrystal::expandable, py::const_),
             "Whether some contact ends on a hanging atom.")
        .def("expand_all_contacts", &NewCrystal::expand_all_contacts)
        .def(
            "expand_fully",
            [](NewCrystal& c) {
                c.expand_fully();
                c.notify();
            },
            "Expands breadth first until nothing new appears, stopping where a polymer repeats.")
        .def("__str__", &printed<NewCrystal>);
}

}  // namespace python
}  // namespace molcryst
