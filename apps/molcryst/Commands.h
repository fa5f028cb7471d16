// The subcommands of the molcryst command. Each adds its options to the
// parser when made and runs when chosen; run returns the exit code: 0 done,
// 1 a file that could not be read.
#ifndef MOLCRYST_APPS_COMMANDS_H
#define MOLCRYST_APPS_COMMANDS_H

#include <iosfwd>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace molcryst {
namespace app {

/// molcryst report [--json] [--add-hydrogens] [--surroundings]
/// [--disorder-state N] FILE...: cell, symmetry, molecules, bonds,
/// hydrogen bonds and disorder assemblies of every structure in the files;
/// optionally with the missing hydrogens added first, each molecule's
/// neighbours, and in one disorder state.
class ReportCommand {
public:
    explicit ReportCommand(CLI::App& parent);
    bool chosen() const;
    int run(std::ostream& out, std::ostream& err) const;

private:
    CLI::App* command_;
    std::vector<std::string> files_;
    bool json_ = false;
    bool add_hydrogens_ = false;
    bool surroundings_ = false;
    long long disorder_state_ = -1;  // the state to report in; -1 for the structure as deposited
};

}  // namespace app
}  // namespace molcryst

#endif
