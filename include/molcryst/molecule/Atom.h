// Atom: the abstract interface of everything that stands in a molecule as an atom.
//
// Position in a molecule (index, neighbours, rings) is answered through the
// atom's graph data; chemistry (element, charge, label, site) by the concrete
// class. An atom whose class does not override a setter cannot be modified.
#ifndef MOLCRYST_MOLECULE_ATOM_H
#define MOLCRYST_MOLECULE_ATOM_H

#include <deque>
#include <ostream>
#include <string>

#include "molcryst/elements/Element.h"
#include "molcryst/support/Archive.h"
#include "molcryst/support/PolymorphicConstIterator.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

class Atom;
class Bond;
class Site;
template <class A, class B>
class ChemicalGraphAtomData;
template <class A, class B>
class ChemicalGraphBondData;

typedef THandle<Atom> HAtom;
typedef THandle<Bond> HBond;
typedef THandle<Site> HSite;

/// Abstract atom. Base setters throw std::runtime_error "Cannot modify".
class Atom {
public:
    virtual HAtom clone() const = 0;
    virtual ~Atom();
    virtual Element element() const = 0;
    virtual void set_element(const Element&);
    virtual int formal_charge() const = 0;
    virtual void set_formal_charge(int);
    virtual double radius() const = 0;
    virtual void set_radius(double);
    virtual std::string label() const = 0;
    virtual void set_label(const std::string&);
    /// The deposited symmetry tag; -1 when unknown.
    virtual int symmtag() const = 0;
    virtual void set_symmtag(int);
    /// The position, null when the atom has none.
    virtual HSite site() const = 0;
    virtual void set_site(const HSite&);
    virtual bool has_site() const = 0;
    virtual int index() const = 0;
    virtual int nbonds() const = 0;
    virtual bool cyclic() const = 0;
    /// Neighbours that are hydrogens: of atomic number 1 if `all_isotopes`,
    /// else of element code 2 (plain hydrogen, not deuterium).
    virtual int nhydrogens(bool all_isotopes) const;
    virtual PolymorphicConstIterator<HAtom> begin_neighbours() const = 0;
    virtual PolymorphicConstIterator<HAtom> end_neighbours() const = 0;
    virtual std::deque<HAtom> neighbours() const = 0;
    virtual PolymorphicConstIterator<HBond> begin_bonds() const = 0;
    virtual PolymorphicConstIterator<HBond> end_bonds() const = 0;
    virtual std::deque<HBond> bonds() const = 0;
    /// True for atoms that leave something in an archive.
    virtual bool archivable();
    /// "element: C, formal_charge: 0, radius: 0.68, label: C1, symmtag: -1, site: ..."
    virtual void print(std::ostream& out) const;
    virtual void write(Archive&) const;
    virtual void read(Archive&);
    virtual ChemicalGraphAtomData<Atom, Bond>& graph_data();

    /// Equal chemistry and sites: element code, charge, radius (exactly),
    /// label and symmtag; sites equal, or both absent. Indices and graphs play no part.
    bool operator==(const Atom& other) const;
    bool operator!=(const Atom& other) const { return !(*this == other); }

protected:
    Atom() = default;
    Atom(const Atom&) = default;
    Atom& operator=(const Atom&) = default;
};

std::ostream& operator<<(std::ostream& out, const Atom& atom);

}  // namespace molcryst

#endif
