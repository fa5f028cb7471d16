// molcryst convert: the asymmetric unit, or a packed box, as a mol2 file.
#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>

#include "Commands.h"
#include "PackedPicture.h"
#include "molcryst/io/BondOrderPerception.h"
#include "molcryst/io/Mol2Writer.h"

namespace molcryst {
namespace app {

ConvertCommand::ConvertCommand(CLI::App& parent) {
    command_ = parent.add_subcommand("convert", "Write the asymmetric unit or a packed box as Tripos mol2");
    command_->add_option("file", file_, "CIF file")->required();
    command_->add_option("output", output_, "mol2 file to write")->required();
    add_box_option(*command_, box_);
}

bool ConvertCommand::chosen() const { return command_->parsed(); }

int ConvertCommand::run(std::ostream& out, std::ostream& err) const {
    std::vector<PackedPicture> pictures;
    if (!packed_pictures(file_, box_, err, pictures)) return 1;
    std::ofstream mol2(output_);
    // Every block one MOLECULE record, in file order.
    // Bond orders from the geometry, so that other programs see aromatic
    // rings and multiple bonds where the atom-type rules leave them unknown.
    for (const PackedPicture& p : pictures)
        for (const HMolecule& m : *p.crystal->molecules()) BondOrderPerception::perceive(*m);
    for (const PackedPicture& p : pictures) Mol2Writer::write(mol2, p.name, *p.crystal);
    mol2.flush();
    if (!mol2) {
        err << output_ << ": cannot be written\n";
        return 1;
    }
    for (const PackedPicture& p : pictures)
        out << "data_" << p.name << ": " << p.crystal->nmolecules() << " molecules, " << p.crystal->natoms()
            << " atoms written to " << output_ << "\n";
    return 0;
}

}  // namespace app
}  // namespace molcryst
