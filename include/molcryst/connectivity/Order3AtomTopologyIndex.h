// Order3AtomTopologyIndex: the topology index built from element primes and
// third-order extended connectivities.
#ifndef MOLCRYST_CONNECTIVITY_ORDER3ATOMTOPOLOGYINDEX_H
#define MOLCRYST_CONNECTIVITY_ORDER3ATOMTOPOLOGYINDEX_H

#include "molcryst/connectivity/TopologyIndex.h"
#include "molcryst/elements/Element.h"

namespace molcryst {

/// The sum over bonds of key(atom1) * key(atom2) * ec(atom1) * ec(atom2) in
/// wrapping 32-bit arithmetic, where key is the element's prime and ec the
/// third-order extended connectivity. A lone atom gives its key. Bond types
/// and charges do not enter: ethene and ethane drawn with the same atoms are
/// one index.
class Order3AtomTopologyIndex : public TopologyIndex {
public:
    /// A distinct odd prime for each element code, 0 for "Unknown"; deuterium
    /// shares the key of hydrogen.
    static const unsigned int element_prime_keys[Element::ncodes_];

    /// std::invalid_argument for a null handle.
    int index(const HConnectivity& connectivity) const override;
};

}  // namespace molcryst

#endif
