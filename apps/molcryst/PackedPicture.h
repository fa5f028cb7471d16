// The picture that pack and convert show of each structure in a file: the
// crystal view's asymmetric unit, or its packing of a box of cells.
#ifndef MOLCRYST_APPS_PACKEDPICTURE_H
#define MOLCRYST_APPS_PACKEDPICTURE_H

#include <iosfwd>
#include <string>
#include <vector>

#include "molcryst/crystal/Crystal.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace molcryst {
namespace app {

/// One structure of a file and the picture shown of it.
struct PackedPicture {
    std::string name;  // the data block's
    HCrystal crystal;
};

/// --box a,b,c: three positive numbers of cells along each axis.
CLI::Option* add_box_option(CLI::App& command, std::vector<double>& box);

/// One picture per usable block of `file`: packed from the origin to `box`
/// (in cells) or, for an empty `box`, the asymmetric unit. A file that cannot
/// be read is told on `err` and gives false; skipped blocks give warnings.
bool packed_pictures(const std::string& file, const std::vector<double>& box, std::ostream& err,
                     std::vector<PackedPicture>& pictures);

}  // namespace app
}  // namespace molcryst

#endif
