// libFuzzer target: any bytes as a saved crystal view, read as a memento and
// then as a NewCrystal (plain archive, then versioned, so that both layouts
// are reached). A std::runtime_error is a clean refusal; a memento read must
// restore its picture and contacts and write again. Anything else (a crash,
// a sanitizer report, a hang, a runaway allocation) is a bug.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <stdexcept>

#include "molcryst/crystal/NewCrystal.h"
#include "molcryst/crystal/NewCrystalMemento.h"
#include "molcryst/support/VersionedArchive.h"

using namespace molcryst;

namespace {

template <class A>
void fill(A& ar, const uint8_t* data, size_t size) {
    if (size > 0) ar.write_bytes(data, size);
    ar.rewind();
}

void restore(const NewCrystalMemento& m) {
    const HCrystal snapshot = m.crystal_snapshot();
    const Hvector_HMolecularContact contacts = m.contacts();
    Archive out = Archive::temporary();
    m.write(out);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    {
        Archive ar = Archive::temporary();
        fill(ar, data, size);
        NewCrystalMemento m;
        try {
            m.read(ar);
            restore(m);
        } catch (const std::runtime_error&) {
        }
    }
    std::FILE* file = std::tmpfile();
    if (file == nullptr) return 0;
    {
        VersionedArchive ar(file, true);
        fill(ar, data, size);
        NewCrystal crystal;
        try {
            crystal.read(ar);
            crystal.crystal_snapshot();
            crystal.contacts();
        } catch (const std::runtime_error&) {
        }
    }
    return 0;
}
