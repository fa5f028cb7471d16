#include "molcryst/crystal/NewCrystalMemento.h"

#include <cmath>
#include <iostream>
#include <stdexcept>
#include <string>

#include "molcryst/contact/ContactCriterionArchiver.h"
#include "molcryst/crystal/NewCrystal.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molcryst/support/Archive.h"
#include "molcryst/support/TARNLog.h"
#include "molcryst/support/VersionedArchive.h"

namespace molcryst {

namespace {

const int current_version = 2;
const double double_tolerance = 1e-07;

const void* address(const void* p) { return p; }

bool close(double a, double b) { return std::fabs(a - b) <= double_tolerance; }

void check_writable(const HContactCriterion& criterion) {
    // The archiver's own refusal, before the memento has written anything.
    if (!ContactCriterionArchiver::archivable(*criterion))
        throw std::runtime_error(std::string("Unrecognised contact definition: ") + criterion->class_name());
}

// Checks a pool position read from the archive.
void check_position(const Archive& ar, int position, std::size_t pool, const char* what) {
    if (position < 0 || static_cast<std::size_t>(position) >= pool)
        ar.read_error(std::string(what) + " " + std::to_string(position) + " is outside the pool of " +
                      std::to_string(pool) + " molecules");
}

void check_atom(const Archive& ar, int atom, const Molecule& m, const char* end) {
    if (atom < 0 || atom >= m.natoms())
        ar.read_error(std::string(end) + " atom " + std::to_string(atom) + " is outside its molecule of " +
                      std::to_string(m.natoms()) + " atoms");
}

}  // namespace

std::ostream& operator<<(std::ostream& os, const MolecularContactMemento& memento) {
    return os << memento.molecule_from_index_ << " " << memento.molecule_to_index_ << " " << memento.contact_;
}

NewCrystalMemento::NewCrystalMemento()
    : packing_box_(NewCrystal::default_packing_box()),
      slicing_thickness_(NewCrystal::default_slicing_thickness()),
      slicing_displacement_(NewCrystal::default_slicing_displacement()) {
    MOLCRYST_DEBUG_LINE(3, "Entered NewCrystalMemento::NewCrystalMemento() - " << address(this));
}

NewCrystalMemento::NewCrystalMemento(const NewCrystal& crystal)
    : packed_(crystal.packing()),
      packing_box_(crystal.packing_box()),
      sliced_(crystal.slicing()),
      slicing_plane_(crystal.slicing_plane()),
      slicing_thickness_(crystal.slicing_thickness()),
      slicing_displacement_(crystal.slicing_displacement()),
      criteria_(crystal.contact_criteria()),
      contact_filter_(crystal.contact_filter()) {
    MOLCRYST_DEBUG_LINE(3,
                        "Entered NewCrystalMemento::NewCrystalMemento(const NewCrystal& crystal) - " << address(this));
    const HCrystal snapshot = crystal.crystal_snapshot();
    set_crystal(crystal.crystal_maker(), snapshot, crystal.contacts());
}

NewCrystalMemento::NewCrystalMemento(const NewCrystalMemento& other)
    : crystal_maker_(other.crystal_maker_),
      base_molecules_(other.base_molecules_),
      crystal_snapshot_indices_(other.crystal_snapshot_indices_),
      packed_(other.packed_),
      packing_box_(other.packing_box_),
      sliced_(other.sliced_),
      slicing_plane_(other.slicing_plane_),
      slicing_thickness_(other.slicing_thickness_),
      slicing_displacement_(other.slicing_displacement_),
      criteria_(other.criteria_),
      contact_filter_(other.contact_filter_),
      contact_mementos_(other.contact_mementos_) {
    MOLCRYST_DEBUG_LINE(
        3, "Entered NewCrystalMemento::NewCrystalMemento(const NewCrystalMemento& other) - " << address(this));
}

NewCrystalMemento& NewCrystalMemento::operator=(const NewCrystalMemento& other) = default;

NewCrystalMemento::~NewCrystalMemento() {}

void NewCrystalMemento::add_to_indices(const HMolecule& molecule, PoolIndex& index) {
    if (molecule.unhand() == nullptr) return;
    if (index.emplace(molecule.unhand(), static_cast<int>(base_molecules_.size())).second)
        base_molecules_.push_back(molecule);
}

std::vector<int> NewCrystalMemento::build_indices(const HCrystal& snapshot, const PoolIndex& index) const {
    std::vector<int> indices;
    if (snapshot.unhand() == nullptr) return indices;
    for (const HMolecule& m : *snapshot->molecules()) {
        const auto found = index.find(m.unhand());
        if (found != index.end()) indices.push_back(found->second);
    }
    return indices;
}

std::vector<MolecularContactMemento> NewCrystalMemento::build_contacts(
    const PoolIndex& index, const Hvector_HMolecularContact& contacts) const {
    std::vector<MolecularContactMemento> mementos;
    if (contacts.unhand() == nullptr) return mementos;
    for (const HMolecularContact& c : *contacts) {
        const auto from = index.find(c->molecule_from().unhand());
        const auto to = index.find(c->molecule_to().unhand());
        if (from == index.end()) std::cout << "Could not find 'from' molecule " << std::endl;
        if (to == index.end()) std::cout << "Could not find 'to' molecule " << std::endl;
        if (from == index.end() || to == index.end()) {
            std::cout << "Assumption failure in: NewCrystalMemento::build_contacts - cannot save contact: " << *c
                      << std::endl;
            continue;
        }
        MolecularContactMemento m;
        m.molecule_from_index_ = from->second;
        m.molecule_to_index_ = to->second;
        m.contact_ = static_cast<const BasicContact&>(*c);  // atoms, groups and strength
        mementos.push_back(m);
    }
    return mementos;
}

void NewCrystalMemento::set_crystal(const HCrystalMaker& maker, const HCrystal& snapshot,
                                    const Hvector_HMolecularContact& contacts) {
    crystal_maker_ = HCrystalMaker(new CrystalMaker(*maker));
    base_molecules_.clear();
    PoolIndex index;
    for (int i = 0; i < maker->nmolecules(); ++i) add_to_indices(maker->molecule(i), index);
    if (snapshot.unhand() != nullptr)
        for (const HMolecule& m : *snapshot->molecules()) add_to_indices(m, index);
    if (contacts.unhand() != nullptr)
        for (const HMolecularContact& c : *contacts) {
            add_to_indices(c->molecule_from(), index);
            add_to_indices(c->molecule_to(), index);
        }
    crystal_snapshot_indices_ = build_indices(snapshot, index);
    contact_mementos_ = build_contacts(index, contacts);
}

HCrystal NewCrystalMemento::crystal_snapshot() const {
    Hvector_HMolecule molecules(new vector_HMolecule());
    molecules->reserve(crystal_snapshot_indices_.size());
    for (int i : crystal_snapshot_indices_) molecules->push_back(base_molecules_.at(static_cast<std::size_t>(i)));
    return HCrystal(new Crystal(crystal_maker_.unhand() != nullptr ? crystal_maker_->cell() : Cell(), molecules));
}

Hvector_HMolecularContact NewCrystalMemento::contacts() const {
    Hvector_HMolecularContact out(new vector_HMolecularContact());
    out->reserve(contact_mementos_.size());
    for (const MolecularContactMemento& m : contact_mementos_)
        out->push_back(HMolecularContact(
            new MolecularContact(BasicContact(m.contact_.atom_from(), m.contact_.atom_to()),
                                 base_molecules_.at(static_cast<std::size_t>(m.molecule_from_index_)),
                                 base_molecules_.at(static_cast<std::size_t>(m.molecule_to_index_)), 0)));
    return out;
}

void NewCrystalMemento::write(Archive& ar) const {
    if (crystal_maker_.unhand() == nullptr) HandleCommon::null_handle_error();
    for (const HContactCriterion& c : criteria_) {
        if (c.unhand() == nullptr) HandleCommon::null_handle_error();
        check_writable(c);
    }
    ar << current_version;
    crystal_maker_->write(ar);
    ar << static_cast<unsigned int>(base_molecules_.size());
    for (const HMolecule& m : base_molecules_) m->write(ar);
    ar << crystal_snapshot_indices_;
    ar << packed_;
    packing_box_.write(ar);
    ar << sliced_;
    slicing_plane_.write(ar);
    ar << slicing_thickness_ << slicing_displacement_;
    ContactCriterionArchiver::write(criteria_, ar);
    ar << (contact_filter_.unhand() != nullptr);
    if (contact_filter_.unhand() != nullptr) ContactCriterionArchiver::write(contact_filter_->clone(), ar);
    ar << static_cast<int>(contact_mementos_.size());
    for (const MolecularContactMemento& m : contact_mementos_) {
        ar << m.molecule_from_index_ << m.molecule_to_index_;
        m.contact_.write(ar);
    }
}

void NewCrystalMemento::read(Archive& ar) {
    int version = 0;
    {
        Archive::Field field(ar, "NewCrystalMemento::read version");
        ar >> version;
    }
    if (version == 1) {
        if (!VersionedArchive::is_versioned(ar))
            throw std::runtime_error("NewCrystalMemento::read - Use a VersionedArchive object to read old formats");
        // The maker and the molecules below read their old layouts.
        static_cast<VersionedArchive&>(ar).set_version(1);
    } else if (version != current_version) {
        throw std::runtime_error("NewCrystalMemento::read - format version mismatch");
    }

    // Into a fresh memento: a failed read leaves this one as it was. Parts
    // that refuse a value with std::logic_error (an element code out of the
    // table) are a damaged archive here, and told as one.
    NewCrystalMemento m;
    try {
        m.read_body(ar);
    } catch (const std::logic_error& e) {
        throw std::runtime_error(std::string("NewCrystalMemento::read: ") + e.what());
    }
    *this = m;
}

void NewCrystalMemento::read_body(Archive& ar) {
    NewCrystalMemento& m = *this;
    m.crystal_maker_ = HCrystalMaker(new CrystalMaker());
    m.crystal_maker_->read(ar);
    {
        Archive::Field field(ar, "NewCrystalMemento::read base_molecules");
        unsigned int count = 0;
        ar >> count;
        ar.check_count(count, 4, "molecule count");
        m.base_molecules_.reserve(count < 1024 ? count : 1024);
        for (unsigned int i = 0; i < count; ++i) {
            HMolecule molecule(new Molecule3d());
            molecule->read(ar);
            m.base_molecules_.push_back(molecule);
        }
    }
    const std::size_t pool = m.base_molecules_.size();
    {
        Archive::Field field(ar, "NewCrystalMemento::read crystal_snapshot_indices");
        ar >> m.crystal_snapshot_indices_;
        for (int i : m.crystal_snapshot_indices_) check_position(ar, i, pool, "snapshot index");
    }
    {
        Archive::Field field(ar, "NewCrystalMemento::read packing");
        ar >> m.packed_;
    }
    m.packing_box_.read(ar);
    {
        Archive::Field field(ar, "NewCrystalMemento::read slicing");
        ar >> m.sliced_;
    }
    m.slicing_plane_.read(ar);
    {
        Archive::Field field(ar, "NewCrystalMemento::read slicing thickness and displacement");
        ar >> m.slicing_thickness_ >> m.slicing_displacement_;
    }
    ContactCriterionArchiver::read(m.criteria_, ar);
    bool has_filter = false;
    {
        Archive::Field field(ar, "NewCrystalMemento::read contact filter");
        ar >> has_filter;
    }
    if (has_filter) {
        HContactCriterion filter;
        ContactCriterionArchiver::read(filter, ar);
        // A filter of another class than DistanceCriterion and its subclasses is dropped.
        m.contact_filter_ = handle_dynamic_cast<DistanceCriterion>(filter->clone());
    }
    {
        Archive::Field field(ar, "NewCrystalMemento::read contact_mementos");
        int count = 0;
        ar >> count;
        ar.check_count(count, 8 + 4 * 4 + 1 + 8, "contact count");
        m.contact_mementos_.reserve(static_cast<std::size_t>(count < 1024 ? count : 1024));
        for (int i = 0; i < count; ++i) {
            MolecularContactMemento c;
            ar >> c.molecule_from_index_ >> c.molecule_to_index_;
            check_position(ar, c.molecule_from_index_, pool, "contact from index");
            check_position(ar, c.molecule_to_index_, pool, "contact to index");
            c.contact_.read(ar);
            // Contacts are rebuilt from their two atoms: both must be in their molecules.
            check_atom(ar, c.contact_.atom_from(), *m.base_molecules_[static_cast<std::size_t>(c.molecule_from_index_)],
                       "contact from");
            check_atom(ar, c.contact_.atom_to(), *m.base_molecules_[static_cast<std::size_t>(c.molecule_to_index_)],
                       "contact to");
            m.contact_mementos_.push_back(c);
        }
    }
}

void NewCrystalMemento::print(std::ostream& os) const {
    os << "crystal_maker: ";
    if (crystal_maker_.unhand() != nullptr)
        os << *crystal_maker_;
    else
        os << "none";
    os << "\nbase_molecules: " << base_molecules_.size() << "\n";
    for (std::size_t i = 0; i < base_molecules_.size(); ++i) os << i << ": " << *base_molecules_[i] << "\n";
    os << "crystal_snapshot_indices: ";
    for (int i : crystal_snapshot_indices_) os << i << " ";
    os << "\npacked: " << packed_ << "\npacking_box: " << packing_box_ << "\nsliced_: " << sliced_
       << "\nslicing_plane_: " << slicing_plane_ << "\nslicing_thickness_: " << slicing_thickness_
       << "\nslicing_displacement_: " << slicing_displacement_ << "\ncontact_filter_: ";
    if (contact_filter_.unhand() != nullptr)
        os << *contact_filter_;
    else
        os << "none\n";
    os << "contact_mementos_ " << contact_mementos_.size() << "\n";
    for (const MolecularContactMemento& m : contact_mementos_) os << m;
}

std::ostream& operator<<(std::ostream& os, const NewCrystalMemento& memento) {
    memento.print(os);
    return os;
}

bool operator==(const NewCrystalMemento& a, const NewCrystalMemento& b) {
    const auto differs = [](const char* what) {
        std::cout << "operator==(NewCrystalMemento,NewCrystalMemento): " << what << " differs" << std::endl;
        return false;
    };
    const HCrystalMaker &ma = a.crystal_maker(), &mb = b.crystal_maker();
    if ((ma.unhand() == nullptr) != (mb.unhand() == nullptr) || (ma.unhand() != nullptr && !(*ma == *mb)))
        return differs("crystal_maker");
    if (a.base_molecules().size() != b.base_molecules().size()) return differs("base_molecules_ size");
    if (a.crystal_snapshot_indices() != b.crystal_snapshot_indices()) return differs("crystal_snapshot_indices_");
    if (a.packing() != b.packing()) return differs("packing");
    if (!(a.packing_box() == b.packing_box())) return differs("packing_box");
    if (a.slicing() != b.slicing()) return differs("slicing");
    if (!(a.slicing_plane() == b.slicing_plane())) return differs("slicing_plane");
    if (!close(a.slicing_thickness(), b.slicing_thickness())) return differs("slicing_thickness");
    if (!close(a.slicing_displacement(), b.slicing_displacement())) return differs("slicing_displacement");
    const std::vector<HContactCriterion>&ca = a.criteria(), &cb = b.criteria();
    bool same = ca.size() == cb.size();
    for (std::size_t i = 0; same && i < ca.size(); ++i) same = *ca[i] == *cb[i];
    if (!same) return differs("criteria");
    const HDistanceCriterion &fa = a.contact_filter(), &fb = b.contact_filter();
    if ((fa.unhand() == nullptr) != (fb.unhand() == nullptr) || (fa.unhand() != nullptr && !(*fa == *fb)))
        return differs("contact_filter");
    if (a.contact_mementos() != b.contact_mementos()) return differs("contact_mementos");
    return true;
}

bool operator!=(const NewCrystalMemento& a, const NewCrystalMemento& b) { return !(a == b); }

}  // namespace molcryst
