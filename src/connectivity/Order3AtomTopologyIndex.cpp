#include "molcryst/connectivity/Order3AtomTopologyIndex.h"

#include <map>
#include <stdexcept>

namespace molcryst {

// By element code, eight to a line, the symbols at the end of each line.
const unsigned int Order3AtomTopologyIndex::element_prime_keys[Element::ncodes_] = {
    0, 3, 5, 433, 113, 139, 461, 509,  // Unknown C H Ac Ag Al Am Ar
    67, 569, 19, 53, 293, 277, 271, 467,  // As At Au B Ba Be Bi Bk
    131, 239, 137, 331, 479, 107, 463, 41,  // Br Ca Cd Ce Cf Cl Cm Co
    73, 281, 31, 5, 379, 389, 487, 359,  // Cr Cs Cu D Dy Er Es Eu
    191, 47, 491, 571, 229, 367, 179, 499,  // F Fe Fm Fr Ga Gd Ge He
    311, 103, 383, 223, 241, 29, 263, 521,  // Hf Hg Ho I In Ir K Kr
    317, 233, 409, 577, 587, 199, 79, 61,  // La Li Lu Lr Md Mg Mn Mo
    11, 251, 181, 347, 503, 43, 593, 449,  // N Na Nb Nd Ne Ni No Np
    7, 13, 23, 443, 197, 71, 349, 421,  // O Os P Pa Pb Pd Pm Po
    337, 59, 457, 431, 313, 149, 101, 541,  // Pr Pt Pu Ra Rb Re Rh Rn
    37, 17, 163, 269, 109, 89, 353, 83,  // Ru S Sb Sc Se Si Sm Sn
    307, 257, 373, 419, 151, 439, 127, 227,  // Sr Ta Tb Tc Te Th Ti Tl
    397, 157, 173, 167, 547, 523, 283, 401,  // Tm U V W X Xe Y Yb
    557, 97, 211, 563,  // Z Zn Zr Zz
};

int Order3AtomTopologyIndex::index(const HConnectivity& connectivity) const {
    if (connectivity.unhand() == nullptr) throw std::invalid_argument("Order3AtomTopologyIndex: connectivity is zero");
    const Connectivity& c = *connectivity;
    if (c.natoms() == 1) return static_cast<int>(element_prime_keys[c.atom(0)->element().code()]);
    const std::map<HConnectivityAtom, int> ec = c.ordered_graph().extended_conn(3);
    unsigned int sum = 0;  // wraps around, as the index is defined to
    for (Connectivity::const_bond_iterator b = c.begin_bonds(); b != c.end_bonds(); ++b) {
        const HConnectivityAtom a1 = (*b)->atom1(), a2 = (*b)->atom2();
        const unsigned int k1 = element_prime_keys[a1->element().code()];
        const unsigned int k2 = element_prime_keys[a2->element().code()];
        sum += k1 * k2 * static_cast<unsigned int>(ec.find(a1)->second) * static_cast<unsigned int>(ec.find(a2)->second);
    }
    return static_cast<int>(sum);
}

}  // namespace molcryst
