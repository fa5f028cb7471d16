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

CrystalChemicalFormula crystal_formula_of(const CrystalMaker& maker) {
    CrystalChemicalFormula formula(connectivity_info_of(maker), true);
    formula.sort_chemical_formulae();
    return formula;
}

}  // namespace app
}  // namespace molcryst
