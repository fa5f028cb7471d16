// Test helpers: the raw bytes of an archive, an archive made of given bytes,
// and archive words spelled out as bytes.
#ifndef MOLCRYST_TESTS_COMMON_ARCHIVEBYTES_H
#define MOLCRYST_TESTS_COMMON_ARCHIVEBYTES_H

#include <cstddef>
#include <cstdio>
#include <cstring>
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

/// The bytes an archive holds for the ints `values`, little-endian.
inline std::vector<unsigned char> words(const std::vector<int>& values) {
    std::vector<unsigned char> out;
    for (int v : values)
        for (int shift = 0; shift < 32; shift += 8)
            out.push_back(static_cast<unsigned char>(static_cast<unsigned>(v) >> shift));
    return out;
}

/// The bytes an archive holds for the doubles `values`, IEEE 754 little-endian.
inline std::vector<unsigned char> doubles(const std::vector<double>& values) {
    std::vector<unsigned char> out;
    for (double v : values) {
        unsigned long long bits = 0;
        std::memcpy(&bits, &v, sizeof bits);
        for (int shift = 0; shift < 64; shift += 8) out.push_back(static_cast<unsigned char>(bits >> shift));
    }
    return out;
}

/// `a` followed by `b`.
inline std::vector<unsigned char> operator+(std::vector<unsigned char> a, const std::vector<unsigned char>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

/// The first `n` bytes of `bytes`.
inline std::vector<unsigned char> cut(const std::vector<unsigned char>& bytes, std::size_t n) {
    return std::vector<unsigned char>(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(n));
}

/// What `x.write` puts in an archive.
template <class T>
std::vector<unsigned char> written(const T& x) {
    Archive ar = Archive::temporary();
    x.write(ar);
    return bytes_of(ar);
}

}  // namespace testing
}  // namespace molcryst

#endif
