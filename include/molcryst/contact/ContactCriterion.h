// ContactCriterion: the abstract rule that decides whether two atoms, in one
// molecule or in two molecules of a crystal, make a non-bonded contact, and
// that returns the contacts it finds.
//
// A subclass answers for one pair of atoms (find_contact,
// find_intramolecular_contact) and says which atoms may stand at either end
// (test_atom_from, test_atom_to). The base walks groups of atoms: every atom
// of the first group that may stand at the from end against every atom of
// the second that may stand at the to end, in the order of the groups, and
// keeps all contacts, or with `strongest_only` the first of the strongest.
// Where `max_radius()` provably bounds what a criterion can find, the walk
// skips far pairs through a spatial grid; the contacts, their order and the
// winner of every tie are those of the full walk.
//
// Archive layout: min_path (int), max_path (int), type (int).
// `strongest_only` is not archived.
#ifndef MOLCRYST_CONTACT_CONTACTCRITERION_H
#define MOLCRYST_CONTACT_CONTACTCRITERION_H

#include <memory>
#include <ostream>
#include <vector>

#include "molcryst/contact/BasicContact.h"
#include "molcryst/contact/MolecularContact.h"

namespace molcryst {

class Archive;
// Criteria search a Crystal, which in turn holds the contacts they find.
class Crystal;
class ContactCriterion;

typedef THandle<ContactCriterion> HContactCriterion;

/// Which pairs a criterion admits; archived as int. Any other value admits
/// pairs inside one molecule only.
enum ContactType : int {
    INTERMOLECULAR = 1,  // printed "INTER"
    INTRAMOLECULAR = 2,  // printed "INTRA"
    INTRA_AND_INTERMOLECULAR = 3  // printed "INTRA and INTER"
};

/// "INTER", "INTRA" or "INTRA and INTER"; "" for any other value.
const char* contact_type_name(ContactType type);

/// Abstract contact rule; see the banner.
class ContactCriterion {
public:
    virtual ~ContactCriterion();

    virtual HContactCriterion clone() const = 0;
    /// Takes the settings of `other`, which must be of this very class, or
    /// std::invalid_argument is thrown and nothing changes.
    virtual ContactCriterion& assign(const ContactCriterion& other) = 0;
    virtual const char* class_name() const;
    /// The largest centre-to-centre distance at which this criterion can say yes.
    virtual double max_radius() const = 0;
    /// Molecules `mol1` and `mol2` of the crystal, through find_contact.
    virtual Hvector_HMolecularContact find_crystal_contact(const Crystal& crystal, int mol1, int atom1, int mol2,
                                                           int atom2) const;
    virtual Hvector_HMolecularContact find_contact(const HMolecule& m1, int atom1, const HMolecule& m2,
                                                   int atom2) const = 0;
    virtual Hvector_HBasicContact find_intramolecular_contact(const Molecule& mol, int atom1, int atom2) const = 0;
    virtual bool test_atom_from(const Molecule& mol, int atom) const;
    virtual bool test_atom_to(const Molecule& mol, int atom) const;
    /// Whether some atom of the group passes test_atom_from; false for an empty group.
    virtual bool test_group_from(const Molecule& mol, const std::vector<int>& atoms) const;
    virtual bool test_group_to(const Molecule& mol, const std::vector<int>& atoms) const;
    /// Whether the type admits a pair of these two molecules, told apart by identity.
    virtual bool test_contact_type(const HMolecule& m1, const HMolecule& m2) const;
    /// Whether the number of bonds between the atoms lies in [min_path, max_path].
    virtual bool test_path(const Molecule& mol, int atom1, int atom2) const;
    /// "type: ...", the path limits when intramolecular pairs are admitted, a line end.
    virtual std::ostream& print(std::ostream& os) const;
    virtual void write(Archive& ar) const;
    /// On failure throws std::runtime_error and leaves the criterion as it was.
    virtual void read(Archive& ar);
    virtual bool operator==(const ContactCriterion& other) const;

    /// Paths, type and dynamic type; not strongest_only.
    bool equals(const ContactCriterion& other) const;
    bool operator!=(const ContactCriterion& other) const { return !(*this == other); }

    bool test_atom_from(const Crystal& crystal, int mol, int atom) const;
    bool test_atom_to(const Crystal& crystal, int mol, int atom) const;
    bool test_group_from(const Crystal& crystal, int mol, const std::vector<int>& atoms) const;
    bool test_group_to(const Crystal& crystal, int mol, const std::vector<int>& atoms) const;

    /// Every atom of `atoms1` in molecule `mol1` against every atom of
    /// `atoms2` in `mol2` (an atom never with itself); each contact records
    /// the two groups.
    Hvector_HMolecularContact find_crystal_contact(const Crystal& crystal, int mol1, const std::vector<int>& atoms1,
                                                   int mol2, const std::vector<int>& atoms2) const;
    /// The same inside one molecule.
    Hvector_HBasicContact find_intramolecular_contact(const Molecule& mol, const std::vector<int>& atoms1,
                                                      const std::vector<int>& atoms2) const;

    ContactType type() const { return type_; }
    int min_path() const { return min_path_; }
    int max_path() const { return max_path_; }
    bool strongest_only() const { return strongest_only_; }
    void set_strongest_only(bool strongest_only) { strongest_only_ = strongest_only; }

protected:
    ContactCriterion(ContactType type, int min_path, int max_path, bool strongest_only);
    ContactCriterion(const ContactCriterion& other);
    ContactCriterion& operator=(const ContactCriterion& other);

    /// True when no pair of atoms farther apart than max_radius() can make a
    /// contact, whatever the atoms, so that group searches may skip far
    /// pairs. False unless a class proves it for itself (not for subclasses).
    virtual bool radius_bounds_reach() const;
    /// radius_bounds_reach of another criterion, for classes that search through a member.
    static bool bounds_reach_of(const ContactCriterion& criterion) { return criterion.radius_bounds_reach(); }

    /// How far the walk behind path_length() goes from an atom: pairs
    /// farther apart read as one bond beyond it. max_path unless a class
    /// counts paths otherwise.
    virtual int path_search_depth() const;

    /// Called as a group search starts and as it ends (nested searches
    /// included, and on the way out of an exception), so that a class may
    /// keep what it works out about atoms for the length of one search.
    virtual void begin_group_search() const;
    virtual void end_group_search() const;

    /// The number of bonds between two atoms, as Molecule::shortest_path,
    /// answered from a walk kept for the current first atom during a group
    /// search of `mol`.
    int path_length(const Molecule& mol, int atom1, int atom2) const;

    /// The class name and operation for messages of assign.
    [[noreturn]] void assign_type_error(const char* method) const;

private:
    struct PathCache;
    friend struct PathCacheScope;
    friend struct GroupSearchScope;

    ContactType type_;
    int min_path_;
    int max_path_;
    bool strongest_only_;
    mutable PathCache* path_cache_ = nullptr;  // set during a group search only
};

std::ostream& operator<<(std::ostream& os, const ContactCriterion& criterion);

}  // namespace molcryst

#endif
