#include "molcryst/io/Mol2Writer.h"

#include <fstream>
#include <iomanip>
#include <ostream>
#include <stdexcept>

#include "molcryst/molecule/Bond.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {

namespace {

// Mol2 fields are separated by blanks: a name may not hold one.
std::string token(const std::string& text, const std::string& fallback) {
    std::string t = text.empty() ? fallback : text;
    for (char& c : t)
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r') c = '_';
    return t;
}

}  // namespace

void Mol2Writer::write(std::ostream& out, const std::string& name, const Crystal& crystal) {
    const int nmolecules = crystal.nmolecules();
    out << "@<TRIPOS>MOLECULE\n" << token(name, "crystal") << "\n";
    out << crystal.natoms() << " " << crystal.nbonds() << " " << nmolecules << " 0 0\n";
    out << "SMALL\nNO_CHARGES\n\n\n";
    out << "@<TRIPOS>ATOM\n";
    out << std::fixed;
    int first = 1;  // number of the molecule's first atom
    for (int k = 0; k < nmolecules; ++k) {
        const HMolecule m = crystal.molecule(k);
        const std::string substructure = "MOL" + std::to_string(k + 1);
        for (int i = 0; i < m->natoms(); ++i) {
            const HAtom a = m->atom(i);
            const Point p = a->site()->orth();
            out << std::setw(7) << first + i << " " << std::left << std::setw(8)
                << token(a->label(), a->element().symbol() + std::to_string(first + i)) << std::right
                << std::setprecision(4) << std::setw(11) << p[0] << std::setw(11) << p[1] << std::setw(11) << p[2]
                << " " << std::left << std::setw(6) << m->atom_sybyl_type(i) << std::right << std::setw(5) << k + 1
                << " " << std::left << std::setw(8) << substructure << std::right << std::setw(8) << 0.0 << "\n";
        }
        first += m->natoms();
    }
    out << "@<TRIPOS>BOND\n";
    first = 1;
    int nbond = 0;
    for (int k = 0; k < nmolecules; ++k) {
        const HMolecule m = crystal.molecule(k);
        for (int j = 0; j < m->nbonds(); ++j) {
            const HBond b = m->bond(j);
            out << std::setw(6) << ++nbond << std::setw(6) << first + b->atom1()->index() << std::setw(6)
                << first + b->atom2()->index() << " " << m->bond_sybyl_type(j) << "\n";
        }
        first += m->natoms();
    }
    out << "@<TRIPOS>SUBSTRUCTURE\n";
    first = 1;
    for (int k = 0; k < nmolecules; ++k) {
        out << std::setw(6) << k + 1 << " " << std::left << std::setw(8) << "MOL" + std::to_string(k + 1) << std::right
            << std::setw(7) << first << " GROUP 0 **** **** 0\n";
        first += crystal.molecule(k)->natoms();
    }
    const Cell& cell = crystal.cell();
    out << "@<TRIPOS>CRYSIN\n"
        << std::setprecision(4) << std::setw(10) << cell.a() << std::setw(10) << cell.b() << std::setw(10) << cell.c()
        << std::setw(10) << cell.alpha().degrees() << std::setw(10) << cell.beta().degrees() << std::setw(10)
        << cell.gamma().degrees() << std::setw(6) << std::max(1, cell.spacegroup().number()) << std::setw(6) << 1
        << "\n";
}

void Mol2Writer::write_file(const std::string& path, const std::string& name, const Crystal& crystal) {
    std::ofstream out(path);
    if (!out) throw std::runtime_error("Mol2Writer::write_file: cannot open " + path + " for writing");
    write(out, name, crystal);
    out.flush();
    if (!out) throw std::runtime_error("Mol2Writer::write_file: cannot write " + path);
}

}  // namespace molcryst
