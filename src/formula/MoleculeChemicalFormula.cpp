#include "molcryst/formula/MoleculeChemicalFormula.h"

#include <array>
#include <cctype>
#include <climits>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include "molcryst/connectivity/Connectivity.h"
#include "molcryst/connectivity/ConnectivityAtom.h"
#include "molcryst/formula/SumFormula.h"
#include "molcryst/molecule/Atom.h"
#include "molcryst/molecule/Molecule.h"
#include "molcryst/support/Archive.h"
#include "molcryst/support/StringFunctions.h"

namespace molcryst {

namespace {

constexpr unsigned long long max_count = UINT_MAX;

bool is_letter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }

[[noreturn]] void too_many_atoms() {
    throw std::overflow_error("MoleculeChemicalFormula: more atoms than an unsigned int can count.");
}

int checked_charge(long long charge) {
    if (charge > INT_MAX || charge < INT_MIN)
        throw std::overflow_error("MoleculeChemicalFormula: charge out of the range of int.");
    return static_cast<int>(charge);
}

}  // namespace

MoleculeChemicalFormula::MoleculeChemicalFormula(bool D_is_H) : D_is_H_(D_is_H) {}

MoleculeChemicalFormula::MoleculeChemicalFormula(const Element& element, bool D_is_H) : D_is_H_(D_is_H) {
    add_count(element.code(), 1);
    rebuild_hydrogens();
}

MoleculeChemicalFormula::MoleculeChemicalFormula(const char* text, bool D_is_H) : D_is_H_(D_is_H) {
    init(text != nullptr ? std::string(text) : std::string(), D_is_H);
}

MoleculeChemicalFormula::MoleculeChemicalFormula(const std::string& text, bool D_is_H) : D_is_H_(D_is_H) {
    init(text, D_is_H);
}

MoleculeChemicalFormula::MoleculeChemicalFormula(const THandle<Molecule>& molecule, bool D_is_H) : D_is_H_(D_is_H) {
    if (molecule == nullptr) throw std::invalid_argument("MoleculeChemicalFormula: Null handle passed as argument.");
    long long charge = 0;
    for (int i = 0; i < molecule->natoms(); ++i) {
        const HAtom a = molecule->atom(i);
        add_count(a->element().code(), 1);
        charge += a->formal_charge();
    }
    charge_ = checked_charge(charge);
    rebuild_hydrogens();
}

MoleculeChemicalFormula::MoleculeChemicalFormula(const THandle<Connectivity>& connectivity, bool D_is_H)
    : D_is_H_(D_is_H) {
    if (connectivity == nullptr)
        throw std::invalid_argument("MoleculeChemicalFormula: Null handle passed as argument.");
    long long charge = 0;
    for (int i = 0; i < connectivity->natoms(); ++i) {
        const THandle<ConnectivityAtom> a = connectivity->atom(i);
        add_count(a->element().code(), 1);
        charge += a->formal_charge();
    }
    charge_ = checked_charge(charge);
    rebuild_hydrogens();
}

void MoleculeChemicalFormula::init(const std::string& source, bool D_is_H) {
    // Parsed into a fresh formula, so that a refused text leaves this one as it was.
    MoleculeChemicalFormula parsed(D_is_H);
    std::string text = source;
    const std::string::size_type close = text.find(')');
    if (close != std::string::npos) {
        if (text.find('n', close) != std::string::npos) parsed.polymeric_ = true;
        const std::string::size_type open = text.find('(');
        // No "(" reads from the start; a "(" behind the ")" leaves nothing between them.
        const std::string::size_type start = open == std::string::npos ? 0 : open + 1;
        text = start <= close ? text.substr(start, close - start) : std::string();
    }
    std::vector<std::string> tokens;
    split(toupper(text), tokens, " \t");
    std::array<unsigned long long, 108> counters{};
    long long charge = 0;
    for (const std::string& token : tokens) {
        if (!is_letter(token[0])) {
            const int sign = token.back() == '-' ? -1 : 1;
            int value = 0;
            try {
                value = string_to_int(token);
            } catch (const std::overflow_error&) {
                throw std::overflow_error("MoleculeChemicalFormula: charge out of the range of int.");
            }
            charge = checked_charge(charge + static_cast<long long>(sign) * value);
            continue;
        }
        std::string symbol(1, token[0]);
        if (token.size() > 1 && is_letter(token[1]))
            symbol += static_cast<char>(std::tolower(static_cast<unsigned char>(token[1])));
        const Element::TARNCode code = Element::atomic_symbol_to_tarn_code(symbol);
        bool ok = false;
        const std::string rest = token.substr(symbol.size());
        const int count = string_to_int(rest, ok);
        // Digits that do not fit an int are a count too large, not a rest that is no count.
        const std::size_t digits = !rest.empty() && (rest[0] == '+' || rest[0] == '-') ? 1 : 0;
        if (!ok && rest.size() > digits && rest.find_first_not_of("0123456789", digits) == std::string::npos)
            throw std::overflow_error("MoleculeChemicalFormula: count out of range in \"" + token + "\".");
        if (ok && count < 0)
            throw std::invalid_argument("MoleculeChemicalFormula: negative count in \"" + token + "\".");
        counters[static_cast<std::size_t>(code)] += ok ? static_cast<unsigned long long>(count) : 1ULL;
        if (counters[static_cast<std::size_t>(code)] > max_count) too_many_atoms();
    }
    for (std::size_t code = 0; code < counters.size(); ++code)
        if (counters[code] != 0) parsed.add_count(static_cast<Element::TARNCode>(code), counters[code]);
    parsed.charge_ = checked_charge(charge);
    parsed.set_D_is_H(D_is_H);
    *this = parsed;
}

void MoleculeChemicalFormula::add_count(Element::TARNCode code, unsigned long long count) {
    if (count == 0) return;
    if (static_cast<unsigned long long>(natoms()) + count > max_count) too_many_atoms();
    if (code == Element::H)
        hydrogen_ += static_cast<unsigned int>(count);
    else if (code == Element::D)
        deuterium_ += static_cast<unsigned int>(count);
    else
        elements_[Element(code)] += static_cast<unsigned int>(count);
}

void MoleculeChemicalFormula::rebuild_hydrogens() {
    elements_.erase(Element(Element::H));
    elements_.erase(Element(Element::D));
    const unsigned int h = D_is_H_ ? hydrogen_ + deuterium_ : hydrogen_;
    const unsigned int d = D_is_H_ ? 0 : deuterium_;
    if (h != 0) elements_[Element(Element::H)] = h;
    if (d != 0) elements_[Element(Element::D)] = d;
}

void MoleculeChemicalFormula::set_D_is_H(bool D_is_H) {
    D_is_H_ = D_is_H;
    rebuild_hydrogens();
}

double MoleculeChemicalFormula::estimated_volume(double temperature) const {
    double volume = 0.0;
    for (const auto& e : elements_) volume += e.second * e.first.estimated_atomic_volume(temperature);
    return volume;
}

double MoleculeChemicalFormula::molecular_weight() const {
    double weight = 0.0;
    for (const auto& e : elements_) weight += e.second * e.first.atomic_weight();
    return weight;
}

void MoleculeChemicalFormula::add(const Element& element, unsigned int count) {
    add_count(element.code(), count);
    rebuild_hydrogens();
}

// While D counts as H, hydrogen removed takes the deuterium shown with it.
void MoleculeChemicalFormula::remove(Element element) {
    if (element.code() == Element::H) {
        // Counted together, hydrogen and deuterium leave together.
        hydrogen_ = 0;
        if (D_is_H_) deuterium_ = 0;
    } else if (element.code() == Element::D) {
        deuterium_ = 0;
    }
    elements_.erase(element);
    rebuild_hydrogens();
}

void MoleculeChemicalFormula::remove(Element element, unsigned int count) {
    auto lower = [](unsigned int& n, unsigned int& by) {
        const unsigned int taken = n < by ? n : by;
        n -= taken;
        by -= taken;
    };
    if (element.code() == Element::H) {
        lower(hydrogen_, count);  // hydrogen first, then the deuterium counted with it
        if (D_is_H_) lower(deuterium_, count);
    } else if (element.code() == Element::D) {
        lower(deuterium_, count);
    } else {
        const auto it = elements_.find(element);
        if (it != elements_.end()) {
            lower(it->second, count);
            if (it->second == 0) elements_.erase(it);
        }
    }
    rebuild_hydrogens();
}

unsigned int MoleculeChemicalFormula::natoms(const Element& element) const {
    const auto it = elements_.find(element);
    return it == elements_.end() ? 0 : it->second;
}

unsigned int MoleculeChemicalFormula::natoms() const {
    // The true counts of H and D, so that the total does not depend on how they are shown.
    unsigned long long n = static_cast<unsigned long long>(hydrogen_) + deuterium_;
    for (const auto& e : elements_)
        if (e.first.code() != Element::H && e.first.code() != Element::D) n += e.second;
    return static_cast<unsigned int>(n);
}

std::vector<Element> MoleculeChemicalFormula::elements_present() const {
    std::vector<Element> present;
    present.reserve(elements_.size());
    for (const auto& e : elements_) present.push_back(e.first);
    return present;
}

unsigned int MoleculeChemicalFormula::nhydrogens() const { return natoms(Element(Element::H)); }

MoleculeChemicalFormula& MoleculeChemicalFormula::operator+=(const MoleculeChemicalFormula& other) {
    MoleculeChemicalFormula sum(*this);
    for (const auto& e : other.elements_)
        if (e.first.code() != Element::H && e.first.code() != Element::D) sum.add_count(e.first.code(), e.second);
    sum.add_count(Element::H, other.hydrogen_);
    sum.add_count(Element::D, other.deuterium_);
    sum.charge_ = checked_charge(static_cast<long long>(charge_) + other.charge_);
    sum.polymeric_ = polymeric_ || other.polymeric_;  // a sum with a polymer is polymeric
    sum.rebuild_hydrogens();
    *this = sum;
    return *this;
}

bool MoleculeChemicalFormula::contains(const MoleculeChemicalFormula& other) const {
    for (const auto& e : other.elements_)
        if (natoms(e.first) < e.second) return false;
    return true;
}

unsigned int MoleculeChemicalFormula::nmost_frequent() const {
    unsigned int most = 0;
    for (const auto& e : elements_)
        if (e.second > most) most = e.second;
    return most;
}

bool MoleculeChemicalFormula::operator==(const MoleculeChemicalFormula& other) const {
    return elements_ == other.elements_ && charge_ == other.charge_;
}

bool MoleculeChemicalFormula::operator<(const MoleculeChemicalFormula& other) const {
    if (elements_.size() != other.elements_.size()) return elements_.size() < other.elements_.size();
    for (auto i = elements_.begin(), j = other.elements_.begin(); i != elements_.end(); ++i, ++j)
        if (i->first != j->first) return i->first < j->first;
    for (auto i = elements_.begin(), j = other.elements_.begin(); i != elements_.end(); ++i, ++j)
        if (i->second != j->second) return i->second < j->second;
    return false;
}

void MoleculeChemicalFormula::print(std::ostream& out) const {
    std::string s;
    for_each_in_print_order(elements_, [&s](const Element& e, unsigned int n) {
        s += e.symbol();
        s += std::to_string(n);
        s += ' ';
    });
    if (charge_ == 0) {
        if (!s.empty()) s.pop_back();
    } else {
        const long long q = charge_;
        s += (q > 0 ? "+" : "-") + std::to_string(q > 0 ? q : -q);
    }
    if (polymeric_) s = "(" + s + ")n";
    out << s;
}

void MoleculeChemicalFormula::write(Archive& ar) const {
    ar << charge_ << D_is_H_ << deuterium_ << hydrogen_ << polymeric_ << static_cast<unsigned int>(elements_.size());
    for (const auto& e : elements_) {
        e.first.write(ar);
        ar << e.second;
    }
}

void MoleculeChemicalFormula::read(Archive& ar) {
    MoleculeChemicalFormula f;
    unsigned int n = 0;
    {
        Archive::Field field(ar, "MoleculeChemicalFormula::read charge, flags and hydrogen counts");
        ar >> f.charge_ >> f.D_is_H_ >> f.deuterium_ >> f.hydrogen_ >> f.polymeric_ >> n;
    }
    Archive::Field field(ar, "MoleculeChemicalFormula::read elements");
    ar.check_count(n, 1 + 4, "element count");
    unsigned long long total = static_cast<unsigned long long>(f.hydrogen_) + f.deuterium_;
    for (unsigned int i = 0; i < n; ++i) {
        Element e;
        unsigned int count = 0;
        e.read(ar);
        ar >> count;
        if (count == 0) ar.read_error("an element with a count of 0");
        if (!f.elements_.emplace(e, count).second) ar.read_error("element " + e.symbol() + " given twice");
        if (e.code() != Element::H && e.code() != Element::D) total += count;
    }
    // The hydrogen shown must be what the true counts give, and the total countable.
    MoleculeChemicalFormula shown(f);
    shown.rebuild_hydrogens();
    if (shown.elements_ != f.elements_) ar.read_error("hydrogen and deuterium counts disagree with the element list");
    if (total > max_count) ar.read_error("more atoms than an unsigned int can count");
    *this = f;
}

MoleculeChemicalFormula operator+(const MoleculeChemicalFormula& a, const MoleculeChemicalFormula& b) {
    MoleculeChemicalFormula sum(a);
    sum += b;
    return sum;
}

std::ostream& operator<<(std::ostream& out, const MoleculeChemicalFormula& f) {
    f.print(out);
    return out;
}

}  // namespace molcryst
