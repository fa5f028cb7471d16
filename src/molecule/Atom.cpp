#include "molcryst/molecule/Atom.h"

#include <algorithm>
#include <stdexcept>

#include "molcryst/molecule/Site.h"
#include "molcryst/support/AtomPredicates.h"

namespace molcryst {

Atom::~Atom() {}

void Atom::set_element(const Element&) { throw std::runtime_error("Atom::set_element Cannot modify this atom"); }
void Atom::set_formal_charge(int) { throw std::runtime_error("Atom::set_formal_charge Cannot modify this atom"); }
void Atom::set_radius(double) { throw std::runtime_error("Atom::set_radius Cannot modify this atom"); }
void Atom::set_label(const std::string&) { throw std::runtime_error("Atom::set_label Cannot modify this atom"); }
void Atom::set_symmtag(int) { throw std::runtime_error("Atom::set_symmtag Cannot modify this atom"); }
void Atom::set_site(const HSite&) { throw std::runtime_error("Atom::set_site Cannot modify this atom"); }

int Atom::nhydrogens(bool all_isotopes) const {
    std::deque<HAtom> around = neighbours();
    if (all_isotopes) return static_cast<int>(std::count_if(around.begin(), around.end(), AtomAtomicNumberPredicate<HAtom>(1)));
    return static_cast<int>(std::count_if(around.begin(), around.end(), AtomElementCodePredicate<HAtom>(2)));
}

bool Atom::archivable() { return false; }

void Atom::print(std::ostream& out) const {
    out << "element: " << element().symbol() << ", formal_charge: " << formal_charge() << ", radius: " << radius()
        << ", label: " << label() << ", symmtag: " << symmtag() << ", site: ";
    HSite s = site();
    if (s.unhand() != nullptr)
        s->print(out);
    else
        out << "none";
}

void Atom::write(Archive&) const {}
void Atom::read(Archive&) {}

ChemicalGraphAtomData<Atom, Bond>& Atom::graph_data() { throw std::runtime_error("Atom::graph_data() not implemented"); }

bool Atom::operator==(const Atom& other) const {
    if (has_site() || other.has_site()) {
        if (!has_site() || !other.has_site()) return false;
        if (!(*site() == *other.site())) return false;
    }
    return element().code() == other.element().code() && formal_charge() == other.formal_charge() &&
           radius() == other.radius() && label() == other.label() && symmtag() == other.symmtag();
}

std::ostream& operator<<(std::ostream& out, const Atom& atom) {
    atom.print(out);
    return out;
}

}  // namespace molcryst
