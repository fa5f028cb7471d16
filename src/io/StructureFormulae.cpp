#include "molcryst/io/StructureFormulae.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>
#include <sstream>
#include <stdexcept>

#include "molcryst/support/StringFunctions.h"

namespace molcryst {

namespace {

// Proportions agree when every amount is within this fraction of the scaled declared one.
constexpr double relative_tolerance = 0.02;



// The number of distinct positions of a site in the cell: the operators'
// images of it, equal ones (to 1e-3 of a cell edge, across cell edges) counted once.
int nimages(const Cell& cell, const Point& frac) {
    std::vector<Point> seen;
    for (const CrystalSymmetryOperator& op : cell.spacegroup().operators()) {
        const Point p = op * frac;
        const bool known = std::any_of(seen.begin(), seen.end(), [&p](const Point& q) {
            for (int k = 0; k < 3; ++k) {
                const double d = p[k] - q[k];
                if (std::fabs(d - std::round(d)) > 1e-3) return false;
            }
            return true;
        });
        if (!known) seen.push_back(p);
    }
    return static_cast<int>(seen.size());
}

// "C7", "O3.5", "Cl", "co2": an element symbol (first letter any case) with an
// optional count; false for anything else, unknown symbols included.
bool element_token(const std::string& token, Element& element, double& count) {
    std::size_t n = 0;
    while (n < token.size() && n < 2 && std::isalpha(static_cast<unsigned char>(token[n]))) ++n;
    if (n == 0 || (n < token.size() && std::isalpha(static_cast<unsigned char>(token[n])))) return false;
    std::string symbol(1, static_cast<char>(std::toupper(static_cast<unsigned char>(token[0]))));
    if (n == 2) symbol += static_cast<char>(std::tolower(static_cast<unsigned char>(token[1])));
    const Element::TARNCode code = Element::atomic_symbol_to_tarn_code(symbol);
    if (code == Element::Unknown) return false;
    element = Element(code);
    const std::string rest = token.substr(n);
    if (rest.empty()) {
        count = 1.0;
        return true;
    }
    bool ok = false;
    count = string_to_double(rest, ok);
    return ok && std::isfinite(count) && count >= 0.0 && rest.find_first_not_of("0123456789.") == std::string::npos;
}

// "2+", "-", "+1", "2-": a charge as formulae write it.
bool charge_token(const std::string& token) {
    if (token.empty()) return false;
    const bool sign_first = token[0] == '+' || token[0] == '-';
    const bool sign_last = token.back() == '+' || token.back() == '-';
    if (sign_first == sign_last && token.size() > 1) return false;
    const std::string digits = sign_first ? token.substr(1) : token.substr(0, token.size() - 1);
    return (sign_first || sign_last) && digits.find_first_not_of("0123456789") == std::string::npos;
}

// The residues of a crystal formula by their charge-free text, with their summed multipliers.
std::map<std::string, double> residue_amounts(const CrystalChemicalFormula& f) {
    std::map<std::string, double> amounts;
    for (const CrystalChemicalFormula::tCrystalChemicalFormula_& r : f.residues()) {
        MoleculeChemicalFormula neutral = r.formula;
        neutral.set_charge(0);
        neutral.set_polymeric(false);
        amounts[to_string(neutral)] += r.multiplier;
    }
    return amounts;
}

// Whether `computed` is `declared` times one factor, amount by amount; the
// factor is set from the largest declared amount.
bool proportional(const std::map<std::string, double>& computed, const std::map<std::string, double>& declared,
                  double& scale) {
    scale = 0.0;
    if (computed.size() != declared.size() || declared.empty()) return false;
    const auto largest = std::max_element(declared.begin(), declared.end(),
                                          [](const std::pair<const std::string, double>& a,
                                             const std::pair<const std::string, double>& b) {
                                              return a.second < b.second;
                                          });
    const auto match = computed.find(largest->first);
    if (match == computed.end() || largest->second <= 0.0) return false;
    const double k = match->second / largest->second;
    for (const auto& d : declared) {
        const auto c = computed.find(d.first);
        if (c == computed.end()) return false;
        if (std::fabs(c->second - k * d.second) > relative_tolerance * std::max(1.0, c->second)) return false;
    }
    scale = k;
    return true;
}

std::map<std::string, double> amounts_of(const SumFormula& f) {
    std::map<std::string, double> amounts;
    for (const auto& e : f.elements()) amounts[e.first.symbol()] = e.second;
    return amounts;
}

double tidy(double value) { return std::round(value * 1e6) / 1e6; }

// The chemical occupancy of a site. Some files give the site-occupation
// factor instead, the occupancy times the site's share of a general position
// (0.25 for a full atom on a fourfold axis); such a value on a special position
// stands for a full atom.
double occupancy_of(const CifAtomSite& a, int images, int nops) {
    const double share = static_cast<double>(images) / nops;
    const double occ = a.occupancy.value();
    if (images < nops && std::fabs(occ - share) < 0.01) return 1.0;
    return occ;
}

// "C12H12Cl2CrN2O2" written without blanks: a new element at each capital letter.
std::vector<std::string> element_tokens(const std::string& text) {
    std::vector<std::string> written, tokens;
    split(text, written, " \t\r\n");
    for (const std::string& token : written) {
        std::size_t start = 0;
        for (std::size_t i = 1; i <= token.size(); ++i)
            if (i == token.size() || (std::isupper(static_cast<unsigned char>(token[i])) &&
                                      std::isalpha(static_cast<unsigned char>(token[0])))) {
                tokens.push_back(token.substr(start, i - start));
                start = i;
            }
    }
    return tokens;
}

}  // namespace

const char* StructureFormulae::status_name(Comparison::Status status) {
    switch (status) {
        case Comparison::Agrees: return "agrees";
        case Comparison::Differs: return "differs";
        case Comparison::Unreadable: return "unreadable";
        default: return "absent";
    }
}

bool StructureFormulae::read_sum_formula(const std::string& text, SumFormula& out) {
    const std::vector<std::string> tokens = element_tokens(text);
    SumFormula f(true);
    for (const std::string& token : tokens) {
        Element e;
        double count = 0.0;
        if (!element_token(token, e, count)) return false;
        f.set_multiplier(e, f.multiplier(e) + count);
    }
    if (tokens.empty()) return false;
    out = f;
    return true;
}

bool StructureFormulae::read_moiety_formula(const std::string& text, CrystalChemicalFormula& out) {
    std::vector<std::string> pieces;
    split(text, pieces, ",");
    std::string normalised;
    for (const std::string& raw : pieces) {
        std::string piece = trim(raw, " \t\r\n");
        if (piece.empty()) continue;
        // "2C7 H4 N O3 S -" and "4H2 O": a count written straight before the residue.
        std::size_t digits = 0;
        while (digits < piece.size() && (std::isdigit(static_cast<unsigned char>(piece[digits])) || piece[digits] == '.'))
            ++digits;
        std::string body = piece;
        std::string prefix;
        if (piece.find('(') == std::string::npos) {
            if (digits > 0 && digits < piece.size() && std::isalpha(static_cast<unsigned char>(piece[digits]))) {
                prefix = piece.substr(0, digits);
                body = piece.substr(digits);
            }
        } else {
            const std::size_t open = piece.find('('), close = piece.rfind(')');
            if (close == std::string::npos || close != piece.size() - 1 || open > close) return false;
            prefix = piece.substr(0, open);
            body = piece.substr(open + 1, close - open - 1);
            if (!prefix.empty() && prefix.find_first_not_of("0123456789.") != std::string::npos) return false;
        }
        std::vector<std::string> tokens;
        const std::vector<std::string> written = element_tokens(body);
        // A charge written onto the last element ("I-", "Na+") stands apart.
        for (const std::string& token : written) {
            const std::size_t sign = token.find_first_of("+-");
            if (sign != std::string::npos && sign > 0 && std::isalpha(static_cast<unsigned char>(token[0])) &&
                token.find_first_not_of("+-", sign) == std::string::npos) {
                tokens.push_back(token.substr(0, sign));
                tokens.push_back(token.substr(sign));
            } else {
                tokens.push_back(token);
            }
        }
        std::string residue;
        bool any_element = false;
        for (const std::string& token : tokens) {
            Element e;
            double count = 0.0;
            if (element_token(token, e, count)) {
                if (count != std::floor(count)) return false;
                residue += (residue.empty() ? "" : " ") + e.symbol() + std::to_string(static_cast<long long>(count));
                any_element = true;
            } else if (charge_token(token)) {
                // A bare sign is a charge of one.
                const std::string t = token.size() == 1 ? token + "1" : token;
                residue += " " + t;
            } else {
                return false;
            }
        }
        if (!any_element) return false;
        normalised += (normalised.empty() ? "" : ",") + (prefix.empty() ? residue : prefix + "(" + residue + ")");
    }
    if (normalised.empty()) return false;
    try {
        out = CrystalChemicalFormula(normalised, true);
    } catch (const std::exception&) {
        return false;
    }
    return true;
}

StructureFormulae::StructureFormulae(const StructureReport& report) {
    const CifBlock& block = report.block();
    const Cell& cell = block.cell;
    const int nops = std::max(1, cell.spacegroup().noperators());
    per_formula_unit_ = block.z > 0;
    // Amounts per asymmetric unit become amounts per formula unit.
    const double per = per_formula_unit_ ? static_cast<double>(nops) / block.z : 1.0;
    std::vector<int> images(block.atoms.size());
    for (std::size_t s = 0; s < block.atoms.size(); ++s) {
        Point p;
        for (int k = 0; k < 3; ++k) p[k] = block.atoms[s].fract[k].value();
        images[s] = nimages(cell, p);
    }

    std::vector<std::pair<MoleculeChemicalFormula, double> > residues;
    for (std::size_t c = 0; c < report.molecules().size(); ++c) {
        const StructureReport::MoleculeRow& row = report.molecules()[c];
        MoleculeChemicalFormula formula(true);
        double multiplier = 0.0;
        if (!row.polymeric) {
            const HMolecule whole = report.whole_molecules()[c];
            if (whole->natoms() == 0) {
                molecule_formulae_.emplace_back();
                continue;
            }
            // Molecules in the cell: the images of a site over its copies in one molecule.
            const int site = whole->atom(0)->symmtag();
            int copies = 0;
            for (int i = 0; i < whole->natoms(); ++i) copies += whole->atom(i)->symmtag() == site ? 1 : 0;
            multiplier = static_cast<double>(images[static_cast<std::size_t>(site)]) / (copies * nops);
            // The molecule's own occupancy is that of its best-occupied ordered site
            // (a solvent at half occupancy); its alternative parts count by their
            // occupancies relative to it, so that both groups of a disordered
            // region make one part.
            double occupancy = 0.0, any = 0.0;
            for (int s : row.sites) {
                const CifAtomSite& a = block.atoms[static_cast<std::size_t>(s)];
                const double occ = occupancy_of(a, images[static_cast<std::size_t>(s)], nops);
                any = std::max(any, occ);
                if (a.disorder_group == 0) occupancy = std::max(occupancy, occ);
            }
            if (occupancy <= 0.0) occupancy = any;
            if (occupancy <= 0.0 || occupancy > 1.0) occupancy = 1.0;
            std::map<Element, double> amounts;
            double charge = 0.0;
            for (int i = 0; i < whole->natoms(); ++i) {
                const HAtom atom = whole->atom(i);
                const std::size_t site_of_atom = static_cast<std::size_t>(atom->symmtag());
                const double occ =
                    occupancy_of(block.atoms[site_of_atom], images[site_of_atom], nops) / occupancy;
                amounts[atom->element()] += occ;
                charge += atom->formal_charge() * occ;
            }
            for (const auto& e : amounts) {
                const long long n = std::llround(e.second);
                if (n > 0) formula.add(e.first, static_cast<unsigned int>(n));
            }
            formula.set_charge(static_cast<int>(std::lround(charge)));
            multiplier *= occupancy;
        } else {
            // The repeat unit: each site by its share of the asymmetric unit, then
            // the smallest whole multiple of those shares.
            std::map<Element, double> share;
            double charge = 0.0;
            for (int s : row.sites) {
                const CifAtomSite& a = block.atoms[static_cast<std::size_t>(s)];
                const double w = static_cast<double>(images[static_cast<std::size_t>(s)]) / nops *
                                 (a.disorder_group != 0 ? occupancy_of(a, images[static_cast<std::size_t>(s)], nops) : 1.0);
                share[a.element] += w;
                charge += a.formal_charge * w;
            }
            int k = 1;
            for (; k < 24; ++k) {
                bool whole_counts = true;
                for (const auto& e : share)
                    if (std::fabs(e.second * k - std::round(e.second * k)) > 1e-3) whole_counts = false;
                if (whole_counts) break;
            }
            for (const auto& e : share) {
                const long long n = std::llround(e.second * k);
                if (n > 0) formula.add(e.first, static_cast<unsigned int>(n));
            }
            formula.set_charge(static_cast<int>(std::lround(charge * k)));
            formula.set_polymeric(true);
            multiplier = 1.0 / k;
        }
        molecule_formulae_.push_back(to_string(formula));
        const auto same = std::find_if(residues.begin(), residues.end(),
                                       [&formula](const std::pair<MoleculeChemicalFormula, double>& r) {
                                           return r.first == formula && r.first.polymeric() == formula.polymeric();
                                       });
        if (same != residues.end())
            same->second += multiplier;
        else
            residues.emplace_back(formula, multiplier);
    }
    for (const auto& r : residues) crystal_.add_residue(r.first, tidy(r.second * per));

    for (std::size_t s = 0; s < block.atoms.size(); ++s) {
        const CifAtomSite& a = block.atoms[s];
        sum_.set_multiplier(a.element, sum_.multiplier(a.element) +
                                           static_cast<double>(images[s]) / nops * occupancy_of(a, images[s], nops) * per);
    }
    for (const Element& e : sum_.elements_present()) sum_.set_multiplier(e, tidy(sum_.multiplier(e)));

    if (!block.formula_sum.empty()) {
        sum_check_.declared = block.formula_sum;
        SumFormula declared;
        if (!read_sum_formula(block.formula_sum, declared)) {
            sum_check_.status = Comparison::Unreadable;
            sum_check_.detail = "not a list of elements with counts";
        } else if (proportional(amounts_of(sum_), amounts_of(declared), sum_check_.scale)) {
            sum_check_.status = Comparison::Agrees;
        } else {
            sum_check_.status = Comparison::Differs;
            sum_check_.detail = "the sites hold " + to_string(sum_) + ", the file declares " + to_string(declared);
        }
    }
    if (!block.formula_moiety.empty()) {
        moiety_check_.declared = block.formula_moiety;
        CrystalChemicalFormula declared;
        if (!read_moiety_formula(block.formula_moiety, declared)) {
            moiety_check_.status = Comparison::Unreadable;
            moiety_check_.detail = "not residues of elements with counts";
        } else if (proportional(residue_amounts(crystal_), residue_amounts(declared), moiety_check_.scale)) {
            moiety_check_.status = Comparison::Agrees;
        } else {
            std::ostringstream computed, read;
            crystal_.print(computed);
            declared.print(read);
            moiety_check_.status = Comparison::Differs;
            moiety_check_.detail = "the molecules are " + computed.str() + ", the file declares " + read.str();
            double scale = 0.0;
            if (proportional(amounts_of(sum_), amounts_of(declared.sum_formula()), scale))
                moiety_check_.detail += " (the same atoms, grouped otherwise)";
        }
    }
}

}  // namespace molcryst
