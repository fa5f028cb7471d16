// Helpers shared by the geometry tests: archive round trips and byte images.
#ifndef MOLCRYST_TESTS_GEOMETRY_GEOMETRYTESTSUPPORT_H
#define MOLCRYST_TESTS_GEOMETRY_GEOMETRYTESTSUPPORT_H

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "molcryst/support/Archive.h"

namespace molcryst_test {

/// The bytes written so far, the archive left rewound.
inline std::vector<unsigned char> bytes_of(molcryst::Archive& ar) {
    ar.rewind();
    std::vector<unsigned char> out;
    int c;
    while ((c = std::fgetc(ar.file())) != EOF) out.push_back(static_cast<unsigned char>(c));
    ar.rewind();
    return out;
}

/// A temporary archive holding these bytes, rewound.
inline molcryst::Archive archive_of(const std::vector<unsigned char>& bytes) {
    molcryst::Archive ar = molcryst::Archive::temporary();
    if (!bytes.empty()) ar.write_bytes(bytes.data(), bytes.size());
    ar.rewind();
    return ar;
}

/// Writes `value` by its write(), reads it back into a default object.
template <class T>
T round_trip(const T& value) {
    molcryst::Archive ar = molcryst::Archive::temporary();
    value.write(ar);
    ar.rewind();
    T copy;
    copy.read(ar);
    return copy;
}

/// The message of the std::runtime_error that reading `bytes` into a T throws.
template <class T>
std::string read_error(const std::vector<unsigned char>& bytes) {
    molcryst::Archive ar = archive_of(bytes);
    T value;
    try {
        value.read(ar);
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "no exception";
}

/// Little-endian bytes of a primitive.
template <class T>
void append(std::vector<unsigned char>& bytes, T value) {
    molcryst::Archive ar = molcryst::Archive::temporary();
    ar << value;
    std::vector<unsigned char> b = bytes_of(ar);
    bytes.insert(bytes.end(), b.begin(), b.end());
}

}  // namespace molcryst_test

#endif
