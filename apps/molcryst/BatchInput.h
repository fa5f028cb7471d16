// BatchInput: the files a batch run reports, from a folder tree or a list.
#ifndef MOLCRYST_APPS_BATCHINPUT_H
#define MOLCRYST_APPS_BATCHINPUT_H

#include <string>
#include <vector>

namespace molcryst {
namespace app {

/// The files to report, in order, each once: the CIF files (".cif" in any
/// case) of a folder and its subfolders, sorted by path; or the paths a list
/// file names, one a line, blank lines and lines from "#" left out (relative
/// paths stand as written, from the current folder); or a CIF file itself.
/// std::runtime_error "PATH: what" when there is no such path, it cannot be
/// read, or it gives no file.
std::vector<std::string> batch_input(const std::string& folder_or_list);

}  // namespace app
}  // namespace molcryst

#endif
