#include "BatchInput.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <system_error>

namespace molcryst {
namespace app {

namespace {

namespace fs = std::filesystem;

bool has_cif_extension(const fs::path& path) {
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".cif";
}

std::vector<std::string> folder_files(const std::string& folder) {
    std::vector<std::string> files;
    std::error_code ec;
    // Links to folders are not followed, so that a loop of links cannot make the walk endless;
    // links to files are, which is how collections are often put together.
    fs::recursive_directory_iterator walk(folder, fs::directory_options::skip_permission_denied, ec);
    if (ec) throw std::runtime_error(folder + ": cannot be read: " + ec.message());
    for (const fs::recursive_directory_iterator end; walk != end; walk.increment(ec)) {
        if (ec) throw std::runtime_error(folder + ": cannot be read: " + ec.message());
        std::error_code status;
        if (has_cif_extension(walk->path()) && walk->is_regular_file(status)) files.push_back(walk->path().string());
    }
    if (ec) throw std::runtime_error(folder + ": cannot be read: " + ec.message());
    if (files.empty()) throw std::runtime_error(folder + ": no CIF files (*.cif) in this folder or below");
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> list_files(const std::string& list) {
    std::ifstream in(list);
    if (!in) throw std::runtime_error(list + ": cannot be read");
    std::vector<std::string> files;
    std::set<std::string> seen;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const std::size_t first = line.find_first_not_of(" \t");
        if (first == std::string::npos || line[first] == '#') continue;
        line = line.substr(first, line.find_last_not_of(" \t") + 1 - first);
        if (seen.insert(line).second) files.push_back(line);
    }
    if (in.bad()) throw std::runtime_error(list + ": cannot be read");
    if (files.empty()) throw std::runtime_error(list + ": the list names no files");
    return files;
}

}  // namespace

std::vector<std::string> batch_input(const std::string& folder_or_list) {
    std::error_code ec;
    const fs::file_status status = fs::status(folder_or_list, ec);
    if (!fs::exists(status)) throw std::runtime_error(folder_or_list + ": no such file or folder");
    if (fs::is_directory(status)) return folder_files(folder_or_list);
    if (has_cif_extension(folder_or_list)) return {folder_or_list};
    return list_files(folder_or_list);
}

}  // namespace app
}  // namespace molcryst
