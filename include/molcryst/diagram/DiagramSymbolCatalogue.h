// DiagramSymbolCatalogue: the 47 substituents that a diagram can fold into
// a symbol, each with its code, name, labels, hydrogen position and template.
#ifndef MOLCRYST_DIAGRAM_DIAGRAMSYMBOLCATALOGUE_H
#define MOLCRYST_DIAGRAM_DIAGRAMSYMBOLCATALOGUE_H

#include <string>
#include <vector>

#include "molcryst/diagram/DiagramSymbol.h"
#include "molcryst/geometry/Point2d.h"

namespace molcryst {

/// The fixed catalogue. Templates are in units of one bond; the first point
/// is the anchor, the atom by which the group hangs on the rest of the
/// structure, and the group extends along +x. Codes run from 1 to 48; 20 is
/// not used.
class DiagramSymbolCatalogue {
public:
    struct Entry {
        int code;
        std::string name;
        std::string left_label;
        std::string right_label;
        std::string centre_label;
        DiagramSymbol::HydrogenPosition hydrogen_position;
        std::vector<Point2d> points;
    };

    /// Every entry, by rising code; built on first use.
    static const std::vector<Entry>& entries();
    /// The entry of `code`; null for a code not in the catalogue.
    static const Entry* find(int code);
    /// The entry named `name`; null for an unknown name.
    static const Entry* find(const std::string& name);
};

}  // namespace molcryst

#endif
