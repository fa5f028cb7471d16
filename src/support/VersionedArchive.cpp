#include "molcryst/support/VersionedArchive.h"

namespace molcryst {

VersionedArchive::VersionedArchive(const std::string& file_name, unsigned int mode) : Archive(file_name, mode) {}

VersionedArchive::VersionedArchive(std::FILE* file, bool owns) : Archive(file, owns) {}

bool VersionedArchive::is_versioned(const Archive& ar) { return dynamic_cast<const VersionedArchive*>(&ar) != nullptr; }

int VersionedArchive::version(const Archive& ar) {
    const VersionedArchive* v = dynamic_cast<const VersionedArchive*>(&ar);
    return v == nullptr ? -1 : v->version_;
}

}  // namespace molcryst
