#include "molcryst/diagram/DiagramSymbolCatalogue.h"

#include <cmath>

namespace molcryst {

namespace {

// The height of an equilateral triangle of side one bond.
const double h = 0.5 * std::sqrt(3.0);

typedef Point2d P;

std::vector<DiagramSymbolCatalogue::Entry> make_entries() {
    return {
        {1, "Phenyl", "Ph", "Ph", "Ph", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.5, -h), P(1.5, h), P(2.0, 0.0)}},
        {2, "Pyridyl", "Py", "Py", "Py", DiagramSymbol::HydrogenAtSecondAtom,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.5, -h), P(1.5, h), P(2.0, 0.0)}},
        {3, "Cyclopentadienyl", "Cp", "Cp", "Cp", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.59, -0.81), P(0.59, 0.81), P(1.54, -0.5), P(1.54, 0.5)}},
        {4, "Ethyl", "Et", "Et", "Et", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0)}},
        {5, "Tertiarybutyl", "Bu<sup>t</sup>", "Bu<sup>t</sup>", "Bu<sup>t</sup>", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.0, 0.0)}},
        {6, "Trifluoromethyl", "CF<sub>3</sub>", "F<sub>3</sub>C", "CF<sub>3</sub>", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0), P(0.5, h), P(0.5, -h)}},
        {7, "Triphenylphosphine", "PPh<sub>3</sub>", "Ph<sub>3</sub>P", "PPh<sub>3</sub>", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.0, 1.0), P(1.0, 0.0), P(0.0, -1.0), P(h, 1.5), P(-h, 1.5), P(1.5, -h), P(1.5, h), P(-h, -1.5), P(h, -1.5), P(h, 2.5), P(-h, 2.5), P(2.5, -h), P(2.5, h), P(-h, -2.5), P(h, -2.5), P(0.0, 3.0), P(3.0, 0.0), P(0.0, -3.0)}},
        {8, "Aldehyde", "CHO", "OHC", "CHO", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0)}},
        {9, "Carboxylic", "COO", "OOC", "COO", DiagramSymbol::HydrogenAtSecondAtom,
         {P(0.0, 0.0), P(0.5, h), P(0.5, -h)}},
        {10, "Tetramethylammonium", "NMe<sub>4</sub>", "Me<sub>4</sub>N", "Me<sub>4</sub>N", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.0, 1.0), P(1.0, 0.0), P(0.0, -1.0), P(-1.0, 0.0)}},
        {11, "Acetyl", "COMe", "MeCO", "COMe", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, h), P(0.5, -h)}},
        {12, "Carbonyl", "CO", "OC", "CO", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0)}},
        {13, "Cyano", "CN", "NC", "CN", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0)}},
        {14, "Thiocyanato", "SCN", "NCS", "NCS", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0), P(2.0, 0.0)}},
        {15, "Isothiocyanato", "NCS", "SCN", "NCS", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0), P(2.0, 0.0)}},
        {16, "Nitro", "NO<sub>2</sub>", "O<sub>2</sub>N", "NO<sub>2</sub>", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h)}},
        {17, "Sulfonato", "SO<sub>3</sub>", "O<sub>3</sub>S", "SO<sub>3</sub>", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.0, 0.0)}},
        {18, "Perchlorate", "ClO<sub>4</sub>", "ClO<sub>4</sub>", "ClO<sub>4</sub>", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.0, 1.0), P(1.0, 0.0), P(0.0, -1.0), P(-1.0, 0.0)}},
        {19, "Tetrafluoroborate", "BF<sub>4</sub>", "BF<sub>4</sub>", "BF<sub>4</sub>", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.0, 1.0), P(1.0, 0.0), P(0.0, -1.0), P(-1.0, 0.0)}},
        {21, "Pentamethylcyclopentadienyl", "Cp*", "Cp*", "Cp*", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.5), P(0.95, 0.81), P(0.0, -0.5), P(-0.81, 1.09), P(1.54, 0.0), P(1.26, 1.76), P(0.95, -0.81), P(-0.81, -1.09), P(2.54, 0.0), P(1.26, -1.76)}},
        {22, "Isopropyl", "Pr<sup>i</sup>", "Pr<sup>i</sup>", "Pr<sup>i</sup>", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, h), P(0.5, -h)}},
        {23, "Dimethylamino", "NMe<sub>2</sub>", "Me<sub>2</sub>N", "Me<sub>2</sub>N", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h)}},
        {24, "Trimethylsilyl", "SiMe<sub>3</sub>", "Me<sub>3</sub>Si", "SiMe<sub>3</sub>", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.0, 0.0)}},
        {25, "Paratolyl", "pTol", "pTol", "pTol", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.5, -h), P(1.5, h), P(2.0, 0.0), P(3.0, 0.0)}},
        {26, "Paratosyl", "pTos", "pTos", "pTos", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0), P(0.0, 1.0), P(0.0, -1.0), P(1.5, -h), P(1.5, h), P(2.5, -h), P(2.5, h), P(3.0, 0.0), P(4.0, 0.0)}},
        {27, "Metatolyl", "mTol", "mTol", "mTol", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.5, -h), P(1.5, h), P(2.0, 0.0), P(2.0, -2 * h)}},
        {28, "Orthotolyl", "oTol", "oTol", "oTol", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.5, -h), P(0.0, -2 * h), P(1.5, h), P(2.0, 0.0)}},
        {29, "Cyclohexyl", "Cy", "Cy", "Cy", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.5, -h), P(1.5, h), P(2.0, 0.0)}},
        {30, "Methoxycarbonyl", "COOMe", "MeOOC", "COOMe", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.5, -h)}},
        {31, "Ethoxycarbonyl", "COOEt", "EtOOC", "COOEt", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.5, -h), P(2.0, -2 * h)}},
        {32, "Tertiarybutoxycarbonyl", "COOBu<sup>t</sup>", "Bu<sup>t</sup>COO", "COOBu<sup>t</sup>", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.5, -h), P(2.0, -2 * h), P(2.0, 0.0), P(2.5, -h)}},
        {33, "Azido", "N<sub>3</sub>", "N<sub>3</sub>", "N<sub>3</sub>", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0), P(2.0, 0.0)}},
        {34, "Nitrosyl", "NO", "ON", "NO", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0)}},
        {35, "Methoxy", "OMe", "MeO", "MeO", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0)}},
        {36, "Ethoxy", "OEt", "EtO", "EtO", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0), P(1.5, -h)}},
        {37, "Mesityl", "Mes", "Mes", "Mes", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.5, -h), P(0.0, -2 * h), P(1.5, h), P(0.0, 2 * h), P(2.0, 0.0), P(3.0, 0.0)}},
        {38, "Pentafluorophenyl", "C<sub>6</sub>F<sub>5</sub>", "F<sub>5</sub>C<sub>6</sub>", "C<sub>6</sub>F<sub>5</sub>", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.5, -h), P(0.0, -2 * h), P(1.5, h), P(0.0, 2 * h), P(2.0, 0.0), P(2.0, -2 * h), P(2.0, 2 * h), P(3.0, 0.0)}},
        {39, "Acetato", "O[CO]Me", "Me[CO]O", "O[CO]Me", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0), P(1.5, h), P(1.5, -h)}},
        {40, "Triphenylmethyl", "CPh<sub>3</sub>", "Ph<sub>3</sub>C", "Ph<sub>3</sub>C", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.0, 1.0), P(1.0, 0.0), P(0.0, -1.0), P(h, 1.5), P(-h, 1.5), P(1.5, -h), P(1.5, h), P(h, -1.5), P(-h, -1.5), P(h, 2.5), P(-h, 2.5), P(2.5, -h), P(2.5, h), P(h, -2.5), P(-h, -2.5), P(0.0, 3.0), P(3.0, 0.0), P(0.0, -3.0)}},
        {41, "Tricyclohexylphosphine", "PCy<sub>3</sub>", "Cy<sub>3</sub>P", "Cy<sub>3</sub>P", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.0, 1.0), P(1.0, 0.0), P(0.0, -1.0), P(h, 1.5), P(-h, 1.5), P(1.5, -h), P(1.5, h), P(h, -1.5), P(-h, -1.5), P(h, 2.5), P(-h, 2.5), P(2.5, -h), P(2.5, h), P(h, -2.5), P(-h, -2.5), P(0.0, 3.0), P(3.0, 0.0), P(0.0, -3.0)}},
        {42, "Trimethylphosphine", "PMe<sub>3</sub>", "Me<sub>3</sub>P", "Me<sub>3</sub>P", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0), P(0.5, h), P(0.5, -h)}},
        {43, "Triethylphosphine", "PEt<sub>3</sub>", "Et<sub>3</sub>P", "Et<sub>3</sub>P", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0), P(0.5, h), P(0.5, -h), P(2.0, 0.0), P(1.5, h), P(1.5, -h)}},
        {44, "Trimethylphosphite", "P[OMe]<sub>3</sub>", "[MeO]<sub>3</sub>P", "[MeO]<sub>3</sub>P", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0), P(0.5, -h), P(0.5, h), P(2.0, 0.0), P(1.5, -h), P(1.5, h)}},
        {45, "Triethylphosphite", "P[OEt]<sub>3</sub>", "[EtO]<sub>3</sub>P", "[EtO]<sub>3</sub>P", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0), P(0.5, -h), P(0.5, h), P(2.0, 0.0), P(1.5, -h), P(1.5, h), P(3.0, 0.0), P(2.0, -2 * h), P(2.0, 2 * h)}},
        {46, "Carbamoyl", "CONH<sub>2</sub>", "H<sub>2</sub>NOC", "CONH<sub>2</sub>", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, h), P(0.5, -h)}},
        {47, "Benzoyl", "COPh", "PhOC", "COPh", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(0.5, -h), P(0.5, h), P(1.5, -h), P(0.0, -2 * h), P(2.0, -2 * h), P(0.5, -3 * h), P(1.5, -3 * h)}},
        {48, "Benzyl", "CH<sub>2</sub>Ph", "PhCH<sub>2</sub>", "CH<sub>2</sub>Ph", DiagramSymbol::HydrogenDefault,
         {P(0.0, 0.0), P(1.0, 0.0), P(1.5, -h), P(1.5, h), P(2.5, -h), P(2.5, h), P(3.0, 0.0)}},
    };
}

}  // namespace

const std::vector<DiagramSymbolCatalogue::Entry>& DiagramSymbolCatalogue::entries() {
    static const std::vector<Entry> table = make_entries();
    return table;
}

const DiagramSymbolCatalogue::Entry* DiagramSymbolCatalogue::find(int code) {
    for (const Entry& e : entries())
        if (e.code == code) return &e;
    return nullptr;
}

const DiagramSymbolCatalogue::Entry* DiagramSymbolCatalogue::find(const std::string& name) {
    for (const Entry& e : entries())
        if (e.name == name) return &e;
    return nullptr;
}

}  // namespace molcryst
