#include "molcryst/molecule/ProteinAtom.h"

#include <typeinfo>

namespace molcryst {

ProteinAtom::ProteinAtom() {}

ProteinAtom::ProteinAtom(const Element& element, std::string label, std::string residue, const HSite& site)
    : Atom3d(element, std::move(label), site), residue_(std::move(residue)) {
    derive();
}

ProteinAtom::ProteinAtom(const Atom& atom) : Atom3d(atom) {
    if (typeid(atom) == typeid(ProteinAtom)) {
        const ProteinAtom& source = static_cast<const ProteinAtom&>(atom);
        residue_ = source.residue_;
        residue_flag_ = source.residue_flag_;
    }
}

ProteinAtom::ProteinAtom(const ProteinAtom& other)
    : Atom3d(other), residue_(other.residue_), residue_flag_(other.residue_flag_), residue_code_(0) {
    derive();
}

ProteinAtom::ProteinAtom(Archive& ar) : Atom3d(ar) {}

HAtom ProteinAtom::clone() const { return HAtom(new ProteinAtom(*this)); }

void ProteinAtom::derive() {
    residue_code_ = residue_identity(residue_);
    if (residue_code_ != 0) {
        std::string l = label();
        if (l.find("CA") != std::string::npos || l.find("CB") != std::string::npos || l.find("NA") != std::string::npos)
            residue_flag_ = false;
    }
}

int ProteinAtom::residue_identity(const std::string& text) {
    static const struct {
        const char* name;
        int code;
    } residues[] = {{"CYS", 5},  {"HIS", 9},  {"ILE", 10}, {"MET", 13}, {"SER", 16}, {"VAL", 20}, {"ALA", 1},
                    {"GLY", 8},  {"LEU", 11}, {"PRO", 15}, {"THR", 17}, {"PHE", 14}, {"ARG", 2},  {"TYR", 19},
                    {"TRP", 18}, {"ASP", 4},  {"ASN", 3},  {"GLU", 7},  {"GLN", 6},  {"LYS", 12}};
    for (const auto& r : residues)
        if (text.find(r.name) != std::string::npos) return r.code;
    return 0;
}

}  // namespace molcryst
