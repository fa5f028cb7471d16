#include "molcryst/molecule/Bond.h"

#include <stdexcept>

namespace molcryst {

Bond::~Bond() {}

void Bond::set_type(BondType) { throw std::runtime_error("Bond::set_type Cannot modify this bond"); }

bool Bond::rotatable() const {
    return type() == SINGLE_BOND && atom1()->nbonds() > 1 && atom2()->nbonds() > 1 && !cyclic();
}

bool Bond::archivable() { return false; }

void Bond::print(std::ostream& out) const {
    HAtom a1 = atom1(), a2 = atom2();
    out << "atom1: " << a1->index() << " (" << a1->label() << ")"
        << ", atom2: " << a2->index() << " (" << a2->label() << ")"
        << ", type: " << static_cast<int>(type()) << ", cyclic: " << (cyclic() ? 1 : 0);
}

void Bond::write(Archive&) const {}
void Bond::read(Archive&) {}

ChemicalGraphBondData<Atom, Bond>& Bond::graph_data() { throw std::runtime_error("Bond::graph_data() not implemented"); }

HAtom Bond::other_atom(HAtom atom) const {
    if (atom.unhand() == nullptr) throw std::invalid_argument("Bond::other_atom(HAtom) atom is a null pointer");
    HAtom a1 = atom1(), a2 = atom2();
    if (atom == a1) return a2;
    if (atom == a2) return a1;
    throw std::runtime_error("Bond::other_atom(HAtom) atom is not in this bond");
}

HAtom Bond::other_atom(const Atom& atom) const {
    HAtom a1 = atom1(), a2 = atom2();
    if (a1.unhand() == &atom) return a2;
    if (a2.unhand() == &atom) return a1;
    throw std::runtime_error("Bond::other_atom(const Atom& atom) atom is not in this bond");
}

bool Bond::contains(int atom_index) const { return atom1()->index() == atom_index || atom2()->index() == atom_index; }

std::ostream& operator<<(std::ostream& out, const Bond& bond) {
    bond.print(out);
    return out;
}

}  // namespace molcryst
