#include "molcryst/elements/ElementSetFactory.h"

#include <stdexcept>

#include "molcryst/support/TARNLog.h"

namespace molcryst {

namespace {
using E = Element;
constexpr Element::TARNCode none = Element::Unknown;  // filler

// Row of main_group_ for a main group, or -1 for groups 3 to 12.
int main_group_row(int g) {
    if (g <= 2) return g - 1;
    if (g >= 13) return g - 11;
    return -1;
}
}  // namespace

const std::array<int, 18> ElementSetFactory::group_size_ = {7, 6, 4, 3, 3, 3, 3, 3, 3, 3, 3, 3, 5, 5, 5, 5, 5, 6};

const std::array<int, 4> ElementSetFactory::d_block_row_size_ = {10, 10, 10, 1};

// clang-format off
const std::array<std::array<Element::TARNCode, 7>, 8> ElementSetFactory::main_group_ = {{
    {E::H,  E::Li, E::Na, E::K,  E::Rb, E::Cs, E::Fr},  // 1
    {E::Be, E::Mg, E::Ca, E::Sr, E::Ba, E::Ra, none},   // 2
    {E::B,  E::Al, E::Ga, E::In, E::Tl, none,  none},   // 13
    {E::C,  E::Si, E::Ge, E::Sn, E::Pb, none,  none},   // 14
    {E::N,  E::P,  E::As, E::Sb, E::Bi, none,  none},   // 15
    {E::O,  E::S,  E::Se, E::Te, E::Po, none,  none},   // 16
    {E::F,  E::Cl, E::Br, E::I,  E::At, none,  none},   // 17
    {E::He, E::Ne, E::Ar, E::Kr, E::Xe, E::Rn, none},   // 18
}};

const std::array<std::array<Element::TARNCode, 10>, 4> ElementSetFactory::transition_ = {{
    {E::Sc, E::Ti, E::V,  E::Cr, E::Mn, E::Fe, E::Co, E::Ni, E::Cu, E::Zn},
    {E::Y,  E::Zr, E::Nb, E::Mo, E::Tc, E::Ru, E::Rh, E::Pd, E::Ag, E::Cd},
    {E::La, E::Hf, E::Ta, E::W,  E::Re, E::Os, E::Ir, E::Pt, E::Au, E::Hg},
    {E::Ac, none,  none,  none,  none,  none,  none,  none,  none,  none},
}};

const std::array<Element::TARNCode, 28> ElementSetFactory::f_block_ = {
    E::Ce, E::Pr, E::Nd, E::Pm, E::Sm, E::Eu, E::Gd, E::Tb, E::Dy, E::Ho, E::Er, E::Tm, E::Yb, E::Lu,
    E::Th, E::Pa, E::U,  E::Np, E::Pu, E::Am, E::Cm, E::Bk, E::Cf, E::Es, E::Fm, E::Md, E::No, E::Lr};
// clang-format on

ElementSetFactory::ElementSetFactory() {
    ElementSet everything_but_h = all();
    everything_but_h -= Element(Element::H);
    ElementSet group14_but_c = group(14);
    group14_but_c -= Element(Element::C);
    ElementSet group8to10 = group(8);
    group8to10 += group(9);
    group8to10 += group(10);

    register_set("AA", everything_but_h);
    register_set("HD", hydrogens());
    register_set("1A", group(1));
    register_set("2A", group(2));
    register_set("3A", group(13));
    register_set("4A", group14_but_c);
    register_set("5A", group(15));
    register_set("6A", group(16));
    register_set("7A", group(17));
    register_set("8A", group(18));
    register_set("3B", group(3));
    register_set("4B", group(4));
    register_set("5B", group(5));
    register_set("6B", group(6));
    register_set("7B", group(7));
    register_set("8X", group(8));
    register_set("8Y", group(9));
    register_set("8Z", group(10));
    register_set("1B", group(11));
    register_set("2B", group(12));
    register_set("8B", group8to10);
    register_set("1R", transition_row(1));
    register_set("2R", transition_row(2));
    register_set("3R", transition_row(3));
    register_set("TR", transition_metals());
    register_set("LN", lanthanides());
    register_set("AN", actinides());
    register_set("1M", s_block_metals());
    register_set("2M", p_block_metals());
    register_set("3M", main_group_metals());
    register_set("4M", metals());
}

ElementSet ElementSetFactory::group(int g) {
    if (g < 1 || g > 18) {
        static const char message[] = "ElementSetFactory::group() - cannot access 1 > group > 18";
        MOLCRYST_DEBUG_LINE(1, message);
        throw std::out_of_range(message);
    }
    const int size = group_size_[g - 1];
    ElementSet set;
    int row = main_group_row(g);
    if (row < 0) {
        for (int r = 0; r < size; ++r) set.add_element(transition_[r][g - 3]);
    } else {
        // Hydrogen heads group 1 in the table but is not one of its members.
        for (int i = g == 1 ? 1 : 0; i < size; ++i) set.add_element(main_group_[row][i]);
    }
    return set;
}

ElementSet ElementSetFactory::halogens() { return group(17); }

ElementSet ElementSetFactory::noble() { return group(18); }

ElementSet ElementSetFactory::s_block_metals() {
    ElementSet set = group(1);
    set += group(2);
    return set;
}

ElementSet ElementSetFactory::p_block_metals() {
    ElementSet set;
    for (int g = 13; g <= 18; ++g)
        for (const Element& e : group(g).elements())
            if (!e.non_metal()) set.add_element(e);
    return set;
}

ElementSet ElementSetFactory::main_group_metals() {
    ElementSet set = group(1);
    set += group(2);
    set += p_block_metals();
    return set;
}

ElementSet ElementSetFactory::transition_row(int r) {
    if (r < 1 || r > 4) {
        static const char message[] = "ElementSetFactory::transition_row() - cannot access 1 > row > 4";
        MOLCRYST_DEBUG_LINE(1, message);
        throw std::out_of_range(message);
    }
    ElementSet set;
    for (int i = 0; i < d_block_row_size_[r - 1]; ++i) set.add_element(transition_[r - 1][i]);
    return set;
}

ElementSet ElementSetFactory::transition_metals() {
    ElementSet set;
    for (int r = 1; r <= 4; ++r) set += transition_row(r);
    return set;
}

ElementSet ElementSetFactory::lanthanides() {
    ElementSet set;
    for (int i = 0; i < 14; ++i) set.add_element(f_block_[i]);
    return set;
}

ElementSet ElementSetFactory::actinides() {
    ElementSet set;
    for (int i = 14; i < 28; ++i) set.add_element(f_block_[i]);
    return set;
}

ElementSet ElementSetFactory::metals() {
    ElementSet set = main_group_metals();
    set += transition_metals();
    set += lanthanides();
    set += actinides();
    return set;
}

ElementSet ElementSetFactory::non_metals() {
    ElementSet set;
    for (int g = 13; g <= 18; ++g) set += group(g);
    set -= p_block_metals();
    set += Element(Element::H);
    set += Element(Element::D);
    return set;
}

ElementSet ElementSetFactory::hydrogens() {
    ElementSet set((Element(Element::H)));  // doubled parentheses: a declaration, not a function
    set += Element(Element::D);
    return set;
}

ElementSet ElementSetFactory::unknown() {
    ElementSet set;
    for (int code = 0; code < Element::ncodes_; ++code)
        if (Element::atomic_numbers_[code] == 0) set.add_element(static_cast<Element::TARNCode>(code));
    return set;
}

ElementSet ElementSetFactory::all() {
    ElementSet set = metals();
    set += non_metals();
    set += unknown();
    return set;
}

ElementSet ElementSetFactory::non_hydrogens() {
    ElementSet set = all();
    set -= hydrogens();
    set -= unknown();
    return set;
}

void ElementSetFactory::register_set(const std::string& name, const ElementSet& set) { sets_[name] = set; }

bool ElementSetFactory::registered(const std::string& name) const { return sets_.count(name) != 0; }

ElementSet ElementSetFactory::create_set(const std::string& name) const {
    auto found = sets_.find(name);
    if (found == sets_.end()) {
        static const char message[] = "ElementSetFactory::create_set(): group not registered : ";
        MOLCRYST_DEBUG_LINE(1, message << name);
        throw std::invalid_argument(message + name);
    }
    return found->second;
}

std::set<std::string> ElementSetFactory::find(const Element& e) const {
    std::set<std::string> names;
    for (const auto& entry : sets_)
        if (entry.second.has_element(e)) names.insert(entry.first);
    return names;
}

std::set<std::string> ElementSetFactory::find(const ElementSet& set) const {
    std::set<std::string> names;
    for (const auto& entry : sets_)
        if (entry.second.nelements() == set.nelements() && entry.second == set) names.insert(entry.first);
    return names;
}

std::set<std::string> ElementSetFactory::all_sets() const {
    std::set<std::string> names;
    for (const auto& entry : sets_) names.insert(entry.first);
    return names;
}

}  // namespace molcryst
