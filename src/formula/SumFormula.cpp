#include "molcryst/formula/SumFormula.h"

#include <cmath>
#include <stdexcept>

namespace molcryst {

namespace {

bool is_zero(double m) { return std::fabs(m) <= SumFormula::zero_tolerance; }

}  // namespace

SumFormula::SumFormula(bool D_is_H) : D_is_H_(D_is_H) {}

SumFormula::SumFormula(Element element, double multiplier, bool D_is_H) : D_is_H_(D_is_H) {
    if (multiplier > zero_tolerance) store(element, multiplier);
    rebuild_hydrogens();
}

SumFormula::SumFormula(const std::map<Element, double>& elements, bool D_is_H) : D_is_H_(D_is_H) {
    for (const auto& e : elements)
        if (e.second > zero_tolerance) store(e.first, e.second);
    rebuild_hydrogens();
}

SumFormula::SumFormula(const std::vector<Element>& elements, const std::vector<double>& multipliers, bool D_is_H)
    : D_is_H_(D_is_H) {
    if (elements.size() != multipliers.size())
        throw std::invalid_argument("SumFormula::SumFormula(): number of elements and multipliers inconsistent.");
    for (std::size_t i = 0; i < elements.size(); ++i)
        if (multipliers[i] > zero_tolerance) store(elements[i], multipliers[i] + stored(elements[i]));
    rebuild_hydrogens();
}

void SumFormula::store(Element e, double multiplier) {
    if (e.code() == Element::H)
        hydrogen_ = multiplier;
    else if (e.code() == Element::D)
        deuterium_ = multiplier;
    else if (is_zero(multiplier))
        elements_.erase(e);
    else
        elements_[e] = multiplier;
}

double SumFormula::stored(Element e) const {
    if (e.code() == Element::H) return hydrogen_;
    if (e.code() == Element::D) return deuterium_;
    return multiplier(e);
}

void SumFormula::rebuild_hydrogens() {
    elements_.erase(Element(Element::H));
    elements_.erase(Element(Element::D));
    const double h = D_is_H_ ? hydrogen_ + deuterium_ : hydrogen_;
    const double d = D_is_H_ ? 0.0 : deuterium_;
    if (!is_zero(h)) elements_[Element(Element::H)] = h;
    if (!is_zero(d)) elements_[Element(Element::D)] = d;
}

double SumFormula::multiplier(Element e) const {
    const auto it = elements_.find(e);
    return it == elements_.end() ? 0.0 : it->second;
}

void SumFormula::set_multiplier(Element e, double multiplier) {
    // With deuterium counted as hydrogen, the hydrogen given is the whole of both.
    if (e.code() == Element::H && D_is_H_) deuterium_ = 0.0;
    store(e, is_zero(multiplier) ? 0.0 : multiplier);
    rebuild_hydrogens();
}

// While D counts as H, removing either removes the hydrogen shown, which holds both.
void SumFormula::remove(Element e) { set_multiplier(e, 0.0); }

void SumFormula::set_D_is_H(bool D_is_H) {
    D_is_H_ = D_is_H;
    rebuild_hydrogens();
}

std::vector<Element> SumFormula::elements_present() const {
    std::vector<Element> present;
    present.reserve(elements_.size());
    for (const auto& e : elements_) present.push_back(e.first);
    return present;
}

double SumFormula::estimated_volume(double temperature) const {
    double volume = 0.0;
    for (const auto& e : elements_) volume += e.first.estimated_atomic_volume(temperature) * e.second;
    return volume;
}

double SumFormula::molecular_weight() const {
    double weight = 0.0;
    for (const auto& e : elements_) weight += e.first.atomic_weight() * e.second;
    return weight;
}

SumFormula& SumFormula::operator+=(const SumFormula& other) {
    for (const auto& e : other.elements_)
        if (e.first.code() != Element::H && e.first.code() != Element::D)
            store(e.first, stored(e.first) + e.second);
    hydrogen_ += other.hydrogen_;
    deuterium_ += other.deuterium_;
    rebuild_hydrogens();
    return *this;
}

SumFormula& SumFormula::operator*=(double factor) {
    for (auto it = elements_.begin(); it != elements_.end();) {
        it->second *= factor;
        it = is_zero(it->second) ? elements_.erase(it) : std::next(it);
    }
    hydrogen_ *= factor;
    deuterium_ *= factor;
    rebuild_hydrogens();
    return *this;
}

SumFormula& SumFormula::operator/=(double divisor) {
    // A formula divided by nothing has no meaning; refused rather than filled with infinities.
    if (is_zero(divisor)) throw std::invalid_argument("SumFormula::operator/=: division by zero.");
    for (auto it = elements_.begin(); it != elements_.end();) {
        it->second /= divisor;
        it = is_zero(it->second) ? elements_.erase(it) : std::next(it);
    }
    hydrogen_ /= divisor;
    deuterium_ /= divisor;
    rebuild_hydrogens();
    return *this;
}

SumFormula SumFormula::empirical_formula() const {
    SumFormula f(*this);
    if (f.elements_.empty()) return f;
    for (const double p : {2.0, 3.0, 5.0, 7.0}) {
        while (!f.elements_.empty()) {
            bool divides = true;
            for (const auto& e : f.elements_)
                if (!is_zero(e.second) && !is_zero(std::fmod(e.second, p))) divides = false;
            if (!divides) break;
            f /= p;
        }
    }
    return f;
}

void SumFormula::print(std::ostream& out) const {
    bool first = true;
    for_each_in_print_order(elements_, [&](const Element& e, double m) {
        if (is_zero(m)) return;
        if (!first) out << ' ';
        out << e.symbol() << m;
        first = false;
    });
}

bool equals(const SumFormula& a, const SumFormula& b, double tolerance) {
    if (a.nelements() != b.nelements()) return false;
    auto i = a.elements().begin();
    auto j = b.elements().begin();
    for (; i != a.elements().end(); ++i, ++j)
        if (i->first != j->first || std::fabs(i->second - j->second) > tolerance) return false;
    return true;
}

SumFormula operator+(const SumFormula& a, const SumFormula& b) {
    SumFormula sum(a);
    sum += b;
    return sum;
}

SumFormula operator*(const SumFormula& f, double factor) {
    SumFormula product(f);
    product *= factor;
    return product;
}

std::ostream& operator<<(std::ostream& out, const SumFormula& f) {
    f.print(out);
    return out;
}

}  // namespace molcryst
