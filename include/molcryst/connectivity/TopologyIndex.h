// TopologyIndex: a single integer that identifies a molecular graph well
// enough to compare structures quickly.
#ifndef MOLCRYST_CONNECTIVITY_TOPOLOGYINDEX_H
#define MOLCRYST_CONNECTIVITY_TOPOLOGYINDEX_H

#include "molcryst/connectivity/Connectivity.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// An integer key of a connectivity record. Equal graphs give equal keys
/// whatever their atom order; different graphs usually differ.
class TopologyIndex {
public:
    virtual ~TopologyIndex() = default;
    virtual int index(const HConnectivity& connectivity) const = 0;

protected:
    TopologyIndex() = default;
    TopologyIndex(const TopologyIndex&) = default;
    TopologyIndex& operator=(const TopologyIndex&) = default;
};
typedef THandle<TopologyIndex> HTopologyIndex;

}  // namespace molcryst

#endif
