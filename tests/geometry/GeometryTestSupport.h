// Helpers shared by the geometry tests: archive round trips, the message of a
// refused read, and the archive image of a list of values.
#ifndef MOLCRYST_TESTS_GEOMETRY_GEOMETRYTESTSUPPORT_H
#define MOLCRYST_TESTS_GEOMETRY_GEOMETRYTESTSUPPORT_H

#include <stdexcept>
#include <string>
#include <vector>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"

namespace molcryst_test {

using molcryst::testing::archive_of;
using molcryst::testing::bytes_of;

/// Writes `value` by its write(), reads it back into a default object.
template <class T>
T round_trip(const T& value) {
    molcryst::Archive ar = archive_of(molcryst::testing::written(value));
    T copy;
    copy.read(ar);
    return copy;
}

/// The message of the std::runtime_error that reading `bytes` into a T throws.
template <class T>
std::string read_error(const std::vector<unsigned char>& bytes) {
    molcryst::Archive ar = archive_of(bytes);
    T value;
    return molcryst::testing::error_text<std::runtime_error>([&] { value.read(ar); });
}

/// What the archive holds for `values` written one after another.
template <class... T>
std::vector<unsigned char> image(const T&... values) {
    molcryst::Archive ar = molcryst::Archive::temporary();
    ((ar << values), ...);
    return bytes_of(ar);
}

}  // namespace molcryst_test

#endif
