// MetalRings: a metal bonded to every atom of a five- or six-membered ring
// (a cyclopentadienyl, an arene) drawn as one pi bond to the ring's circle,
// instead of five or six bonds crossing the ring.
#ifndef MOLCRYST_DRAW_METALRINGS_H
#define MOLCRYST_DRAW_METALRINGS_H

#include <vector>

#include "molcryst/diagram/ChemicalDiagram.h"

namespace molcryst {
namespace draw {

/// Metals bonded to every atom of a five- or six-membered ring (the ring's
/// atoms bonded round the cycle and to no other atom the metal is bonded
/// to), drawn as one bond to the ring's circle.
class MetalRings {
public:
    /// A metal and the atoms of one ring it binds through all of them, in the
    /// order round the ring.
    struct Ring {
        HDiagramNode metal;
        std::vector<HDiagramNode> atoms;
    };

    /// The metal-bound rings of `diagram`, by metal index, then lowest ring atom index.
    static std::vector<Ring> find(const ChemicalDiagram& diagram);
    /// Turns the metal-ring bonds of every ring `find` gives into pi bonds
    /// and the ring's bonds into aromatic ones, derives the ring circles and
    /// contracts the pi groups; circles of rings that no metal binds are
    /// taken out again, so that the rest of the drawing does not change.
    /// The number of rings folded.
    static int fold(ChemicalDiagram& diagram);
};

}  // namespace draw
}  // namespace molcryst

#endif
