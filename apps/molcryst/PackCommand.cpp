// molcryst pack: the molecules whose centroids fall in a box of whole cells.
#include <CLI/CLI.hpp>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "PackedPicture.h"

namespace molcryst {
namespace app {

PackCommand::PackCommand(CLI::App& parent) {
    command_ = parent.add_subcommand("pack", "List the molecules packed in a box of cells");
    command_->add_option("file", file_, "CIF file")->required();
    add_box_option(*command_, box_)->required();
    command_->add_flag("--json", json_, "Print one JSON document");
}

bool PackCommand::chosen() const { return command_->parsed(); }

int PackCommand::run(std::ostream& out, std::ostream& err) const {
    std::vector<PackedPicture> pictures;
    if (!packed_pictures(file_, box_, err, pictures)) return 1;
    nlohmann::json blocks = nlohmann::json::array();
    for (const PackedPicture& p : pictures) {
        const Crystal& c = *p.crystal;
        nlohmann::json centroids = nlohmann::json::array();
        for (const HMolecule& m : *c.molecules()) {
            const Point f = c.cell().fractional(m->centroid());
            centroids.push_back({f[0], f[1], f[2]});
        }
        if (json_) {
            blocks.push_back({{"name", p.name},
                              {"box", box_},
                              {"molecules", c.nmolecules()},
                              {"atoms", c.natoms()},
                              {"bonds", c.nbonds()},
                              {"centroids", centroids}});
            continue;
        }
        out << "data_" << p.name << ": box " << box_[0] << " x " << box_[1] << " x " << box_[2]
            << " cells: " << c.nmolecules() << " molecules, " << c.natoms() << " atoms, " << c.nbonds() << " bonds\n";
        out << "  #  atoms  centroid (fractional)\n" << std::fixed << std::setprecision(4);
        for (int k = 0; k < c.nmolecules(); ++k)
            out << "  " << k + 1 << "  " << c.molecule(k)->natoms() << "  " << centroids[k][0].get<double>() << " "
                << centroids[k][1].get<double>() << " " << centroids[k][2].get<double>() << "\n";
        out << std::defaultfloat;
    }
    if (json_)
        out << nlohmann::json{{"molcryst", MOLCRYST_VERSION}, {"file", file_}, {"blocks", blocks}}.dump(2) << "\n";
    return 0;
}

}  // namespace app
}  // namespace molcryst
