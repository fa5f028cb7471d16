// molcryst report: what each structure of the files holds, as text or JSON.
#include <CLI/CLI.hpp>

#include <iostream>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "FileReport.h"

namespace molcryst {
namespace app {

ReportCommand::ReportCommand(CLI::App& parent) {
    command_ = parent.add_subcommand("report", "Report cell, symmetry, molecules, bonds and hydrogen bonds");
    command_->add_option("files", files_, "CIF files, or crystals saved by save (.mcr)")->required();
    command_->add_flag("--clashes", clashes_, "List close contacts between molecules that no hydrogen bond explains");
    command_->add_flag("--json", json_, "Print one JSON document");
    command_->add_flag("--expand", expand_, "Grow the hydrogen-bonded network from the asymmetric unit");
    command_->add_flag("--add-hydrogens", add_hydrogens_,
                       "Add the hydrogens each atom lacks, with sites, before bonds and hydrogen bonds are found");
    command_->add_flag("--normalise-hydrogens", normalise_hydrogens_,
                       "Move hydrogens to the standard neutron X-H distances before hydrogen bonds are found");
    command_->add_flag("--surroundings", surroundings_,
                       "List each molecule's neighbours by van der Waals contacts and hydrogen bonds");
    command_->add_option("--disorder-state", disorder_state_,
                         "Report each structure in disorder state N (0, the most probable, first)")
        ->check(CLI::Validator(
            [](std::string& value) {
                return value.empty() || value[0] == '-' ? std::string("the state is a number from 0") : std::string();
            },
            "N >= 0"));
}

bool ReportCommand::chosen() const { return command_->parsed(); }

int ReportCommand::run(std::ostream& out, std::ostream& err) const {
    ReportOptions options;
    options.json = json_;
    options.add_hydrogens = add_hydrogens_;
    options.normalise_hydrogens = normalise_hydrogens_;
    options.surroundings = surroundings_;
    options.disorder_state = disorder_state_;
    options.expand = expand_;
    options.clashes = clashes_;
    int status = 0;
    nlohmann::json entries = nlohmann::json::array();
    for (const std::string& file : files_) {
        nlohmann::json entry;
        status |= report_file(file, options, out, err, entry);
        if (!entry.is_null()) entries.push_back(entry);
    }
    if (json_) out << report_document(entries).dump(2) << "\n";
    return status;
}

}  // namespace app
}  // namespace molcryst
