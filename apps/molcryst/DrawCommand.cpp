// molcryst draw: the chemical diagram of a structure's asymmetric unit as SVG.
#include <CLI/CLI.hpp>

#include <fstream>
#include <iostream>

#include "Commands.h"
#include "PackedPicture.h"
#include "molcryst/draw/FlatLayout.h"
#include "molcryst/draw/MetalRings.h"
#include "molcryst/draw/SubstituentRecogniser.h"
#include "molcryst/draw/SvgWriter.h"
#include "molcryst/io/BondOrderPerception.h"
#include "molcryst/molecule/Molecule3d.h"

namespace molcryst {
namespace app {

DrawCommand::DrawCommand(CLI::App& parent) {
    command_ = parent.add_subcommand("draw", "Draw the molecules of the asymmetric unit as an SVG diagram");
    command_->add_option("file", file_, "CIF file")->required();
    command_->add_option("output", output_, "SVG file to write")->required();
    command_->add_flag("--all-carbons", all_carbons_, "Label every carbon, not only those a skeleton shows");
    command_->add_flag("--symbols", symbols_,
                       "Fold known substituents into symbols (Ph, NO2, CF3, ...) and a metal's bonds to a whole "
                       "ring into one pi bond");
}

bool DrawCommand::chosen() const { return command_->parsed(); }

int DrawCommand::run(std::ostream& out, std::ostream& err) const {
    std::vector<PackedPicture> pictures;
    if (!packed_pictures(file_, std::vector<double>(), err, pictures)) return 1;
    if (pictures.empty()) {
        err << file_ << ": no structure to draw\n";
        return 1;
    }
    // One picture of the first structure: every molecule of its asymmetric
    // unit, laid out side by side, with bond orders from the geometry.
    const PackedPicture& picture = pictures.front();
    Molecule3d all;
    for (const HMolecule& m : *picture.crystal->molecules()) {
        BondOrderPerception::perceive(*m);
        all.add(*m);
    }
    const HChemicalDiagram diagram = draw::flat_diagram(all);
    const int natoms = diagram->nnodes(), nbonds = diagram->nedges();
    int nsymbols = 0, nrings = 0;
    if (symbols_) {
        // Rings first: a ring a metal binds is no substituent, and its circle must
        // not be folded into one.
        nrings = draw::MetalRings::fold(*diagram);
        nsymbols = draw::SubstituentRecogniser().fold(*diagram);
    }
    draw::SvgWriter writer;
    writer.set_title(picture.name);
    writer.set_show_all_carbons(all_carbons_);
    std::ofstream svg(output_, std::ios::binary);
    writer.write(*diagram, svg);
    svg.flush();
    if (!svg) {
        err << output_ << ": cannot be written\n";
        return 1;
    }
    out << "data_" << picture.name << ": " << picture.crystal->nmolecules() << " molecules, " << natoms
        << " atoms and " << nbonds << " bonds drawn to " << output_;
    if (symbols_) out << ", " << nsymbols << " symbols and " << nrings << " pi-bonded rings folded";
    out << "\n";
    if (pictures.size() > 1)
        err << file_ << ": " << pictures.size() - 1 << " further structures not drawn (the first is)\n";
    return 0;
}

}  // namespace app
}  // namespace molcryst
