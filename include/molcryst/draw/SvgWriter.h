// SvgWriter: a chemical diagram as a Scalable Vector Graphics picture.
//
// Atoms are drawn as their element labels with hydrogen counts and charges
// (carbons in a bend are hidden, as chemists draw them); single, double,
// triple and aromatic bonds as one, two (the second inside a ring), three
// lines or a line and a dashed line; bonds to a ring circle dashed and
// stopped at its rim; ring circles as circles (the bonds of their ring then
// single lines); symbols as the label that reads away from their bonds, with
// their hydrogens and charge; frames as brackets with their multiplier. The
// drawing is scaled to a standard bond length, whatever the units of the
// diagram.
#ifndef MOLCRYST_DRAW_SVGWRITER_H
#define MOLCRYST_DRAW_SVGWRITER_H

#include <iosfwd>
#include <string>

#include "molcryst/diagram/ChemicalDiagram.h"

namespace molcryst {
namespace draw {

/// Writes diagrams as SVG. Each atom label is a group of class "atom" with
/// its box in data-box (x y width height, picture units), each symbol one of
/// class "symbol" with its box likewise, each bond a group of class "bond";
/// ring circles and frames have classes "ring" and "frame".
class SvgWriter {
public:
    /// The drawn length of a mean bond, in picture units (pixels).
    double bond_length() const { return bond_length_; }
    void set_bond_length(double length) { bond_length_ = length; }
    /// Whether every carbon shows its label; by default carbons in a bend or
    /// at a branch are the corners of the skeleton, as chemists draw them.
    bool show_all_carbons() const { return show_all_carbons_; }
    void set_show_all_carbons(bool show) { show_all_carbons_ = show; }
    /// A title written into the picture; empty for none.
    void set_title(const std::string& title) { title_ = title; }

    /// The picture of `diagram`.
    std::string svg(const ChemicalDiagram& diagram) const;
    void write(const ChemicalDiagram& diagram, std::ostream& out) const;
    /// Writes the picture to `path`; std::runtime_error when the file cannot be written.
    void write(const ChemicalDiagram& diagram, const std::string& path) const;

private:
    double bond_length_ = 40.0;  // pixels: a picture of a drug-sized molecule about 300 wide
    std::string title_;
    bool show_all_carbons_ = false;
};

}  // namespace draw
}  // namespace molcryst

#endif
