// Test helpers: the raw bytes of an archive, and an archive made of given bytes.
#ifndef MOLCRYST_TESTS_COMMON_ARCHIVEBYTES_H
#define MOLCRYST_TESTS_COMMON_ARCHIVEBYTES_H

#include <cstdio>
#include <vector>

#include "molcryst/support/Archive.h"

namespace molcryst {
namespace testing {

/// Everything written to `ar`; leaves it rewound for reading.
inline std::vector<unsigned char> bytes_of(Archive& ar) {
    ar.rewind();
    std::vector<unsigned char> out;
    int c;
    while ((c = std::fgetc(ar.file())) != EOF) out.push_back(static_cast<unsigned char>(c));
    ar.rewind();
    return out;
}

/// A temporary archive holding `bytes`, rewound for reading.
inline Archive archive_of(const std::vector<unsigned char>& bytes) {
    Archive ar = Archive::temporary();
    if (!bytes.empty()) ar.write_bytes(bytes.data(), bytes.size());
    ar.rewind();
    return ar;
}

}  // namespace testing
}  // namespace molcryst

#endif
