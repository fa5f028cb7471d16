// Test helper: the real structures kept in tests/io/cif, by the names that
// CHECKS.txt gives them (each once, in its order).
#ifndef MOLCRYST_TESTS_IO_CIFFILES_H
#define MOLCRYST_TESTS_IO_CIFFILES_H

#include <fstream>
#include <string>
#include <vector>

namespace molcryst {
namespace testing {

const std::string cif_directory = MOLCRYST_CIF_DIR;

/// The file names of the structures listed in CHECKS.txt.
inline std::vector<std::string> cif_files() {
    std::vector<std::string> names;
    std::ifstream checks(cif_directory + "/CHECKS.txt");
    std::string line;
    while (std::getline(checks, line))
        if (line.compare(0, 4, "cod-") == 0 && line.find(" | V calc") != std::string::npos)
            names.push_back(line.substr(0, line.find(" |")));
    return names;
}

}  // namespace testing
}  // namespace molcryst

#endif
