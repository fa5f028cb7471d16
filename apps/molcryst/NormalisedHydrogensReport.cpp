#include "NormalisedHydrogensReport.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <string>

#include "Clashes.h"

namespace molcryst {
namespace app {

namespace {

double rounded4(double value) { return std::round(value * 1e4) / 1e4; }

const std::string& label_of(const CifBlock& block, int site) { return block.atoms[static_cast<std::size_t>(site)].label; }

}  // namespace

nlohmann::json normalised_json(const CifBlock& block, const std::vector<NormalisedHydrogens::Moved>& moved) {
    nlohmann::json list = nlohmann::json::array();
    for (const NormalisedHydrogens::Moved& m : moved)
        list.push_back({{"label", label_of(block, m.site)},
                        {"parent", label_of(block, m.parent)},
                        {"before", rounded4(m.before)},
                        {"after", rounded4(m.after)}});
    return list;
}

void normalised_text(std::ostream& out, const CifBlock& block, const std::vector<NormalisedHydrogens::Moved>& moved) {
    out << "normalised hydrogens: " << moved.size() << "\n";
    if (moved.empty()) return;
    std::vector<std::vector<std::string> > rows{{"label", "parent", "before", "after"}};
    for (const NormalisedHydrogens::Moved& m : moved)
        rows.push_back({label_of(block, m.site), label_of(block, m.parent), decimal_text(m.before, 3),
                        decimal_text(m.after, 3)});
    std::vector<std::size_t> width(4, 0);
    for (const auto& row : rows)
        for (std::size_t c = 0; c < row.size(); ++c) width[c] = std::max(width[c], row[c].size());
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t c = 0; c < row.size(); ++c) {
            line += row[c];
            if (c + 1 < row.size()) line += std::string(width[c] - row[c].size() + 2, ' ');
        }
        out << line << "\n";
    }
}

}  // namespace app
}  // namespace molcryst
