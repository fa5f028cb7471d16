// HBondCriterion: what is a hydrogen bond.
//
// Every N, O and S atom is given a donor type, and every N, O, S, F, Cl, Br
// and I atom an acceptor type, from the bonds around it (three tests of
// nitrogen also look at the angles at the atom when it and its neighbours
// have sites). Each type can be switched on or off per criterion; the
// switches start from two process-wide default tables, in which only
// covalently bound fluorine is off. A pair is then tested by distance and,
// unless `no_hydrogens`, by the D-H...A angle at a hydrogen that belongs to
// an active donor. With hydrogens the contact reads from the hydrogen's
// atom, without them from the donor's, always in the order of the pair
// asked, and its strength is the true distance.
//
// Archive layout: max_distance (double), min_distance (double),
// vdw_corrected (int), no_hydrogens (int), min_angle (Angle: one double,
// radians), then the ContactCriterion layout. The type switches are not
// archived: a criterion read keeps the switches it had.
#ifndef MOLCRYST_CONTACT_HBONDCRITERION_H
#define MOLCRYST_CONTACT_HBONDCRITERION_H

#include <deque>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "molcryst/contact/ContactCriterion.h"
#include "molcryst/geometry/Angle.h"

namespace molcryst {

class Atom;
class Bond;

/// Hydrogen bonds by chemical type, distance and angle; see the banner.
class HBondCriterion : public ContactCriterion {
public:
    /// Whether a donor or acceptor type takes part: 1 set, 0 not, -1 for the
    /// rows that only bracket an element's types and are never to be set.
    typedef int PropertySetting;
    static constexpr PropertySetting SET = 1;
    static constexpr PropertySetting UNSET = 0;
    static constexpr PropertySetting BRACKET = -1;

    /// Donor types; the texts and defaults are those of default_donors().
    enum DonorAtomType : int {
        DONOR_NITROGEN_BEGIN = 0,      // "+nitrogen"
        DONOR_METAL_BOUND_N = 1,       // "metal bound N"
        DONOR_IMINE_N = 2,             // "imine N"
        DONOR_AROMATIC_N = 3,          // "aromatic (6-ring) N"
        DONOR_AMIDE_N = 4,             // "amide or thioamide N"
        DONOR_PLANAR_N = 5,            // "planar N"
        DONOR_PYRAMIDAL_N = 6,         // "pyramidal N"
        DONOR_AMMONIUM_N = 7,          // "ammonium N (NH4+, RNH3+ etc.)"
        DONOR_UNCLASSIFIED_N = 8,      // "unclassified N"
        DONOR_NITROGEN_END = 9,        // "-nitrogen"
        DONOR_OXYGEN_BEGIN = 10,       // "+oxygen"
        DONOR_METAL_BOUND_O = 11,      // "metal bound O"
        DONOR_WATER_O = 12,            // "water O"
        DONOR_HYDROXYL_O = 13,         // "hydroxyl O"
        DONOR_UNCLASSIFIED_O = 14,     // "unclassified O"
        DONOR_OXYGEN_END = 15,         // "-oxygen"
        DONOR_SULPHUR_BEGIN = 16,      // "+sulphur"
        DONOR_METAL_BOUND_S = 17,      // "metal bound S"
        DONOR_NON_METAL_BOUND_S = 18,  // "non metal bound S"
        DONOR_SULPHUR_END = 19,        // "-sulphur"
        NOT_DONOR = 20                 // "not donor"
    };
    static constexpr int ndonor_types = 21;

    /// Acceptor types; the texts and defaults are those of default_acceptors().
    enum AcceptorAtomType : int {
        ACCEPTOR_NITROGEN_BEGIN = 0,      // "+nitrogen"
        ACCEPTOR_METAL_BOUND_N = 1,       // "metal bound N"
        ACCEPTOR_TERMINAL_N = 2,          // "terminal N (cyano, etc.)"
        ACCEPTOR_AROMATIC_N = 3,          // "aromatic (6-ring) N"
        ACCEPTOR_TWO_COORDINATE_N = 4,    // "other 2-coordinate N"
        ACCEPTOR_THREE_COORDINATE_N = 5,  // "3-coordinate N"
        ACCEPTOR_UNCLASSIFIED_N = 6,      // "unclassified N"
        ACCEPTOR_NITROGEN_END = 7,        // "-nitrogen"
        ACCEPTOR_OXYGEN_BEGIN = 8,        // "+oxygen"
        ACCEPTOR_METAL_BOUND_O = 9,       // "metal bound O"
        ACCEPTOR_CARBOXYLATE_O = 10,      // "carboxylate O"
        ACCEPTOR_TERMINAL_O = 11,         // "other terminal O (C=O, S=O ...)"
        ACCEPTOR_WATER_O = 12,            // "water O"
        ACCEPTOR_HYDROXYL_O = 13,         // "hydroxyl O"
        ACCEPTOR_BRIDGING_O = 14,         // "bridging O (ether, etc.)"
        ACCEPTOR_UNCLASSIFIED_O = 15,     // "unclassified O"
        ACCEPTOR_OXYGEN_END = 16,         // "-oxygen"
        ACCEPTOR_SULPHUR_BEGIN = 17,      // "+sulphur"
        ACCEPTOR_METAL_BOUND_S = 18,      // "metal bound S"
        ACCEPTOR_TERMINAL_S = 19,         // "terminal S"
        ACCEPTOR_UNCLASSIFIED_S = 20,     // "unclassified S"
        ACCEPTOR_SULPHUR_END = 21,        // "-sulphur"
        ACCEPTOR_FLUORINE_BEGIN = 22,     // "+fluorine"
        ACCEPTOR_METAL_BOUND_F = 23,      // "metal bound F"
        ACCEPTOR_FLUORIDE_ION = 24,       // "fluoride ion (F-)"
        ACCEPTOR_UNCLASSIFIED_F = 25,     // "unclassified F", off by default
        ACCEPTOR_FLUORINE_END = 26,       // "-fluorine"
        ACCEPTOR_CHLORINE_BEGIN = 27,     // "+chlorine"
        ACCEPTOR_METAL_BOUND_CL = 28,     // "metal bound Cl"
        ACCEPTOR_CHLORIDE_ION = 29,       // "chloride ion (Cl-)"
        ACCEPTOR_UNCLASSIFIED_CL = 30,    // "unclassified Cl"
        ACCEPTOR_CHLORINE_END = 31,       // "-chlorine"
        ACCEPTOR_BROMINE_BEGIN = 32,      // "+bromine"
        ACCEPTOR_METAL_BOUND_BR = 33,     // "metal bound Br"
        ACCEPTOR_BROMIDE_ION = 34,        // "bromide ion (Br-)"
        ACCEPTOR_UNCLASSIFIED_BR = 35,    // "unclassified Br"
        ACCEPTOR_BROMINE_END = 36,        // "-bromine"
        ACCEPTOR_IODINE_BEGIN = 37,       // "+iodine"
        ACCEPTOR_METAL_BOUND_I = 38,      // "metal bound I"
        ACCEPTOR_IODIDE_ION = 39,         // "iodide ion (I-)"
        ACCEPTOR_UNCLASSIFIED_I = 40,     // "unclassified I"
        ACCEPTOR_IODINE_END = 41,         // "-iodine"
        NON_ACCEPTOR = 42                 // "non acceptor"
    };
    static constexpr int nacceptor_types = 43;

    /// A switch of one type: whether it takes part and its text.
    ///
    /// Archive layout: setting (int), name (unsigned int length, then its
    /// bytes); the type of a subclass is not archived.
    class AtomTypeProperties {
    public:
        AtomTypeProperties() = default;
        AtomTypeProperties(const std::string& name, PropertySetting setting) : setting(setting), name(name) {}
        AtomTypeProperties(const AtomTypeProperties&) = default;
        AtomTypeProperties& operator=(const AtomTypeProperties&) = default;
        virtual ~AtomTypeProperties();

        /// Setting and name.
        virtual bool operator==(const AtomTypeProperties& other) const;
        virtual bool operator!=(const AtomTypeProperties& other) const;
        /// "set " when the setting is 1, else "unset ", then the name; no line end.
        virtual std::ostream& print(std::ostream& os) const;
        virtual void write(Archive& ar) const;
        /// A setting other than -1, 0 or 1, or a short archive, throws
        /// std::runtime_error and leaves the properties as they were.
        virtual void read(Archive& ar);

        PropertySetting setting = UNSET;
        std::string name;
    };

    /// The switch of a donor type.
    class DonorAtomTypeProperties : public AtomTypeProperties {
    public:
        DonorAtomTypeProperties() = default;
        DonorAtomTypeProperties(DonorAtomType type, const std::string& name, PropertySetting setting)
            : AtomTypeProperties(name, setting), type(type) {}
        ~DonorAtomTypeProperties() override;

        using AtomTypeProperties::operator==;
        using AtomTypeProperties::operator!=;
        /// Type first, then setting and name.
        virtual bool operator==(const DonorAtomTypeProperties& other) const;
        virtual bool operator!=(const DonorAtomTypeProperties& other) const;

        DonorAtomType type = NOT_DONOR;
    };

    /// The switch of an acceptor type.
    class AcceptorAtomTypeProperties : public AtomTypeProperties {
    public:
        AcceptorAtomTypeProperties() = default;
        AcceptorAtomTypeProperties(AcceptorAtomType type, const std::string& name, PropertySetting setting)
            : AtomTypeProperties(name, setting), type(type) {}
        ~AcceptorAtomTypeProperties() override;

        using AtomTypeProperties::operator==;
        using AtomTypeProperties::operator!=;
        /// Type first, then setting and name.
        virtual bool operator==(const AcceptorAtomTypeProperties& other) const;
        virtual bool operator!=(const AcceptorAtomTypeProperties& other) const;

        AcceptorAtomType type = NON_ACCEPTOR;
    };

    /// The 21 donor switches as every criterion starts, in type order; made once, on first use.
    static const std::vector<DonorAtomTypeProperties>& default_donors();
    /// The 43 acceptor switches as every criterion starts; made once, on first use.
    static const std::vector<AcceptorAtomTypeProperties>& default_acceptors();

    /// Distances in Angstrom; with `vdw_corrected` they limit the distance
    /// less both van der Waals radii. `strongest_only` is always false.
    HBondCriterion(double max_distance, double min_distance, const Angle& min_angle, bool vdw_corrected,
                   bool no_hydrogens, ContactType type, int min_path, int max_path);
    HBondCriterion(const HBondCriterion& other);
    HBondCriterion& operator=(const HBondCriterion& other);
    ~HBondCriterion() override;

    using ContactCriterion::find_crystal_contact;
    using ContactCriterion::find_intramolecular_contact;
    using ContactCriterion::test_atom_from;
    using ContactCriterion::test_atom_to;

    HContactCriterion clone() const override;
    HBondCriterion& assign(const ContactCriterion& other) override;
    const char* class_name() const override;
    /// max_distance; with `vdw_corrected` plus the radii of I and of H (or
    /// of S without hydrogens), the largest acceptor and donor ends.
    double max_radius() const override;
    /// No or one contact, tagged 3, from `atom1` to `atom2`.
    Hvector_HMolecularContact find_contact(const HMolecule& m1, int atom1, const HMolecule& m2,
                                           int atom2) const override;
    Hvector_HBasicContact find_intramolecular_contact(const Molecule& mol, int atom1, int atom2) const override;
    /// Both test_atom.
    bool test_atom_from(const Molecule& mol, int atom) const override;
    bool test_atom_to(const Molecule& mol, int atom) const override;
    /// The bonds between the atoms, one fewer when either is a hydrogen
    /// (unless `no_hydrogens`), so that paths count from the donor.
    bool test_path(const Molecule& mol, int atom1, int atom2) const override;
    /// The limits, the switches that differ from the defaults, then the base's print.
    std::ostream& print(std::ostream& os) const override;
    void write(Archive& ar) const override;
    /// On failure throws std::runtime_error and leaves the criterion as it was.
    void read(Archive& ar) override;
    bool operator==(const ContactCriterion& other) const override;
    /// Distances exactly, angle, no_hydrogens, the base, every switch; not vdw_corrected.
    bool operator==(const HBondCriterion& other) const;

    void set_alphadonor(DonorAtomType type, PropertySetting setting);
    /// Every type from `first` to `last`, both included; nothing if first > last.
    void set_alphadonor(DonorAtomType first, DonorAtomType last, PropertySetting setting);
    void set_alphadonor(const std::set<DonorAtomType>& types, PropertySetting setting);
    void set_acceptor(AcceptorAtomType type, PropertySetting setting);
    void set_acceptor(AcceptorAtomType first, AcceptorAtomType last, PropertySetting setting);
    void set_acceptor(const std::set<AcceptorAtomType>& types, PropertySetting setting);

    /// The first type whose name is exactly `name`; NOT_DONOR if none.
    DonorAtomType string_to_donor_atom_type(const std::string& name) const;
    /// The first type whose name is exactly `name`; NON_ACCEPTOR if none.
    AcceptorAtomType string_to_acceptor_atom_type(const std::string& name) const;

    /// The donor type of an N, O or S atom from its bonds; NOT_DONOR for any other atom.
    static DonorAtomType donor_atom_type(const Atom& atom);
    /// The acceptor type of an N, O, S, F, Cl, Br or I atom; NON_ACCEPTOR for any other.
    static AcceptorAtomType acceptor_atom_type(const Atom& atom);

    /// Bits: 1 a hydrogen on an active donor other than carbon, 2 an active
    /// acceptor, 4 an active donor atom. Hydrogens and carbons are never acceptors.
    int hbond_type(const Atom& atom) const;
    /// With `no_hydrogens` bits 2 or 4, else 1 or 2.
    bool test_atom(const Molecule& mol, int atom) const;
    /// Bit 4, and a hydrogen (H or D) on the atom unless `no_hydrogens`.
    bool is_donor(const Atom& atom) const;
    bool is_acceptor(const Atom& atom) const;
    bool is_donatable_hydrogen(const Atom& atom) const;
    bool is_hydrogen_bonding_atom(const Atom& atom) const;

    /// The bond orders to the atom's neighbours, tenfold: single (and
    /// unknown and polymeric) 10, double 20, triple 30, quadruple 40,
    /// aromatic and delocalised 15, the rest 0; metal or hydrogen ends
    /// skipped on request.
    static int connectivity_score(const Atom& atom, const std::deque<THandle<Bond> >& bonds, bool skip_metals,
                                  bool skip_hydrogens);

    double max_distance() const { return max_distance_; }
    double min_distance() const { return min_distance_; }
    const Angle& min_angle() const { return min_angle_; }
    bool vdw_corrected() const { return vdw_corrected_; }
    bool no_hydrogens() const { return no_hydrogens_; }
    const std::vector<DonorAtomTypeProperties>& donors() const { return donors_; }
    const std::vector<AcceptorAtomTypeProperties>& acceptors() const { return acceptors_; }

    /// How many donor and acceptor types this criterion has worked out from
    /// bonds so far. Inside one group search each atom's types are worked
    /// out once; this counts them, for measurements.
    long long nclassified() const { return nclassified_; }

protected:
    /// Bounded when the class is exactly this one and no atom that may
    /// stand at either end has a larger radius than max_radius() allows.
    bool radius_bounds_reach() const override;
    /// One bond further than max_path: a path from a hydrogen is counted
    /// from its donor.
    int path_search_depth() const override;
    void begin_group_search() const override;
    void end_group_search() const override;

private:
    struct Cache;

    /// hbond_type through the cache of the current group search, if any.
    int cached_hbond_type(const HAtom& atom) const;
    DonorAtomType cached_donor_type(const HAtom& atom) const;
    /// The pair tests; null when there is no contact.
    HBasicContact find_contact_with_Hatom(const Molecule& mh, int hydrogen, const Molecule& ma, int acceptor) const;
    HBasicContact find_contact_without_Hatom(const Molecule& md, int donor, const Molecule& ma, int acceptor) const;
    /// The contact of a pair read from atom1 to atom2, or null.
    HBasicContact find_pair(const Molecule& m1, int atom1, const Molecule& m2, int atom2) const;
    /// Whether the distance `d` between the atoms, less their radii with
    /// `vdw_corrected`, lies in [min_distance, max_distance].
    bool within_distance_limits(const Molecule& m1, int atom1, const Molecule& m2, int atom2, double d) const;
    bool molecules_equal(const Molecule& m1, const Molecule& m2) const;

    std::vector<DonorAtomTypeProperties> donors_;        // 21, in type order
    std::vector<AcceptorAtomTypeProperties> acceptors_;  // 43, in type order
    double max_distance_;                                // Angstrom
    double min_distance_;                                // Angstrom
    Angle min_angle_;                                    // the least D-H...A angle
    bool no_hydrogens_;
    bool vdw_corrected_;
    mutable long long nclassified_ = 0;
    mutable std::unique_ptr<Cache> cache_;  // during a group search only
    mutable int search_depth_ = 0;          // nesting of group searches
};

typedef THandle<HBondCriterion> HHBondCriterion;

std::ostream& operator<<(std::ostream& os, const HBondCriterion::AtomTypeProperties& properties);

}  // namespace molcryst

#endif
