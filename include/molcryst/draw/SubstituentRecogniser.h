// SubstituentRecogniser: finds the substituents of a chemical diagram that
// the symbol catalogue can stand for (phenyl, tert-butyl, nitro, ...) and
// folds them into their symbols.
//
// The catalogue holds shapes and labels only; which atoms make which group
// is chemistry, and lives here: each recognised group is a pattern of
// elements, hydrogen counts and bonds over the catalogue's template points.
// A group is closed: its atoms are bonded only among themselves, except the
// anchor (the template's first point), which has exactly one bond out of the
// group, or none for a free ion (perchlorate, tetrafluoroborate,
// tetramethylammonium).
#ifndef MOLCRYST_DRAW_SUBSTITUENTRECOGNISER_H
#define MOLCRYST_DRAW_SUBSTITUENTRECOGNISER_H

#include <utility>
#include <vector>

#include "molcryst/diagram/ChemicalDiagram.h"

namespace molcryst {
namespace draw {

/// A substituent found in a diagram: its catalogue code and its atoms in the
/// order of the catalogue's template points (the anchor first).
struct SubstituentMatch {
    int code = 0;
    std::vector<HDiagramNode> nodes;
};

/// Recognises catalogue substituents in diagrams made by
/// ChemicalDiagramGenerator: DiagramAtoms with elements and folded hydrogen
/// counts, bonds with their types. Hydrogen counts must be right where they
/// tell groups apart (a methyl is a carbon with three), so a structure
/// without its hydrogens folds little.
class SubstituentRecogniser {
public:
    /// The catalogue codes this recogniser knows, rising. Cyclopentadienyl
    /// and its pentamethyl form are left out: they bind metals through the
    /// whole ring, which MetalRings draws.
    static std::vector<int> supported_codes();
    /// The bonds a group of `code` must have, as pairs of template points;
    /// empty for a code not supported. Pairs not listed must not be bonded.
    static std::vector<std::pair<int, int> > pattern_bonds(int code);

    /// The substituents of `diagram`, none sharing an atom, by rising index
    /// of their anchors. Larger groups win (benzoyl over phenyl,
    /// ethoxycarbonyl over ethoxy), then lower codes, then lower anchor
    /// indices. The atom a group hangs on is never folded into another
    /// group, so that every symbol keeps a drawn atom to bond to: biphenyl
    /// gives one Ph, benzene none.
    std::vector<SubstituentMatch> find(const ChemicalDiagram& diagram) const;

    /// Folds every substituent `find` gives into its symbol
    /// (ChemicalDiagram::add_group_symbol, then contract_symbol_groups);
    /// the number of symbols made.
    int fold(ChemicalDiagram& diagram) const;
};

}  // namespace draw
}  // namespace molcryst

#endif
