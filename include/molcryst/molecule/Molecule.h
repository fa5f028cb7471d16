// Molecule: the abstract molecule, atoms and bonds in index order.
//
// Connectivity, geometry and whole-molecule edits are written here once, in
// terms of a small set of pure virtual accessors, so that an implementation
// supplies only storage. Atoms are addressed by index or by handle; indices
// run from 0 in table order and shift down when an atom is removed, while
// handles stay valid.
//
// A molecule is editable exactly when `editable()` says so. The base versions
// of the mutating operations refuse with "Molecule::<name> this molecule can
// not be edited.", so every read-only view stays read-only.
#ifndef MOLCRYST_MOLECULE_MOLECULE_H
#define MOLCRYST_MOLECULE_MOLECULE_H

#include <ostream>
#include <string>
#include <vector>

#include "molcryst/geometry/Angle.h"
#include "molcryst/geometry/Box.h"
#include "molcryst/geometry/Plane.h"
#include "molcryst/geometry/Point.h"
#include "molcryst/geometry/Vector.h"
#include "molcryst/molecule/AtomInGraph.h"
#include "molcryst/molecule/AtomTyper.h"
#include "molcryst/support/AtomPredicates.h"
#include "molcryst/support/BondPredicates.h"
#include "molcryst/support/PolymorphicIterator.h"
#include "molcryst/support/ResizableArray2D.h"

namespace molcryst {

class Cell;
class CrystalSymmetryTransformation;
class Molecule;
// Contacts and their criteria sit above molecules; the search is only declared here.
class BasicContact;
class ContactCriterion;

typedef THandle<Molecule> HMolecule;
typedef std::vector<HMolecule> vector_HMolecule;
typedef THandle<vector_HMolecule> Hvector_HMolecule;
typedef THandle<std::vector<int> > Hvector_int;
typedef THandle<OrderedGraph<HAtom, HBond> > HMoleculeGraph;

/// Abstract molecule. Implementations give storage (MoleculeGraphImpl) and
/// editing (MoleculeGraphEditableImpl); Molecule3d is the concrete one.
class Molecule {
public:
    /// Holds a new SybylAtomTyper for hydrogens that may be missing.
    Molecule();
    /// Shares the source's typer; nothing else is copied here.
    Molecule(const Molecule& x);
    Molecule& operator=(const Molecule& x);

    virtual HMolecule clone() const = 0;
    virtual ~Molecule();
    virtual int ncomponents() const;
    virtual bool contiguous() const;
    virtual int natoms() const = 0;
    /// The atom at an index; std::out_of_range outside the table.
    virtual HAtom atom(int index) const = 0;
    virtual bool has_atom(HAtom atom) const = 0;
    virtual PolymorphicConstIterator<HAtom> begin_atoms() const = 0;
    virtual PolymorphicConstIterator<HAtom> end_atoms() const = 0;
    virtual PolymorphicIterator<HAtom> begin_atoms() = 0;
    virtual PolymorphicIterator<HAtom> end_atoms() = 0;
    virtual int nbonds() const = 0;
    virtual HBond bond(int index) const = 0;
    /// The bond between two atoms of this molecule. The base version, which
    /// implementations may call, searches the two atoms' bonds.
    virtual HBond bond(HAtom atom1, HAtom atom2) const = 0;
    virtual bool has_bond(HBond bond) const = 0;
    /// Whether two atoms are bonded; false for atoms of another molecule.
    virtual bool has_bond(HAtom atom1, HAtom atom2) const = 0;
    virtual PolymorphicConstIterator<HBond> begin_bonds() const = 0;
    virtual PolymorphicConstIterator<HBond> end_bonds() const = 0;
    virtual PolymorphicIterator<HBond> begin_bonds() = 0;
    virtual PolymorphicIterator<HBond> end_bonds() = 0;
    /// A separate topology over the very atoms and bonds of this molecule.
    virtual HMoleculeGraph graph() const;
    /// Neighbours of an atom that are non-metals, metals, or not hydrogen.
    virtual int atom_nconnections_nonmetal(int index) const;
    virtual int atom_nconnections_metal(int index) const;
    virtual int atom_nconnections_nonhydrogen(int index) const;
    /// The neighbours' indices.
    virtual Hvector_int atom_connections(int index) const = 0;
    virtual Hvector_int atom_connections_nonmetal(int index) const;
    virtual Hvector_int atom_connections_metal(int index) const;
    virtual Hvector_int atom_connections_nonhydrogen(int index) const;
    /// The SYBYL type of a bond, whatever typer is attached.
    virtual std::string bond_sybyl_type(int index) const;
    /// New molecules, one per connected part, of new atoms.
    virtual Hvector_HMolecule split() const = 0;
    /// Splits this molecule into its parts, which take over its atoms; it is
    /// left empty.
    virtual Hvector_HMolecule inplace_split();
    /// The index of the bond between two atoms; -1 when they are not bonded.
    virtual int bond_index(int atom1, int atom2) const = 0;
    virtual bool editable() const;
    /// Adds the atoms and bonds of `x` that are not here yet: an atom with a
    /// site stands for one here of the same symmetry tag at the same position.
    virtual void merge(const HMolecule& x);
    /// Adds copies of the atoms and bonds of `x`; the new atoms' indices.
    virtual std::vector<int> add(const Molecule& x);
    /// Removes the terminal hydrogen and deuterium atoms; the number removed.
    virtual int remove_hydrogens();
    /// Renumbers the atoms depth first from the heaviest one.
    virtual void sort_atoms();
    virtual int add(HAtom atom);
    virtual int unchecked_add(HAtom atom);
    virtual int add(HBond bond, int atom1, int atom2);
    virtual int add(HBond bond, HAtom atom1, HAtom atom2);
    virtual int unchecked_add(HBond bond, HAtom atom1, HAtom atom2);
    virtual void remove_atom(int index);
    virtual void remove(HAtom atom);
    virtual void remove_bond(int index);
    virtual void remove(HBond bond);
    virtual void isolate(HAtom atom);
    virtual void clear();
    virtual bool archivable();
    virtual void write(Archive& ar) const;
    virtual void read(Archive& ar);
    /// "atoms: n, bonds: m", then each atom and each bond on its own line.
    virtual void print(std::ostream& out) const;
    /// `order[k]` is the old index of the atom that is to have index k.
    virtual void reorder_atoms(const std::vector<int>& order);
    /// `order[k]` is the old index of the bond that is to have index k.
    virtual void reorder_bonds(const std::vector<int>& order);
    /// Removes the atoms of this molecule among `atoms`, with their bonds,
    /// leaving the molecule and the atoms as `remove(HAtom)` of each in turn
    /// would, only in one pass; others and repeats are ignored. Returns the
    /// number removed. A class that overrides `remove(HAtom)` overrides this
    /// too. A vector argument picks this over the template below.
    virtual int remove_atoms(const std::vector<HAtom>& atoms);

    /// Raises editable_error(name) unless the molecule is editable.
    void check_editable(const char* name) const;
    /// Throws std::runtime_error "Molecule::<name> this molecule can not be edited.".
    [[noreturn]] void editable_error(const char* name) const;

    /// Entry i: the neighbours of atom i.
    std::vector<Hvector_int> adjacency_list() const;
    /// natoms by natoms, true for each bonded pair both ways.
    THandle<ResizableArray2D<bool> > adjacency_matrix() const;
    /// The number of bonds on a shortest path; 0 to itself, -1 when none.
    int shortest_path(int atom1, int atom2) const;
    /// The bonds with both ends among `atoms`, in bond order.
    std::vector<int> bond_subset(const std::vector<int>& atoms) const;
    /// The atoms at the ends of `bonds`, ascending.
    std::vector<int> atom_subset(const std::vector<int>& bonds) const;
    std::vector<int> atoms_with_sites() const;
    std::vector<int> atoms_with_sites(const std::vector<int>& atoms) const;

    // Geometry, on the orthogonal coordinates of the sites, in Angstrom. An
    // atom without a site raises the null-handle error.
    double distance(int atom1, int atom2) const;
    /// From the first atom to the second.
    Vector<double, 3> vector(int atom1, int atom2) const;
    /// Along a bond, from its atom1 to its atom2.
    Vector<double, 3> vector(int bond) const;
    /// The angle at the middle atom.
    Angle angle(int atom1, int apex, int atom3) const;
    /// The distance of two bonded atoms; 0.0 when they are not bonded.
    double bond_length(int atom1, int atom2) const;
    double bond_length(int bond) const;
    /// The angle at the atom two bonds share; 0 when they share none.
    Angle bond_angle(int bond1, int bond2) const;
    /// The mean angle over pairs of the atom's neighbours; 0 with fewer than two.
    Angle average_bond_angle(int atom) const;
    Angle torsion_angle(int atom1, int atom2, int atom3, int atom4) const;
    /// The torsion along three bonds that form a chain, in any direction.
    Angle torsion_angle(int bond1, int bond2, int bond3) const;
    bool valid_torsion(int atom1, int atom2, int atom3, int atom4, const Angle& limit) const;
    bool valid_torsion(int bond1, int bond2, int bond3, const Angle& limit) const;
    /// Of the atoms with sites.
    Point centroid() const;
    Point centroid(const std::vector<int>& atoms) const;
    Box box() const;
    Box box(const std::vector<int>& atoms) const;
    Plane mean_plane() const;
    Plane mean_plane(const std::vector<int>& atoms) const;
    /// The sum of the atoms' charges.
    int formal_charge() const;
    /// Finds an atom with a site, of symmetry tag `symmtag`, at `position`
    /// within 1e-05 Angstrom in each coordinate.
    bool find_atom(int symmtag, const Point& position, int& index) const;

    /// Adds the very atoms and bonds of a graph.
    void add_graph(const OrderedGraph<HAtom, HBond>& g);
    /// Removes the very atoms and bonds of a graph.
    void remove_graph(const OrderedGraph<HAtom, HBond>& g);
    /// A new molecule of copies of the atoms, with the bonds among them.
    HMolecule create_molecule(const std::vector<int>& atoms) const;
    /// A new molecule of copies of all atoms, each site moved by `t`.
    HMolecule create_molecule(const CrystalSymmetryTransformation& t, const Cell& cell) const;

    // The contact search inside this molecule, through the criterion's group
    // search over the atoms that have sites. An atom named alone that has no
    // site gives an empty result. Defined with the contact criteria.
    /// All sited atoms against all sited atoms.
    THandle<std::vector<THandle<BasicContact> > > nonbonded_search(const ContactCriterion& criterion) const;
    /// One atom against all sited atoms.
    THandle<std::vector<THandle<BasicContact> > > nonbonded_search(int atom, const ContactCriterion& criterion) const;
    /// One atom against another.
    THandle<std::vector<THandle<BasicContact> > > nonbonded_search(int atom1, int atom2,
                                                                   const ContactCriterion& criterion) const;
    /// The sited atoms of a set against each other.
    THandle<std::vector<THandle<BasicContact> > > nonbonded_search(const std::vector<int>& atoms,
                                                                   const ContactCriterion& criterion) const;
    /// The sited atoms of one set against those of another.
    THandle<std::vector<THandle<BasicContact> > > nonbonded_search(const std::vector<int>& atoms1,
                                                                   const std::vector<int>& atoms2,
                                                                   const ContactCriterion& criterion) const;

    /// Removes every atom for which `predicate(HAtom)` is true, judged before
    /// any is removed, in one call of the virtual `remove_atoms`; the number
    /// removed. With none to remove nothing is called, so a read-only
    /// molecule refuses only when something would go.
    template <class Predicate>
    int remove_atoms(Predicate predicate) {
        std::vector<HAtom> doomed;
        const int n = natoms();
        for (int i = 0; i < n; ++i) {
            HAtom a = atom(i);
            if (predicate(a)) doomed.push_back(a);
        }
        if (!doomed.empty()) remove_atoms(doomed);
        return static_cast<int>(doomed.size());
    }

    /// A graph of the atoms and of the bonds that satisfy the predicates; a
    /// bond comes only with both its ends.
    template <class AtomPredicate, class BondPredicate>
    HMoleculeGraph graph(AtomPredicate atom_predicate = AtomPredicate(),
                         BondPredicate bond_predicate = BondPredicate()) const {
        HMoleculeGraph g(new OrderedGraph<HAtom, HBond>());
        const int n = natoms();
        for (int i = 0; i < n; ++i) {
            HAtom a = atom(i);
            if (atom_predicate(a)) g->unchecked_add_node(a);
        }
        const int m = nbonds();
        for (int i = 0; i < m; ++i) {
            HBond b = bond(i);
            if (!bond_predicate(b)) continue;
            HAtom a1 = b->atom1(), a2 = b->atom2();
            if (g->has_node(a1) && g->has_node(a2)) g->add_edge(b, a1, a2);
        }
        return g;
    }

    /// Does nothing unless `level` is 4; then checks that no atom appears
    /// twice, every bond joins atoms of this molecule, and no pair is joined twice.
    void validate(int level) const;

    const HAtomTyper& atom_typer() const { return atom_typer_; }
    void set_atom_typer(const HAtomTyper& typer) { atom_typer_ = typer; }
    /// The SYBYL type, from one shared SYBYL typer whatever is attached.
    std::string atom_sybyl_type(int index) const;
    /// The types given by the attached typer.
    std::string custom_atom_type(int index) const;
    std::string custom_bond_type(int index) const;

private:
    HAtomTyper atom_typer_;
};

/// Same atoms and bonds in the same order, bonds joining the same indices.
bool operator==(const Molecule& a, const Molecule& b);
bool operator!=(const Molecule& a, const Molecule& b);
std::ostream& operator<<(std::ostream& out, const Molecule& molecule);

}  // namespace molcryst

#endif
