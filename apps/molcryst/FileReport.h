// FileReport: what `molcryst report` says of one file. The command, batch
// runs and the Python module all report through it, so that the three give
// the very same JSON for a file.
#ifndef MOLCRYST_APPS_FILEREPORT_H
#define MOLCRYST_APPS_FILEREPORT_H

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>

namespace molcryst {
namespace app {

/// The options of `molcryst report`; all off by default.
struct ReportOptions {
    bool json = false;                 // the file's entry of the JSON document instead of text
    bool add_hydrogens = false;        // complete missing hydrogens first
    bool normalise_hydrogens = false;  // hydrogens at the neutron X-H distances first
    bool surroundings = false;         // each molecule's neighbours
    long long disorder_state = -1;     // the state to report in; -1 for the structure as deposited
    bool expand = false;               // the hydrogen-bonded network grown from the asymmetric unit
    bool clashes = false;              // close contacts that no hydrogen bond explains
};

/// Reports one file, a CIF or a saved crystal (.mcr): as text on `out`, or
/// with `options.json` as the file's entry of the JSON document in `entry`,
/// which stays null when the file gives none. Warnings and errors go to
/// `err`, one line each. Returns 0, or 1 when the file could not be read.
int report_file(const std::string& file, const ReportOptions& options, std::ostream& out, std::ostream& err,
                nlohmann::json& entry);

/// What `report_file` said on `err` of a file that gave no report, as one
/// line: its error lines joined by "; ", its warnings when it said nothing
/// else, "FILE: no report" when it said nothing at all.
std::string report_error(const std::string& file, const std::string& err);

/// One line of a batch output for `file`, without its newline: {"file": file,
/// "report": the document of `molcryst report --json FILE`} or, when the
/// file cannot be read, {"file": file, "error": what report said of it}.
/// `failed` tells which of the two it is.
std::string report_line(const std::string& file, bool& failed);

/// The document of `molcryst report --json`: { "molcryst": version, "files": entries }.
nlohmann::json report_document(const nlohmann::json& entries);

/// The version the command and the documents name.
const char* molcryst_version();

}  // namespace app
}  // namespace molcryst

#endif
