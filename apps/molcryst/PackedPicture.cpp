#include "PackedPicture.h"

#include <CLI/CLI.hpp>
#include <ostream>

#include "molcryst/crystal/NewCrystal.h"
#include "molcryst/io/CifError.h"
#include "molcryst/io/CifImport.h"

namespace molcryst {
namespace app {

CLI::Option* add_box_option(CLI::App& command, std::vector<double>& box) {
    return command.add_option("--box", box, "Cells along a, b and c, as a,b,c")
        ->delimiter(',')
        ->expected(3)
        ->check(CLI::PositiveNumber);
}

bool packed_pictures(const std::string& file, const std::vector<double>& box, std::ostream& err,
                     std::vector<PackedPicture>& pictures) {
    std::vector<ImportedStructure> structures;
    std::vector<std::string> skipped;
    try {
        structures = CifImport::read_file(file, &skipped);
    } catch (const CifError& e) {
        err << e.what() << "\n";
        return false;
    }
    for (const std::string& s : skipped) err << "warning: " << s << " (block skipped)\n";
    for (const ImportedStructure& s : structures) {
        NewCrystal crystal(s.crystal_maker);
        if (!box.empty()) {
            crystal.set_packing_box(Box(Point(0, 0, 0), Point(box[0], box[1], box[2])));
            crystal.set_packing(true);
        }
        pictures.push_back(PackedPicture{s.name, crystal.crystal_snapshot()});
    }
    return true;
}

}  // namespace app
}  // namespace molcryst
