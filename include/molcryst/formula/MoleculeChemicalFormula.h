// MoleculeChemicalFormula: the integer composition of one residue, with its
// formal charge and a polymer mark, and the text form used in crystal records.
#ifndef MOLCRYST_FORMULA_MOLECULECHEMICALFORMULA_H
#define MOLCRYST_FORMULA_MOLECULECHEMICALFORMULA_H

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "molcryst/elements/Element.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

class Archive;
class Molecule;
class Connectivity;

class MoleculeChemicalFormula {
public:
    explicit MoleculeChemicalFormula(bool D_is_H = true);
    /// One atom of `element`.
    MoleculeChemicalFormula(const Element& element, bool D_is_H);
    /// Parses `text` (see init).
    MoleculeChemicalFormula(const char* text, bool D_is_H);
    MoleculeChemicalFormula(const std::string& text, bool D_is_H);
    /// Counts the atoms and sums their formal charges. A null handle throws std::invalid_argument.
    MoleculeChemicalFormula(const THandle<Molecule>& molecule, bool D_is_H);
    MoleculeChemicalFormula(const THandle<Connectivity>& connectivity, bool D_is_H);

    /// Parses text such as "C6 H6", "C2 H3 O2 -1" or "(C2 H4)n": tokens apart,
    /// case ignored, a token that starts with no letter a charge. A count beyond
    /// an int, or a total beyond an unsigned int, throws std::overflow_error; a
    /// negative count throws std::invalid_argument.
    void init(const std::string& text, bool D_is_H);

    bool D_is_H() const { return D_is_H_; }
    void set_D_is_H(bool D_is_H);

    int charge() const { return charge_; }
    void set_charge(int charge) { charge_ = charge; }
    bool polymeric() const { return polymeric_; }
    void set_polymeric(bool polymeric) { polymeric_ = polymeric; }

    double estimated_volume(double temperature) const;
    double molecular_weight() const;

    unsigned int nelements() const { return static_cast<unsigned int>(elements_.size()); }
    void add(const Element& element, unsigned int count);
    void remove(Element element);
    /// Lowers the count of `element` by `count`, to zero at least.
    void remove(Element element, unsigned int count);
    unsigned int natoms(const Element& element) const;
    unsigned int natoms() const;
    std::vector<Element> elements_present() const;
    const std::map<Element, unsigned int>& elements() const { return elements_; }
    unsigned int nhydrogens() const;
    unsigned int nnon_hydrogen_atoms() const { return natoms() - nhydrogens(); }

    MoleculeChemicalFormula& operator+=(const MoleculeChemicalFormula& other);

    /// Every element of `other` present here with at least its count.
    bool contains(const MoleculeChemicalFormula& other) const;
    bool contains(Element element) const { return elements_.count(element) != 0; }
    /// The largest count.
    unsigned int nmost_frequent() const;

    bool operator==(const MoleculeChemicalFormula& other) const;
    bool operator!=(const MoleculeChemicalFormula& other) const { return !(*this == other); }
    bool operator<(const MoleculeChemicalFormula& other) const;
    bool operator>(const MoleculeChemicalFormula& other) const { return other < *this; }

    /// "C6 H6", "C2 H3 O2 -1", "(C2 H4)n".
    void print(std::ostream& out) const;
    void write(Archive& ar) const;
    void read(Archive& ar);

private:
    // Adds `count` to the true count of `code`, refusing a total an unsigned int cannot hold.
    void add_count(Element::TARNCode code, unsigned long long count);
    void rebuild_hydrogens();

    std::map<Element, unsigned int> elements_;
    int charge_ = 0;
    bool D_is_H_ = true;
    unsigned int deuterium_ = 0;  // true counts of D and H, kept apart from the map
    unsigned int hydrogen_ = 0;
    bool polymeric_ = false;  // the (...)n form
};

MoleculeChemicalFormula operator+(const MoleculeChemicalFormula& a, const MoleculeChemicalFormula& b);
std::ostream& operator<<(std::ostream& out, const MoleculeChemicalFormula& f);

}  // namespace molcryst

#endif
