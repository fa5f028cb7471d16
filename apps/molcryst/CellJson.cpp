#include "CellJson.h"

namespace molcryst {
namespace app {

nlohmann::json cell_json(const Cell& cell) {
    return {{"a", cell.a()},
            {"b", cell.b()},
            {"c", cell.c()},
            {"alpha", cell.alpha().degrees()},
            {"beta", cell.beta().degrees()},
            {"gamma", cell.gamma().degrees()},
            {"volume", cell.volume()}};
}

nlohmann::json spacegroup_json(const Spacegroup& spacegroup) {
    return {{"name", spacegroup.name()}, {"number", spacegroup.number()}, {"operators", spacegroup.noperators()}};
}

}  // namespace app
}  // namespace molcryst
