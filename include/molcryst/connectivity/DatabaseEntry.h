// DatabaseEntry: an identifier paired with the data stored under it.
#ifndef MOLCRYST_CONNECTIVITY_DATABASEENTRY_H
#define MOLCRYST_CONNECTIVITY_DATABASEENTRY_H

#include <sstream>
#include <stdexcept>

#include "molcryst/support/Archive.h"
#include "molcryst/support/DatabaseEntryIdentifier.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// What an entry database stores: `D` (a CrystalMaker, a ConnectivityInfo)
/// under an identifier.
template <class D>
class DatabaseEntry {
public:
    typedef D data_type;

    /// An empty identifier and null data, to be read.
    DatabaseEntry() = default;
    /// A null `data` throws std::runtime_error.
    DatabaseEntry(const DatabaseEntryIdentifier& identifier, const THandle<D>& data)
        : identifier_(identifier), data_(data) {
        if (data_.unhand() == nullptr) {
            std::ostringstream text;
            text << "Illegal null data in entry " << identifier << " (DatabaseEntry::DatabaseEntry)";
            throw std::runtime_error(text.str());
        }
    }

    const DatabaseEntryIdentifier& identifier() const { return identifier_; }
    const THandle<D>& data() const { return data_; }

    /// The identifier, then the data by its own write.
    void write(Archive& ar) const {
        identifier_.write(ar);
        ar << data_;
    }
    /// The identifier, then a new `D` read in place. On failure the entry is
    /// as it was.
    void read(Archive& ar) {
        DatabaseEntryIdentifier identifier;
        identifier.read(ar);
        THandle<D> data;
        ar >> data;
        identifier_ = identifier;
        data_ = data;
    }

private:
    DatabaseEntryIdentifier identifier_;
    THandle<D> data_;
};

template <class D>
Archive& operator<<(Archive& ar, const DatabaseEntry<D>& entry) {
    entry.write(ar);
    return ar;
}

template <class D>
Archive& operator>>(Archive& ar, DatabaseEntry<D>& entry) {
    entry.read(ar);
    return ar;
}

}  // namespace molcryst

#endif
