// AtomTyper: the interface of force-field atom and bond typing.
//
// Types are computed on demand from an atom's element, neighbours, bonds and
// sites; nothing is stored on the atoms.
#ifndef MOLCRYST_MOLECULE_ATOMTYPER_H
#define MOLCRYST_MOLECULE_ATOMTYPER_H

#include <string>

#include "molcryst/support/THandle.h"

namespace molcryst {

class Atom;
class Bond;
class Molecule;

/// Names the type of an atom or a bond under some typing scheme.
class AtomTyper {
public:
    virtual ~AtomTyper();
    virtual std::string atom_type(const Atom& atom) const = 0;
    virtual std::string bond_type(const Bond& bond) const = 0;
    /// The scheme's name; molecules compare typers by it.
    virtual std::string name() const = 0;

    /// The type of the atom at `index` in `molecule`.
    std::string atom_type(const Molecule& molecule, int index) const;
    /// The type of the bond at `index` in `molecule`.
    std::string bond_type(const Molecule& molecule, int index) const;

protected:
    AtomTyper() = default;
    AtomTyper(const AtomTyper&) = default;
    AtomTyper& operator=(const AtomTyper&) = default;
};

typedef THandle<AtomTyper> HAtomTyper;

}  // namespace molcryst

#endif
