// VersionedArchive: an archive over a named file that carries a format version.
//
// The version is not part of the stream header: a writer puts it out itself as
// the first `int` of the file and a reader, having read that `int`, sets it
// here, so that nested readers can ask which layout they are reading.
#ifndef MOLCRYST_SUPPORT_VERSIONEDARCHIVE_H
#define MOLCRYST_SUPPORT_VERSIONEDARCHIVE_H

#include <string>

#include "molcryst/support/Archive.h"

namespace molcryst {

/// Archive over a named file with a settable format version.
class VersionedArchive : public Archive {
public:
    /// Opens `file_name`; mode 3 creates a file to write (and read back), mode 1 reads one.
    VersionedArchive(const std::string& file_name, unsigned int mode);
    /// Over an open stream, for archives that are not files of their own.
    explicit VersionedArchive(std::FILE* file, bool owns = false);

    void set_version(int version) { version_ = version; }
    int version() const { return version_; }

    /// True when `ar` is a VersionedArchive.
    static bool is_versioned(const Archive& ar);
    /// The version of `ar`; -1 for a plain archive, which readers take as current.
    static int version(const Archive& ar);

private:
    int version_ = 0;
};

}  // namespace molcryst

#endif
