#include "DbStructure.h"

#include <unordered_map>
#include <vector>

#include "molcryst/connectivity/Order3AtomTopologyIndex.h"
#include "molcryst/molecule/Atom.h"
#include "molcryst/molecule/Molecule.h"

namespace molcryst {
namespace app {

HConnectivityInfo connectivity_info_of(const CrystalMaker& maker) {
    HConnectivityInfo info(new ConnectivityInfo());
    const Order3AtomTopologyIndex order3;
    std::unordered_map<int, int> item_of_index;  // topology index to item position
    for (int m = 0; m < maker.nmolecules(); ++m) {
        const std::vector<HConnectivity> parts = Connectivity(*maker.molecule(m)).split();
        for (const HConnectivity& part : parts) {
            if (part->natoms() == 0) continue;
            const int index = order3.index(part);
            auto found = item_of_index.find(index);
            if (found == item_of_index.end()) {
                item_of_index.emplace(index, info->nconnectivities());
                info->add_connectivity(part, 1.0);
            } else {
                info->set_multiplier(found->second, info->multiplier(found->second) + 1.0);
            }
        }
    }
    info->simplify_multipliers();
    return info;
}

CrystalTopologyIndex crystal_topology_index_of(const CrystalMaker& maker) {
    return CrystalTopologyIndex(connectivity_info_of(maker), HTopologyIndex(new Order3AtomTopologyIndex()));
}

std::map<std::string, int> element_composition(const CrystalMaker& maker) {
    std::map<std::string, int> composition;
    for (int m = 0; m < maker.nmolecules(); ++m) {
        const HMolecule molecule = maker.molecule(m);
        for (int i = 0; i < molecule->natoms(); ++i) ++composition[molecule->atom(i)->element().symbol()];
    }
    return composition;
}

std::string composition_text(const std::map<std::string, int>& composition) {
    std::string text;
    auto put = [&text](const std::string& symbol, int count) {
        text += symbol;
        if (count != 1) text += std::to_string(count);
    };
    const bool carbon = composition.count("C") != 0;
    if (carbon) {
        put("C", composition.at("C"));
        if (composition.count("H") != 0) put("H", composition.at("H"));
    }
    for (const auto& element : composition) {
        if (carbon && (element.first == "C" || element.first == "H")) continue;
        put(element.first, element.second);
    }
    return text;
}

}  // namespace app
}  // namespace molcryst
