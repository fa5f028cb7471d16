// libFuzzer target: any bytes as an archive of connectivity records with
// multipliers, and as a crystal topology index. A std::runtime_error is a
// clean refusal; what was read must write again and read back equal.
// Anything else (a crash, a sanitizer report, a hang, a runaway allocation)
// is a bug.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <vector>

#include "molcryst/connectivity/ConnectivityInfo.h"
#include "molcryst/connectivity/CrystalTopologyIndex.h"
#include "molcryst/connectivity/Order3AtomTopologyIndex.h"
#include "molcryst/support/Archive.h"

using namespace molcryst;

namespace {

Archive archive_of(const uint8_t* data, size_t size) {
    Archive ar = Archive::temporary();
    if (size > 0) ar.write_bytes(data, size);
    ar.rewind();
    return ar;
}

std::vector<unsigned char> bytes_of(Archive& ar) {
    ar.rewind();
    std::vector<unsigned char> out;
    int c;
    while ((c = std::fgetc(ar.file())) != EOF) out.push_back(static_cast<unsigned char>(c));
    ar.rewind();
    return out;
}

// Written, read back and written again, byte for byte the same (multipliers
// that are not numbers never compare equal, their bytes do).
template <class T>
void round_trip(const T& value) {
    Archive out = Archive::temporary();
    value.write(out);
    const std::vector<unsigned char> first = bytes_of(out);
    T back;
    back.read(out);
    Archive again = Archive::temporary();
    back.write(again);
    if (bytes_of(again) != first) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    {
        Archive ar = archive_of(data, size);
        HConnectivityInfo info(new ConnectivityInfo());
        try {
            info->read(ar);
        } catch (const std::runtime_error&) {
            return 0;
        }
        round_trip(*info);
        // What was read can be indexed, split and simplified.
        CrystalTopologyIndex index(info, HTopologyIndex(new Order3AtomTopologyIndex()));
        index.index_sum(true);
        info->simplify_multipliers();
        info->split();
    }
    Archive ar = archive_of(data, size);
    CrystalTopologyIndex index;
    try {
        index.read(ar);
        round_trip(index);
    } catch (const std::runtime_error&) {
    }
    return 0;
}
