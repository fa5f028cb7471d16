// molcryst save: a structure as a saved crystal view, which report reads back.
#include <CLI/CLI.hpp>
#include <iostream>

#include "Commands.h"
#include "HBondNetwork.h"
#include "SavedCrystal.h"
#include "molcryst/io/CifImport.h"

namespace molcryst {
namespace app {

SaveCommand::SaveCommand(CLI::App& parent) {
    command_ = parent.add_subcommand("save", "Save the first structure of a CIF file as a crystal view (.mcr)");
    command_->add_option("file", file_, "CIF file")->required();
    command_->add_option("output", output_, "The saved crystal, OUT.mcr")->required();
    command_->add_flag("--expand", expand_, "Grow the hydrogen-bonded network from the asymmetric unit first");
}

bool SaveCommand::chosen() const { return command_->parsed(); }

int SaveCommand::run(std::ostream& out, std::ostream& err) const {
    std::vector<ImportedStructure> structures;
    try {
        structures = CifImport::read_file(file_);
    } catch (const CifError& e) {
        err << e.what() << "\n";
        return 1;
    }
    if (structures.empty()) {
        err << file_ << ": no structure with atom sites\n";
        return 1;
    }
    // The view report --expand shows: the asymmetric unit with the default
    // hydrogen-bond rule, expanded fully when asked.
    NewCrystal crystal(structures[0].crystal_maker);
    crystal.add_contact_criterion(default_hbond_criterion());
    if (expand_) crystal.expand_fully();
    try {
        save_crystal(crystal, output_);
    } catch (const std::runtime_error& e) {
        err << output_ << ": " << e.what() << "\n";
        return 1;
    }
    out << "saved data_" << structures[0].name << " to " << output_ << ": " << crystal.crystal_snapshot()->nmolecules()
        << " molecules, " << crystal.contacts()->size() << " contacts\n";
    return 0;
}

}  // namespace app
}  // namespace molcryst
