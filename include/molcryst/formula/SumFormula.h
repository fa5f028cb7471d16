// SumFormula: an element composition with real multipliers, as the sum over
// the residues of a crystal, where half a molecule counts 0.5.
#ifndef MOLCRYST_FORMULA_SUMFORMULA_H
#define MOLCRYST_FORMULA_SUMFORMULA_H

#include <map>
#include <ostream>
#include <vector>

#include "molcryst/elements/Element.h"

namespace molcryst {

class SumFormula {
public:
    /// Multipliers within this of zero count as zero throughout.
    static constexpr double zero_tolerance = 1e-07;

    explicit SumFormula(bool D_is_H = true);
    SumFormula(Element element, double multiplier, bool D_is_H);
    SumFormula(const std::map<Element, double>& elements, bool D_is_H);
    /// Throws std::invalid_argument when the two vectors differ in size.
    SumFormula(const std::vector<Element>& elements, const std::vector<double>& multipliers, bool D_is_H);

    int nelements() const { return static_cast<int>(elements_.size()); }
    /// 0.0 for an element that is absent.
    double multiplier(Element e) const;
    /// A value within the zero tolerance erases the element.
    void set_multiplier(Element e, double multiplier);
    void remove(Element e);

    bool D_is_H() const { return D_is_H_; }
    /// With the flag set, deuterium is counted as hydrogen; cleared, H and D stand apart.
    void set_D_is_H(bool D_is_H);

    bool contains(Element e) const { return elements_.count(e) != 0; }
    std::vector<Element> elements_present() const;
    const std::map<Element, double>& elements() const { return elements_; }

    /// Sum of the estimated atomic volumes at `temperature` (kelvin), cubic Angstroms.
    double estimated_volume(double temperature) const;
    /// Sum of the atomic weights times the multipliers.
    double molecular_weight() const;

    bool operator==(const SumFormula& other) const { return elements_ == other.elements_; }
    bool operator!=(const SumFormula& other) const { return !(*this == other); }

    SumFormula& operator+=(const SumFormula& other);
    SumFormula& operator*=(double factor);
    /// Division by a number within the zero tolerance throws std::invalid_argument.
    SumFormula& operator/=(double divisor);

    /// The formula divided by the common factors 2, 3, 5 and 7 of all its multipliers.
    SumFormula empirical_formula() const;

    /// "C2 H6 O1": carbon, hydrogen, deuterium, then the other elements by code.
    void print(std::ostream& out) const;

private:
    // Stores a multiplier of an element other than H and D, or of H and D
    // into their true counts, without rebuilding the map.
    void store(Element e, double multiplier);
    double stored(Element e) const;
    void rebuild_hydrogens();

    std::map<Element, double> elements_;
    bool D_is_H_ = true;
    double deuterium_ = 0.0;  // true multipliers of D and H, so that the flag can be turned back
    double hydrogen_ = 0.0;
};

/// The same elements, each multiplier within `tolerance` of the other's.
bool equals(const SumFormula& a, const SumFormula& b, double tolerance);
SumFormula operator+(const SumFormula& a, const SumFormula& b);
SumFormula operator*(const SumFormula& f, double factor);
std::ostream& operator<<(std::ostream& out, const SumFormula& f);

/// Calls `f(element, amount)` for the entries of a map in code order in the
/// print order of formulae: the code order with D moved up behind H.
template <class Map, class F>
void for_each_in_print_order(const Map& elements, F f) {
    const auto d = elements.find(Element(Element::D));
    bool d_done = d == elements.end();
    for (auto it = elements.begin(); it != elements.end(); ++it) {
        if (it == d) continue;
        if (!d_done && it->first.code() > Element::H) {
            f(d->first, d->second);
            d_done = true;
        }
        f(it->first, it->second);
    }
    if (!d_done) f(d->first, d->second);
}

}  // namespace molcryst

#endif
