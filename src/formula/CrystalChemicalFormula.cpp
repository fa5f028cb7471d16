#include "molcryst/formula/CrystalChemicalFormula.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <stdexcept>

#include "molcryst/connectivity/Connectivity.h"
#include "molcryst/connectivity/ConnectivityInfo.h"
#include "molcryst/crystal/Crystal.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/molecule/Molecule.h"
#include "molcryst/support/Archive.h"
#include "molcryst/support/StringFunctions.h"

namespace molcryst {

namespace {

[[noreturn]] void ill_formed() {
    throw std::invalid_argument("CrystalChemicalFormula::CrystalChemicalFormula: Ill-formed string.");
}

// The multiplier in a prefix or suffix such as "0.5", "2" or "x": 1.0 where
// no number can be read; `unknown` is set when what is left after the digits,
// signs and points is "x".
double read_multiplier(const std::string& text, bool& unknown) {
    bool ok = false;
    double m = string_to_double(text, ok);
    const std::string rest = strip(text, "-+0123456789.");
    unknown = rest == "x";
    // A number that cannot be held ("1e999") is no multiplier of 1.
    if (!ok && !unknown && !strip(rest).empty() && text.find_first_of("0123456789") != std::string::npos) ill_formed();
    if (!ok) m = 1.0;
    // A negative or non-finite number of residues has no meaning in a formula.
    if (!std::isfinite(m) || m < 0.0) ill_formed();
    return m;
}

// "0.5", "2", "1.25", "0.07": the multiplier to two decimals, trailing zeros cut.
std::string multiplier_text(double m) {
    if (!std::isfinite(m) || std::fabs(m) >= 1e15) return to_string(m);
    const long long n = std::llround(m * 100.0);
    const long long a = n < 0 ? -n : n;
    std::string s;
    if (a < 10)
        s = "0.0" + std::to_string(a);
    else if (a < 100)
        s = "0." + std::to_string(a);
    else {
        s = std::to_string(a);
        s.insert(s.size() - 2, ".");
    }
    if (s.back() == '0') s.pop_back();
    if (s.back() == '0') s.pop_back();
    if (s.back() == '.') s.pop_back();
    return n < 0 ? "-" + s : s;
}

bool residue_less(const CrystalChemicalFormula::tCrystalChemicalFormula_& a,
                  const CrystalChemicalFormula::tCrystalChemicalFormula_& b) {
    if (a.formula < b.formula) return true;
    if (b.formula < a.formula) return false;
    return a.formula == b.formula && a.multiplier < b.multiplier;
}

// Repeated passes over neighbours until nothing moves: a stable order in
// which equal residues keep their places.
void bubble_sort(std::vector<CrystalChemicalFormula::tCrystalChemicalFormula_>& residues) {
    for (bool moved = true; moved;) {
        moved = false;
        for (std::size_t i = 1; i < residues.size(); ++i)
            if (residue_less(residues[i], residues[i - 1])) {
                std::swap(residues[i], residues[i - 1]);
                moved = true;
            }
    }
}

}  // namespace

CrystalChemicalFormula::CrystalChemicalFormula() = default;

CrystalChemicalFormula::CrystalChemicalFormula(const char* text, bool D_is_H) {
    init(text != nullptr ? std::string(text) : std::string(), D_is_H);
}

CrystalChemicalFormula::CrystalChemicalFormula(const std::string& text, bool D_is_H) { init(text, D_is_H); }

CrystalChemicalFormula::CrystalChemicalFormula(const THandle<ConnectivityInfo>& info, bool D_is_H) {
    if (info == nullptr) throw std::invalid_argument("CrystalChemicalFormula: Null handle passed as argument.");
    for (int i = 0; i < info->nconnectivities(); ++i) {
        tCrystalChemicalFormula_ r;
        r.formula = MoleculeChemicalFormula(info->connectivity(i), D_is_H);
        r.unknown_multiplier = info->multiplier_unknown(i);
        r.multiplier = r.unknown_multiplier ? unknown_multiplier_substitute_ : info->multiplier(i);
        residues_.push_back(r);
    }
    update();
}

CrystalChemicalFormula::CrystalChemicalFormula(const THandle<CrystalMaker>& maker, bool D_is_H) {
    // The asymmetric unit as the structure's crystal holds it: matched molecules,
    // then those known from coordinates alone, sited atoms only.
    const HCrystal crystal = maker != nullptr ? maker->create_crystal() : HCrystal();
    int natoms = 0;
    if (crystal != nullptr)
        for (int i = 0; i < crystal->nmolecules(); ++i) natoms += crystal->molecule(i)->natoms();
    if (natoms == 0)
        throw std::invalid_argument(
            "CrystalChemicalFormula::CrystalChemicalFormula(): no crystal structure available.");
    // One residue per distinct molecule of the asymmetric unit, counted by its repetitions there.
    for (int i = 0; i < crystal->nmolecules(); ++i) {
        const MoleculeChemicalFormula f(crystal->molecule(i), D_is_H);
        if (f.natoms() == 0) continue;
        auto same = std::find_if(residues_.begin(), residues_.end(),
                                 [&f](const tCrystalChemicalFormula_& r) { return r.formula == f; });
        if (same != residues_.end())
            same->multiplier += 1.0;
        else
            residues_.push_back(tCrystalChemicalFormula_{f, 1.0, false});
    }
    update();
}

CrystalChemicalFormula::CrystalChemicalFormula(const MoleculeChemicalFormula& formula) {
    residues_.push_back(tCrystalChemicalFormula_{formula, 1.0, false});
    update();
}

void CrystalChemicalFormula::init(const std::string& text, bool D_is_H) {
    CrystalChemicalFormula parsed;
    parsed.unknown_multiplier_substitute_ = unknown_multiplier_substitute_;
    std::vector<std::string> pieces;
    split(text, pieces, ",");
    for (const std::string& raw : pieces) {
        // Blanks after the commas, as in "C6 H6, (C2 H4)n", are part of no residue,
        // and a piece of blanks alone ("C6 H6,,H2 O1") is no residue at all.
        const std::string piece = trim(raw);
        if (piece.empty()) continue;
        tCrystalChemicalFormula_ residue;
        std::string formula_text = piece;
        const std::string::size_type open = piece.find('(');
        if (open != std::string::npos) {
            const std::string::size_type close = piece.find(')');
            if (close == std::string::npos || close < open) ill_formed();
            if (open != 0) {
                if (piece.back() != ')') ill_formed();
                residue.multiplier = read_multiplier(piece.substr(0, open), residue.unknown_multiplier);
                if (residue.unknown_multiplier) residue.multiplier = parsed.unknown_multiplier_substitute_;
                formula_text = piece.substr(open + 1, piece.size() - open - 2);
            } else {
                bool unknown = false;
                residue.multiplier = read_multiplier(piece.substr(close + 1), unknown);
                if (unknown) ill_formed();
            }
        }
        residue.formula = MoleculeChemicalFormula(formula_text, D_is_H);
        if (residue.formula.polymeric()) parsed.polymeric_ = true;
        if (residue.unknown_multiplier) parsed.multipliers_known_ = false;
        parsed.residues_.push_back(residue);
    }
    parsed.set_D_is_H(D_is_H);
    *this = parsed;
}

bool CrystalChemicalFormula::D_is_H() const {
    for (const tCrystalChemicalFormula_& r : residues_)
        if (!r.formula.D_is_H()) return false;
    return true;
}

void CrystalChemicalFormula::set_D_is_H(bool D_is_H) {
    for (tCrystalChemicalFormula_& r : residues_) r.formula.set_D_is_H(D_is_H);
}

void CrystalChemicalFormula::set_unknown_multiplier_substitute(double substitute) {
    unknown_multiplier_substitute_ = substitute;
    if (multipliers_known_) return;
    for (tCrystalChemicalFormula_& r : residues_)
        if (r.unknown_multiplier) r.multiplier = substitute;
}

void CrystalChemicalFormula::remove_residue(unsigned int index) {
    if (index >= residues_.size())
        throw std::out_of_range("CrystalChemicalFormula::remove_residue: Index out of range.");
    residues_.erase(residues_.begin() + index);
    update();
}

void CrystalChemicalFormula::remove_residue(const MoleculeChemicalFormula& formula) {
    residues_.erase(std::remove_if(residues_.begin(), residues_.end(),
                                   [&formula](const tCrystalChemicalFormula_& r) { return r.formula == formula; }),
                    residues_.end());
    update();
}

void CrystalChemicalFormula::add_residue(const MoleculeChemicalFormula& formula) {
    residues_.push_back(tCrystalChemicalFormula_{formula, unknown_multiplier_substitute_, true});
    update();
}

void CrystalChemicalFormula::add_residue(const MoleculeChemicalFormula& formula, double multiplier) {
    residues_.push_back(tCrystalChemicalFormula_{formula, multiplier, false});
    update();
}

bool CrystalChemicalFormula::at_least_one_residue_contains(const MoleculeChemicalFormula& formula) const {
    return std::any_of(residues_.begin(), residues_.end(),
                       [&formula](const tCrystalChemicalFormula_& r) { return r.formula.contains(formula); });
}

bool CrystalChemicalFormula::at_least_one_residue_contains(const Element& element) const {
    return std::any_of(residues_.begin(), residues_.end(),
                       [&element](const tCrystalChemicalFormula_& r) { return r.formula.contains(element); });
}

bool CrystalChemicalFormula::at_least_one_residue_equals(const MoleculeChemicalFormula& formula) const {
    return std::any_of(residues_.begin(), residues_.end(),
                       [&formula](const tCrystalChemicalFormula_& r) { return r.formula == formula; });
}

double CrystalChemicalFormula::estimated_volume_sum(double temperature) const {
    double v = 0.0;
    for (const tCrystalChemicalFormula_& r : residues_) v += r.formula.estimated_volume(temperature) * r.multiplier;
    return v;
}

double CrystalChemicalFormula::molecular_weight_sum() const {
    double w = 0.0;
    for (const tCrystalChemicalFormula_& r : residues_) w += r.formula.molecular_weight() * r.multiplier;
    return w;
}

double CrystalChemicalFormula::net_charge() const {
    double q = 0.0;
    for (const tCrystalChemicalFormula_& r : residues_) q += r.formula.charge() * r.multiplier;
    return q;
}

void CrystalChemicalFormula::sort_chemical_formulae() { bubble_sort(residues_); }

SumFormula CrystalChemicalFormula::sum_formula() const {
    SumFormula sum(D_is_H());
    for (const tCrystalChemicalFormula_& r : residues_)
        for (const auto& e : r.formula.elements())
            sum.set_multiplier(e.first, sum.multiplier(e.first) + e.second * r.multiplier);
    return sum;
}

void CrystalChemicalFormula::print(std::ostream& out) const {
    bool first = true;
    for (const tCrystalChemicalFormula_& r : residues_) {
        if (!first) out << ',';
        first = false;
        const bool bracket = polymeric_ || r.unknown_multiplier || r.multiplier != 1.0;
        if (bracket) {
            if (r.unknown_multiplier)
                out << 'x';
            else if (!r.formula.polymeric())
                out << (r.multiplier != 1.0 ? multiplier_text(r.multiplier) : "") << (polymeric_ ? "x" : "");
            out << '(';
        }
        std::ostringstream text;
        r.formula.print(text);
        std::string s = text.str();
        // A polymeric residue inside the crystal's brackets loses its own.
        if (r.formula.polymeric() && bracket && s.size() >= 3) s = s.substr(1, s.size() - 3);
        out << s;
        if (bracket) out << ')' << (r.formula.polymeric() ? "n" : "");
    }
}

void CrystalChemicalFormula::write(Archive& ar) const {
    ar << unknown_multiplier_substitute_ << static_cast<unsigned int>(residues_.size());
    for (const tCrystalChemicalFormula_& r : residues_) {
        ar << r.unknown_multiplier << r.multiplier;
        r.formula.write(ar);
    }
}

void CrystalChemicalFormula::read(Archive& ar) {
    CrystalChemicalFormula f;
    unsigned int n = 0;
    {
        Archive::Field field(ar, "CrystalChemicalFormula::read substitute and residue count");
        ar >> f.unknown_multiplier_substitute_ >> n;
        if (!std::isfinite(f.unknown_multiplier_substitute_)) ar.read_error("the substitute is not a finite number");
    }
    Archive::Field field(ar, "CrystalChemicalFormula::read residues");
    ar.check_count(n, 1 + 8 + 18, "residue count");  // a residue with no elements takes 27 bytes
    f.residues_.reserve(n);
    for (unsigned int i = 0; i < n; ++i) {
        tCrystalChemicalFormula_ r;
        ar >> r.unknown_multiplier >> r.multiplier;
        if (!std::isfinite(r.multiplier)) ar.read_error("a multiplier is not a finite number");
        r.formula.read(ar);
        f.residues_.push_back(r);
    }
    f.update();
    *this = f;
}

void CrystalChemicalFormula::update() {
    polymeric_ = false;
    multipliers_known_ = true;
    for (tCrystalChemicalFormula_& r : residues_) {
        if (r.formula.polymeric()) polymeric_ = true;
        if (r.unknown_multiplier) {
            r.multiplier = unknown_multiplier_substitute_;
            multipliers_known_ = false;
        }
    }
}

bool CrystalChemicalFormula::operator==(const CrystalChemicalFormula& other) const {
    CrystalChemicalFormula a(*this), b(other);
    a.sort_chemical_formulae();
    b.sort_chemical_formulae();
    return identical(a, b);
}

bool identical(const CrystalChemicalFormula& a, const CrystalChemicalFormula& b) {
    if (a.nresidues() != b.nresidues()) return false;
    for (int i = 0; i < a.nresidues(); ++i) {
        const auto& x = a.residue(i);
        const auto& y = b.residue(i);
        if (x.formula != y.formula || x.multiplier != y.multiplier || x.unknown_multiplier != y.unknown_multiplier)
            return false;
    }
    return true;
}

bool equals(const CrystalChemicalFormula& a, const CrystalChemicalFormula& b, double tolerance,
            CrystalChemicalFormula::UnknownMultiplierCondition condition) {
    if (a.nresidues() != b.nresidues()) return false;
    for (int i = 0; i < a.nresidues(); ++i) {
        const auto& x = a.residue(i);
        const auto& y = b.residue(i);
        if (x.formula != y.formula) return false;
        if (!x.unknown_multiplier && !y.unknown_multiplier) {
            if (std::fabs(x.multiplier - y.multiplier) > tolerance) return false;
        } else if (condition == 1 && !(x.unknown_multiplier && y.unknown_multiplier)) {
            return false;
        }
    }
    return true;
}

bool is_equivalent(const CrystalChemicalFormula& a, const CrystalChemicalFormula& b, double tolerance,
                   CrystalChemicalFormula::UnknownMultiplierCondition condition) {
    CrystalChemicalFormula x(a), y(b);
    x.sort_chemical_formulae();
    y.sort_chemical_formulae();
    return equals(x, y, tolerance, condition);
}

bool same_residues(const CrystalChemicalFormula& a, const CrystalChemicalFormula& b) {
    auto reduced = [](const CrystalChemicalFormula& f) {
        std::vector<CrystalChemicalFormula::tCrystalChemicalFormula_> residues = f.residues();
        for (auto& r : residues) r.formula.set_charge(0);
        bubble_sort(residues);
        residues.erase(std::unique(residues.begin(), residues.end(),
                                   [](const CrystalChemicalFormula::tCrystalChemicalFormula_& x,
                                      const CrystalChemicalFormula::tCrystalChemicalFormula_& y) {
                                       return x.formula == y.formula;
                                   }),
                       residues.end());
        return residues;
    };
    const auto x = reduced(a), y = reduced(b);
    if (x.size() != y.size()) return false;
    for (std::size_t i = 0; i < x.size(); ++i)
        if (x[i].formula != y[i].formula) return false;
    return true;
}

std::ostream& operator<<(std::ostream& out, const CrystalChemicalFormula& f) {
    f.print(out);
    return out;
}

}  // namespace molcryst
