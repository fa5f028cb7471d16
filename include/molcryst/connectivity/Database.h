// Database: the interface of entry databases, which store entries under
// short identifiers and find them by identifier or position.
#ifndef MOLCRYST_CONNECTIVITY_DATABASE_H
#define MOLCRYST_CONNECTIVITY_DATABASE_H

#include <sstream>
#include <string>

#include "molcryst/connectivity/database_error.h"
#include "molcryst/support/CaseInsensitiveStringLess.h"
#include "molcryst/support/DatabaseEntryIdentifier.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// A database of entries `E` (DatabaseEntry of some data). The base refuses
/// every change; implementations that can write override them.
template <class E>
class Database {
public:
    /// How well an identifier matched in nearest_entry.
    enum IdentifierMatch {
        NoMatch = 0,    // no entry has it: the nearest one is given
        CaseMatch = 1,  // an entry has it but for letter case
        ExactMatch = 2  // an entry has it byte for byte
    };

    virtual ~Database() = default;

    /// The identifier at position `i`; database_error outside the entries.
    virtual DatabaseEntryIdentifier identifier(int i) const = 0;
    virtual bool identifier_exists(const DatabaseEntryIdentifier& id) const = 0;

    /// The position of `target` exactly (match 2), else of the first entry
    /// equal to it but for case (match 1), else of the entry that follows it
    /// most closely in case-insensitive order, or, with none after it, of
    /// the one that comes last before it (match 0). -1 for an empty database.
    virtual int nearest_entry(const DatabaseEntryIdentifier& target, IdentifierMatch& match) const {
        match = NoMatch;
        int after = -1, before = -1, same = -1;
        const CaseInsensitiveStringLess less;
        const std::string& t = target.text();
        const int n = size();
        // The identifiers at `after` and `before`, kept rather than asked again.
        std::string after_text, before_text;
        for (int i = 0; i < n; ++i) {
            const DatabaseEntryIdentifier id = identifier(i);
            const std::string& s = id.text();
            if (less(t, s)) {
                if (after == -1 || less(s, after_text)) {
                    after = i;
                    after_text = s;
                }
            } else if (less(s, t)) {
                if (before == -1 || less(before_text, s)) {
                    before = i;
                    before_text = s;
                }
            } else {
                if (s == t) {
                    match = ExactMatch;
                    return i;
                }
                if (same == -1) same = i;
            }
        }
        if (same != -1) {
            match = CaseMatch;
            return same;
        }
        return after != -1 ? after : before;
    }

    /// The position of `id` by exact match; size() when it is not there.
    virtual int index(const DatabaseEntryIdentifier& id) const = 0;
    virtual int size() const = 0;
    /// The entry at position `i`, read anew.
    virtual THandle<E> entry(int i) const = 0;
    /// The entry of `id`; database_error when it is not there.
    virtual THandle<E> entry(const DatabaseEntryIdentifier& id) const = 0;
    virtual bool writable() const { return false; }
    virtual void append(const THandle<E>&) { throw database_error("Database::append: database is not opened for writing"); }
    virtual void replace(const THandle<E>&) {
        throw database_error("Database::replace: database is not opened for writing");
    }
    virtual void remove(const DatabaseEntryIdentifier&) {
        throw database_error("Database::remove: database is not opened for writing");
    }
    /// Puts every change on disk.
    virtual void flush() = 0;
    virtual DatabaseEntryIdentifier normalise_identifier(const DatabaseEntryIdentifier& id) const { return id; }
    virtual int identifier_maximum_length() const { return DatabaseEntryIdentifier::maximum_length_; }

protected:
    Database() = default;
    Database(const Database&) = default;
    Database& operator=(const Database&) = default;

    /// database_error: "<class>::entry( DatabaseEntryIdentifier <id> is not in the database".
    [[noreturn]] void entry_error(const std::string& class_name, const DatabaseEntryIdentifier& id) const {
        std::ostringstream text;
        text << class_name << "::entry( DatabaseEntryIdentifier " << id << " is not in the database";
        throw database_error(text.str());
    }
    /// database_error: "<class>::entry( int ) <i> is out of range".
    [[noreturn]] void entry_error(const std::string& class_name, int i) const {
        std::ostringstream text;
        text << class_name << "::entry( int ) " << i << " is out of range";
        throw database_error(text.str());
    }
};

}  // namespace molcryst

#endif
