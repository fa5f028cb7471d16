#include "molcryst/contact/DistanceCriterion.h"

#include <stdexcept>
#include <typeinfo>
#include <vector>

#include "molcryst/elements/Element.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/Archive.h"
#include "molcryst/support/StringFunctions.h"

namespace molcryst {

namespace {

Hset_int set_or_empty(const Hset_int& set) { return set.unhand() != nullptr ? set : Hset_int(new std::set<int>()); }

std::string symbols_of(const std::set<int>& numbers) {
    std::string text;
    for (int z : numbers) {
        if (!text.empty()) text += ",";
        text += Element(Element::atomic_number_to_tarn_code(z)).symbol();
    }
    return text;
}

void add_elements(std::set<int>& numbers, const std::string& text) {
    std::vector<std::string> tokens;
    split(text, tokens, " , ", StringFunctionParameters::skip_blank_fields);
    for (const std::string& token : tokens) {
        try {
            numbers.insert(Element(token).atomic_number());
        } catch (const std::invalid_argument&) {
            // not an element: skipped, the rest go on
        }
    }
}

bool allows(const std::set<int>& numbers, const Molecule& mol, int atom) {
    return numbers.empty() || numbers.count(mol.atom(atom)->element().atomic_number()) != 0;
}

void write_set(Archive& ar, const std::set<int>& numbers) {
    ar << static_cast<unsigned int>(numbers.size());
    for (int z : numbers) ar << z;
}

std::set<int> read_set(Archive& ar) {
    unsigned int count = 0;
    ar >> count;
    ar.check_count(count, 4, "set size");
    std::set<int> numbers;
    for (unsigned int i = 0; i < count; ++i) {
        int z = 0;
        ar >> z;
        numbers.insert(z);
    }
    return numbers;
}

}  // namespace

DistanceCriterion::DistanceCriterion(double max_tolerance, double min_tolerance, ContactType type, int min_path,
                                     int max_path, bool strongest_only, Hset_int from, Hset_int to)
    : ContactCriterion(type, min_path, max_path, strongest_only),
      max_tolerance_(max_tolerance),
      min_tolerance_(min_tolerance),
      from_atomic_numbers_(set_or_empty(from)),
      to_atomic_numbers_(set_or_empty(to)) {}

// A copy owns its sets: adding elements to a clone must not change the original.
DistanceCriterion::DistanceCriterion(const DistanceCriterion& other)
    : ContactCriterion(other),
      max_tolerance_(other.max_tolerance_),
      min_tolerance_(other.min_tolerance_),
      from_atomic_numbers_(new std::set<int>(*other.from_atomic_numbers_)),
      to_atomic_numbers_(new std::set<int>(*other.to_atomic_numbers_)) {}

DistanceCriterion& DistanceCriterion::operator=(const DistanceCriterion& other) {
    if (this == &other) return *this;
    Hset_int from(new std::set<int>(*other.from_atomic_numbers_));
    Hset_int to(new std::set<int>(*other.to_atomic_numbers_));
    ContactCriterion::operator=(other);
    max_tolerance_ = other.max_tolerance_;
    min_tolerance_ = other.min_tolerance_;
    from_atomic_numbers_ = from;
    to_atomic_numbers_ = to;
    return *this;
}

DistanceCriterion::~DistanceCriterion() {}

HContactCriterion DistanceCriterion::clone() const { return HContactCriterion(new DistanceCriterion(*this)); }

DistanceCriterion& DistanceCriterion::assign(const ContactCriterion& other) {
    if (typeid(other) != typeid(*this)) assign_type_error("assign(const ContactCriterion&)");
    return *this = static_cast<const DistanceCriterion&>(other);
}

const char* DistanceCriterion::class_name() const { return "DistanceCriterion"; }

double DistanceCriterion::max_radius() const { return max_tolerance_; }

bool DistanceCriterion::radius_bounds_reach() const { return typeid(*this) == typeid(DistanceCriterion); }

double DistanceCriterion::normalisation_factor(const Molecule&, int, const Molecule&, int) const { return 0.0; }

NonBondType DistanceCriterion::contact_type() const { return 2; }

Hvector_HBasicContact DistanceCriterion::find_contact_private_(const Molecule& m1, int atom1, const Molecule& m2,
                                                               int atom2) const {
    Hvector_HBasicContact result(new vector_HBasicContact());
    const Point& p1 = m1.atom(atom1)->site()->orth();
    const Point& p2 = m2.atom(atom2)->site()->orth();
    const double v = distance(p1, p2) - normalisation_factor(m1, atom1, m2, atom2);
    if (v > max_tolerance_ || v < min_tolerance_) return result;
    result->push_back(HBasicContact(new BasicContact(atom1, atom2, -v)));
    return result;
}

Hvector_HMolecularContact DistanceCriterion::find_contact(const HMolecule& m1, int atom1, const HMolecule& m2,
                                                          int atom2) const {
    Hvector_HMolecularContact result(new vector_HMolecularContact());
    if (!test_contact_type(m1, m2)) return result;
    Hvector_HBasicContact found = find_contact_private_(*m1, atom1, *m2, atom2);
    for (const HBasicContact& contact : *found) {
        // The tag is 2 whatever the class: contact_type() is not asked here.
        HMolecularContact c(new MolecularContact(*contact, m1, m2, 2));
        if (c->intermolecular()) {
            if (type() != INTRAMOLECULAR) result->push_back(c);
        } else if (test_path(*m1, c->atom_from(), c->atom_to()) && type() != INTERMOLECULAR) {
            result->push_back(c);
        }
    }
    return result;
}

Hvector_HBasicContact DistanceCriterion::find_intramolecular_contact(const Molecule& mol, int atom1,
                                                                     int atom2) const {
    Hvector_HBasicContact result(new vector_HBasicContact());
    if (type() == INTERMOLECULAR) return result;
    Hvector_HBasicContact found = find_contact_private_(mol, atom1, mol, atom2);
    for (const HBasicContact& contact : *found)
        if (test_path(mol, contact->atom_from(), contact->atom_to())) result->push_back(contact);
    return result;
}

bool DistanceCriterion::test_atom_from(const Molecule& mol, int atom) const {
    return allows(*from_atomic_numbers_, mol, atom);
}

bool DistanceCriterion::test_atom_to(const Molecule& mol, int atom) const {
    return allows(*to_atomic_numbers_, mol, atom);
}

std::string DistanceCriterion::from_elements() const { return symbols_of(*from_atomic_numbers_); }
std::string DistanceCriterion::to_elements() const { return symbols_of(*to_atomic_numbers_); }
void DistanceCriterion::add_from_elements(const std::string& text) { add_elements(*from_atomic_numbers_, text); }
void DistanceCriterion::add_to_elements(const std::string& text) { add_elements(*to_atomic_numbers_, text); }

std::ostream& DistanceCriterion::print(std::ostream& os) const {
    os << "max tolerance: " << max_tolerance_ << ", min tolerance: " << min_tolerance_
       << ", from atomic numbers: " << from_elements() << ", to atomic numbers: " << to_elements() << "\n";
    return ContactCriterion::print(os);
}

void DistanceCriterion::write(Archive& ar) const {
    ar << max_tolerance_ << min_tolerance_;
    write_set(ar, *from_atomic_numbers_);
    write_set(ar, *to_atomic_numbers_);
    ContactCriterion::write(ar);
}

void DistanceCriterion::read(Archive& ar) {
    // Everything into locals and a copy of the base part: a failed read
    // changes nothing.
    double max_tolerance = 0.0, min_tolerance = 0.0;
    {
        Archive::Field field(ar, "DistanceCriterion::read max_tolerance and min_tolerance");
        ar >> max_tolerance >> min_tolerance;
    }
    Hset_int from, to;
    {
        Archive::Field field(ar, "DistanceCriterion::read from_atomic_numbers");
        from = Hset_int(new std::set<int>(read_set(ar)));
    }
    {
        Archive::Field field(ar, "DistanceCriterion::read to_atomic_numbers");
        to = Hset_int(new std::set<int>(read_set(ar)));
    }
    DistanceCriterion base_part(*this);
    base_part.ContactCriterion::read(ar);
    ContactCriterion::operator=(base_part);
    max_tolerance_ = max_tolerance;
    min_tolerance_ = min_tolerance;
    from_atomic_numbers_ = from;
    to_atomic_numbers_ = to;
}

bool DistanceCriterion::operator==(const ContactCriterion& other) const {
    if (typeid(other) != typeid(*this)) return false;
    return *this == static_cast<const DistanceCriterion&>(other);
}

bool DistanceCriterion::operator==(const DistanceCriterion& other) const {
    if (min_tolerance_ != other.min_tolerance_ || max_tolerance_ != other.max_tolerance_) return false;
    if (*from_atomic_numbers_ != *other.from_atomic_numbers_) return false;
    if (*to_atomic_numbers_ != *other.to_atomic_numbers_) return false;
    return equals(other);
}

}  // namespace molcryst
