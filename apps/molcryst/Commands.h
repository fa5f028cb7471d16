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

/// molcryst report [--json] [--add-hydrogens] [--normalise-hydrogens] [--surroundings]
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
    bool expand_ = false;  // --expand: the hydrogen-bonded network grown from the asymmetric unit
    bool clashes_ = false;  // --clashes: close contacts that no hydrogen bond explains
    bool normalise_hydrogens_ = false;  // --normalise-hydrogens: hydrogens at the neutron X-H distances
};

/// molcryst pack [--json] FILE --box a,b,c: the molecules whose centroids
/// fall in a box of a x b x c cells.
class PackCommand {
public:
    explicit PackCommand(CLI::App& parent);
    bool chosen() const;
    int run(std::ostream& out, std::ostream& err) const;

private:
    CLI::App* command_;
    std::string file_;
    std::vector<double> box_;
    bool json_ = false;
};

/// molcryst convert FILE OUT.mol2 [--box a,b,c]: the asymmetric unit, or a
/// packed box, as a Tripos mol2 file with SYBYL types.
class ConvertCommand {
public:
    explicit ConvertCommand(CLI::App& parent);
    bool chosen() const;
    int run(std::ostream& out, std::ostream& err) const;

private:
    CLI::App* command_;
    std::string file_;
    std::string output_;
    std::vector<double> box_;
};

/// molcryst save FILE OUT.mcr [--expand]: the first structure of the file as
/// a saved crystal view, its hydrogen-bonded network grown first if asked;
/// report reads it back.
class SaveCommand {
public:
    explicit SaveCommand(CLI::App& parent);
    bool chosen() const;
    int run(std::ostream& out, std::ostream& err) const;

private:
    CLI::App* command_;
    std::string file_;
    std::string output_;
    bool expand_ = false;
};

/// molcryst db add|list|show|duplicates [--json] DB ...: an entry database
/// of structures in the directory DB, one entry per CIF data block named
/// after the block; list its identifiers, report one entry, and group the
/// entries with equal crystal topology index and equal crystal formula.
class DbCommand {
public:
    explicit DbCommand(CLI::App& parent);
    bool chosen() const;
    int run(std::ostream& out, std::ostream& err) const;

private:
    int add(std::ostream& out, std::ostream& err) const;
    int list(std::ostream& out, std::ostream& err) const;
    int show(std::ostream& out, std::ostream& err) const;
    int duplicates(std::ostream& out, std::ostream& err) const;

    CLI::App* command_;
    CLI::App* add_;
    CLI::App* list_;
    CLI::App* show_;
    CLI::App* duplicates_;
    std::string database_;
    std::vector<std::string> files_;
    std::string identifier_;
    bool json_ = false;
};

/// molcryst draw FILE OUT.svg [--all-carbons]: the chemical diagram of the
/// first structure's asymmetric unit, laid out flat, as an SVG picture.
class DrawCommand {
public:
    explicit DrawCommand(CLI::App& parent);
    bool chosen() const;
    int run(std::ostream& out, std::ostream& err) const;

private:
    CLI::App* command_;
    std::string file_;
    std::string output_;
    bool all_carbons_ = false;
    bool symbols_ = false;
};

/// molcryst batch DIR_OR_LIST -o OUT.jsonl [--jobs N] [--timeout S]: the
/// report of every CIF of a folder tree (or of a list) as one JSON line
/// each, appended to OUT; files already there are skipped, so a run that was
/// stopped is taken up again by running it again.
class BatchCommand {
public:
    explicit BatchCommand(CLI::App& parent);
    bool chosen() const;
    int run(std::ostream& out, std::ostream& err) const;

private:
    CLI::App* command_;
    std::string input_;
    std::string output_;
    int jobs_ = 1;
    double timeout_ = 0.0;  // seconds one file may take; 0 for no limit
};

}  // namespace app
}  // namespace molcryst

#endif
