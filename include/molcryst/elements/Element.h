// Element: the value class through which the library names a chemical
// element, and the constant property tables it reads.
//
// An element is one signed byte, its code. Codes are the library's own
// numbering, not atomic numbers: 0 for "no element known", carbon 1 and
// hydrogen 2 so that they sort first, then the rest alphabetically by symbol
// (with "Lu" before "Lr"), deuterium as an element of its own, and the
// pseudo-elements "X", "Z" and "Zz". Every property is a table indexed by the
// code. The one byte of the code is also the whole archived form.
#ifndef MOLCRYST_ELEMENTS_ELEMENT_H
#define MOLCRYST_ELEMENTS_ELEMENT_H

#include <array>
#include <cstddef>
#include <ostream>
#include <string>

#include "molcryst/support/Archive.h"

namespace molcryst {

/// A chemical element, pseudo-element or "Unknown", held as its code. Ordering
/// and equality are those of the codes: C < H < Ac < Ag < ..., and H and D
/// are different elements although both have atomic number 1.
class Element {
public:
    /// The element codes, named by symbol. Signed, so that a code read from an
    /// archive as any byte value can be held and refused.
    enum TARNCode : signed char {
        Unknown = 0, C = 1, H = 2, Ac = 3, Ag = 4, Al = 5, Am = 6, Ar = 7, As = 8, At = 9, Au = 10,
        B = 11, Ba = 12, Be = 13, Bi = 14, Bk = 15, Br = 16, Ca = 17, Cd = 18, Ce = 19, Cf = 20,
        Cl = 21, Cm = 22, Co = 23, Cr = 24, Cs = 25, Cu = 26, D = 27, Dy = 28, Er = 29, Es = 30,
        Eu = 31, F = 32, Fe = 33, Fm = 34, Fr = 35, Ga = 36, Gd = 37, Ge = 38, He = 39, Hf = 40,
        Hg = 41, Ho = 42, I = 43, In = 44, Ir = 45, K = 46, Kr = 47, La = 48, Li = 49, Lu = 50,
        Lr = 51, Md = 52, Mg = 53, Mn = 54, Mo = 55, N = 56, Na = 57, Nb = 58, Nd = 59, Ne = 60,
        Ni = 61, No = 62, Np = 63, O = 64, Os = 65, P = 66, Pa = 67, Pb = 68, Pd = 69, Pm = 70,
        Po = 71, Pr = 72, Pt = 73, Pu = 74, Ra = 75, Rb = 76, Re = 77, Rh = 78, Rn = 79, Ru = 80,
        S = 81, Sb = 82, Sc = 83, Se = 84, Si = 85, Sm = 86, Sn = 87, Sr = 88, Ta = 89, Tb = 90,
        Tc = 91, Te = 92, Th = 93, Ti = 94, Tl = 95, Tm = 96, U = 97, V = 98, W = 99, X = 100,
        Xe = 101, Y = 102, Yb = 103, Z = 104, Zn = 105, Zr = 106, Zz = 107,
    };

    static constexpr int ncodes_ = 108;     // codes 0 to 107
    static constexpr int nnon_metals_ = 22;

    // Property tables, indexed by code. Radii in Angstroms, volumes in cubic
    // Angstroms at 298 K. A van der Waals radius of 2.0 stands for "no
    // published radius"; a covalent radius of 0.0 for "not known". The
    // numeric tables are constant data; the symbols are built as the program
    // starts, so symbol() is not for use by other static initialisers (name
    // lookups are: they do not read table_).
    static const std::array<std::string, ncodes_> table_;  // symbols; "Unknown" for code 0
    static const std::array<signed char, ncodes_> atomic_numbers_;  // 0 for the pseudo-elements
    static const std::array<double, ncodes_> vdw_radii_;
    static const std::array<double, ncodes_> covalent_radii_;
    static const std::array<double, ncodes_> atomic_volumes_;
    static const std::array<double, ncodes_> atomic_weights_;

    // Four-Gaussian X-ray scattering factor coefficients of the neutral atom
    // (International Tables); zero where no element or no published row.
    static const std::array<double, ncodes_> a1_, b1_, a2_, b2_, a3_, b3_, a4_, b4_, c_;

    /// Atomic numbers of the non-metals.
    static const std::array<signed char, nnon_metals_> non_metals_;

    /// "Unknown", code 0.
    Element() = default;
    /// The element of `code`; a code outside 0 to 107 throws std::invalid_argument.
    Element(TARNCode code);  // NOLINT: codes convert to elements
    /// The element named `name`, ignoring case (see init).
    Element(const std::string& name);  // NOLINT: symbols convert to elements
    /// As the string form; a null pointer is refused as the empty name.
    Element(const char* name);  // NOLINT: symbols convert to elements
    /// Reads an element from `ar`.
    explicit Element(Archive& ar);

    Element(const Element&) = default;
    Element& operator=(const Element&) = default;
    virtual ~Element() = default;

    /// Sets the element from its symbol, ignoring case: one or two letters as
    /// in "cl", "CL" or "Cl", or the word "unknown" in any case for code 0.
    /// Anything else, blanks included, throws std::invalid_argument
    /// "Element::Element: Illegal element name: <name>" and leaves the element as it was.
    void init(const std::string& name);

    /// Reads the code as one signed byte and then checks it. A bad code throws
    /// std::invalid_argument after it is stored: the element must then not be used.
    void read(Archive& ar);
    /// Writes the code as one signed byte.
    void write(Archive& ar) const;
    /// Writes the symbol.
    void print(std::ostream& out) const;

    Element& set_element(const Element& e) {
        code_ = e.code_;
        return *this;
    }

    TARNCode code() const { return code_; }
    const std::string& symbol() const { return table_[code_]; }
    int atomic_number() const { return atomic_numbers_[code_]; }
    double vdw_radius() const { return vdw_radii_[code_]; }            // Angstroms
    double covalent_radius() const { return covalent_radii_[code_]; }  // Angstroms; 0 if not known
    double atomic_weight() const { return atomic_weights_[code_]; }
    double atomic_volume() const { return atomic_volumes_[code_]; }    // cubic Angstroms at 298 K

    /// True when the atomic number is one of `non_metals_`: so D is a
    /// non-metal, and "Unknown" and the pseudo-elements are not.
    bool non_metal() const;

    /// The atomic volume scaled to `temperature` (kelvin) by a linear
    /// expansion of 9.5e-5 per kelvin from 298 K; cubic Angstroms.
    double estimated_atomic_volume(double temperature) const;

    /// The X-ray scattering factor at `s` = (sin theta / lambda) squared, from
    /// the four-Gaussian coefficients. No range check of `s`.
    double xray_scattering_factor(double s) const;

    /// The lowest code with atomic number `z`, or code 0 if none: 1 gives H
    /// (never D), 0 gives Unknown (never X).
    static TARNCode atomic_number_to_tarn_code(int z);
    /// The code whose symbol equals `symbol` exactly, case included, or code 0.
    static TARNCode atomic_symbol_to_tarn_code(const std::string& symbol);
    /// As the string form; a null pointer gives code 0.
    static TARNCode atomic_symbol_to_tarn_code(const char* symbol);

    bool operator==(const Element& other) const { return code_ == other.code_; }
    bool operator!=(const Element& other) const { return code_ != other.code_; }
    bool operator<(const Element& other) const { return code_ < other.code_; }
    bool operator>(const Element& other) const { return code_ > other.code_; }

private:
    TARNCode code_ = Unknown;  // [0, 107] once checked
};

/// Restores the case of an upper-cased two-letter element symbol: lowers the
/// second letter where the pair is a symbol ("CL" becomes "Cl") and returns
/// true; returns false and leaves the string alone otherwise ("CH", "C", "CLA").
/// The pairs accepted are a fixed list that also takes "LW".
bool lower_element_case(std::string& s);

/// The code in decimal, so that a bad code reads as a number in messages.
std::ostream& operator<<(std::ostream& out, Element::TARNCode code);
/// The symbol.
std::ostream& operator<<(std::ostream& out, const Element& e);
Archive& operator<<(Archive& ar, const Element& e);
Archive& operator>>(Archive& ar, Element& e);

}  // namespace molcryst

#endif
