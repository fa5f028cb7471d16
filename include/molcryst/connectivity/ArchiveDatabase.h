// ArchiveDatabase: an entry database kept as a directory of files.
//
// The index "<path>/<name>.adi" lists the identifiers, one to a line, each
// ended by a line feed, with no header; each entry is a versioned archive
// "<path>/<name>_<identifier>.ade": the int format version, then the entry.
//
// Every file is written whole to a temporary file beside it and renamed into
// place, so that a process killed at any moment leaves each file either as it
// was or as it was meant to be: entries listed in the index stay readable, and
// the index never lists an entry whose file was not written. A lost write
// leaves at most a stray temporary file or an entry file the index does not
// list, which the next append of that identifier overwrites.
#ifndef MOLCRYST_CONNECTIVITY_ARCHIVEDATABASE_H
#define MOLCRYST_CONNECTIVITY_ARCHIVEDATABASE_H

#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "molcryst/connectivity/ConnectivityInfo.h"
#include "molcryst/connectivity/Database.h"
#include "molcryst/connectivity/DatabaseEntry.h"
#include "molcryst/crystal/CrystalMaker.h"
#include "molcryst/support/StringFunctions.h"
#include "molcryst/support/VersionedArchive.h"

namespace molcryst {

namespace detail {
/// Why `text` cannot name an entry file, or empty when it can: an empty
/// identifier, one longer than DatabaseEntryIdentifier::maximum_length_, or
/// one with a path separator, "..", a NUL or another control character.
std::string identifier_fault(const std::string& text);
/// `text` with control and other non-printing bytes written as \xNN, for messages.
std::string printable_identifier(const std::string& text);
/// Writes `file` by `write` into "<file>.tmp" and renames that over `file`.
/// If anything fails the temporary file is removed and database_error thrown.
void replace_file(const std::string& file, void (*write)(const std::string&, const void*), const void* context);
}  // namespace detail

/// Entries `E` (DatabaseEntry<D>) in a directory: see the banner above.
template <class E>
class ArchiveDatabase : public Database<E> {
public:
    typedef typename E::data_type data_type;
    typedef typename Database<E>::IdentifierMatch IdentifierMatch;

    static const char* index_file_extension() { return ".adi"; }
    static const char* entry_file_extension() { return ".ade"; }
    static const char* path_separator() { return "/"; }
    /// The format version every entry file is written with.
    static const int current_version = 6;

    /// The database `name` in directory `path`, opened in `mode`: bit 2
    /// writable (1 reads only). A missing index is an empty database.
    ArchiveDatabase(const std::string& path, const std::string& name, unsigned int mode)
        : path_(path), name_(name), mode_(mode) {
        read_index_file();
    }

    DatabaseEntryIdentifier identifier(int i) const override {
        if (i < 0 || i >= size()) this->entry_error("ArchiveDatabase", i);
        return identifiers_[static_cast<std::size_t>(i)];
    }
    bool identifier_exists(const DatabaseEntryIdentifier& id) const override { return index(id) != size(); }
    /// Found through a hash of the identifiers, not a walk of the index.
    int index(const DatabaseEntryIdentifier& id) const override {
        typename std::unordered_map<std::string, int>::const_iterator found = positions_.find(id.text());
        return found == positions_.end() ? size() : found->second;
    }
    int size() const override { return static_cast<int>(identifiers_.size()); }

    /// Reads the entry file anew at each call. A file that is missing,
    /// damaged or holds another identifier gives database_error naming the entry.
    THandle<E> entry(int i) const override {
        const DatabaseEntryIdentifier id = identifier(i);
        const std::string file = absolute_entry_file_name(id);
        THandle<E> e(new E());
        read_entry(file, *e);
        if (e->identifier() != id) {
            std::ostringstream text;
            text << "ArchiveDatabase::entry: the file " << file << " of entry " << detail::printable_identifier(id.text())
                 << " holds entry " << detail::printable_identifier(e->identifier().text());
            throw database_error(text.str());
        }
        return e;
    }
    THandle<E> entry(const DatabaseEntryIdentifier& id) const override {
        const int i = index(id);
        if (i == size()) this->entry_error("ArchiveDatabase", id);
        return entry(i);
    }

    bool writable() const override { return (mode_ & 2u) != 0; }

    /// Writes the entry file, then the index with the new identifier.
    void append(const THandle<E>& entry) override {
        if (!writable()) throw database_error("ArchiveDatabase::append: database is not opened for writing");
        check_entry(entry, "append");
        const DatabaseEntryIdentifier& id = entry->identifier();
        if (identifier_exists(id)) {
            std::ostringstream text;
            text << "ArchiveDatabase::append: database already contains an entry with this identifier: " << id;
            throw database_error(text.str());
        }
        write_entry(absolute_entry_file_name(id), *entry);
        identifiers_.push_back(id);
        positions_.emplace(id.text(), size() - 1);
        try {
            write_index_file();
        } catch (...) {
            identifiers_.pop_back();
            positions_.erase(id.text());
            throw;
        }
    }

    /// Appends many entries and writes the index once, so that adding n
    /// entries costs n entry files and one index rather than n indices.
    /// Everything is checked first, as append checks one entry, and a
    /// repeated identifier within `entries` is refused too: then nothing is
    /// written. If writing fails part way, the index is as it was.
    void append_all(const std::vector<THandle<E> >& entries) {
        if (!writable()) throw database_error("ArchiveDatabase::append: database is not opened for writing");
        std::unordered_set<std::string> batch;
        for (const THandle<E>& entry : entries) {
            check_entry(entry, "append");
            const DatabaseEntryIdentifier& id = entry->identifier();
            if (identifier_exists(id) || !batch.insert(id.text()).second) {
                std::ostringstream text;
                text << "ArchiveDatabase::append: database already contains an entry with this identifier: " << id;
                throw database_error(text.str());
            }
        }
        const std::size_t old_size = identifiers_.size();
        try {
            for (const THandle<E>& entry : entries) {
                write_entry(absolute_entry_file_name(entry->identifier()), *entry);
                identifiers_.push_back(entry->identifier());
                positions_.emplace(entry->identifier().text(), size() - 1);
            }
            write_index_file();
        } catch (...) {
            for (std::size_t i = old_size; i < identifiers_.size(); ++i) positions_.erase(identifiers_[i].text());
            identifiers_.resize(old_size);
            throw;
        }
    }

    /// Writes the entry over the file of an entry already there; the index is not touched.
    void replace(const THandle<E>& entry) override {
        if (!writable()) throw database_error("ArchiveDatabase::replace: database is not opened for writing");
        check_entry(entry, "replace");
        const DatabaseEntryIdentifier& id = entry->identifier();
        if (!identifier_exists(id)) {
            std::ostringstream text;
            text << "ArchiveDatabase::replace: database does not contain an entry with this identifier: " << id;
            throw database_error(text.str());
        }
        write_entry(absolute_entry_file_name(id), *entry);
    }

    /// Takes the identifier out of the index and deletes the entry file with
    /// the stdio remove, whose result is ignored. The index goes first, so
    /// that a process killed in between never leaves it listing a deleted file.
    void remove(const DatabaseEntryIdentifier& id) override {
        if (!writable()) throw database_error("ArchiveDatabase::remove: database is not opened for writing");
        const int i = index(id);
        if (i == size()) {
            std::ostringstream text;
            text << "ArchiveDatabase::remove: database does not contain an entry with this identifier: " << id;
            throw database_error(text.str());
        }
        const std::string file = absolute_entry_file_name(id);
        std::vector<DatabaseEntryIdentifier> kept(identifiers_);
        kept.erase(kept.begin() + i);
        identifiers_.swap(kept);
        try {
            write_index_file();
        } catch (...) {
            identifiers_.swap(kept);
            throw;
        }
        rebuild_positions();
        std::remove(file.c_str());
    }

    /// Nothing to do: every change is on disk when its call returns.
    void flush() override {}

    std::string absolute_database_name() const { return index_file_path(path_, name_); }
    static std::string index_file_path(const std::string& path, const std::string& name) {
        return path + path_separator() + name + index_file_extension();
    }
    /// "<path>/<name>_<identifier>.ade"; database_error for an identifier
    /// that cannot name a file in the directory.
    std::string absolute_entry_file_name(const DatabaseEntryIdentifier& id) const {
        check_identifier(id, "absolute_entry_file_name");
        return path_ + path_separator() + name_ + "_" + id.text() + entry_file_extension();
    }

    /// Reads the identifiers, one per line ended by a line feed; a last line
    /// without one is dropped. A missing index gives an empty database.
    void read_index_file() {
        std::vector<DatabaseEntryIdentifier> identifiers;
        std::ifstream in(absolute_database_name().c_str(), std::ios::in | std::ios::binary);
        std::string line;
        while (in.good() && !in.eof()) {
            tarn::getline(in, line);
            if (in.good() && !in.eof()) identifiers.push_back(DatabaseEntryIdentifier(line));
        }
        identifiers_.swap(identifiers);
        rebuild_positions();
    }
    /// Writes every identifier with a line feed, through a temporary file.
    void write_index_file() const {
        detail::replace_file(
            absolute_database_name(),
            [](const std::string& file, const void* context) {
                const std::vector<DatabaseEntryIdentifier>& ids =
                    *static_cast<const std::vector<DatabaseEntryIdentifier>*>(context);
                std::ofstream out(file.c_str(), std::ios::out | std::ios::binary | std::ios::trunc);
                for (const DatabaseEntryIdentifier& id : ids) out << id << '\n';
                out.close();
                if (!out) throw database_error("ArchiveDatabase::write_index_file: cannot write " + file);
            },
            &identifiers_);
    }

    /// Reads `entry` from an entry file: the version, set on the archive
    /// before the entry is read. database_error naming the file for a file
    /// that is missing or damaged.
    void read_entry(const std::string& file, E& entry) const {
        try {
            VersionedArchive ar(file, 1);
            int version = 0;
            {
                Archive::Field field(ar, "ArchiveDatabase::read_entry version");
                ar >> version;
                if (version < 1 || version > current_version)
                    ar.read_error("format version " + std::to_string(version) + " is not 1 to " +
                                  std::to_string(current_version));
            }
            ar.set_version(version);
            entry.read(ar);
        } catch (const database_error&) {
            throw;
        } catch (const std::exception& e) {
            throw database_error("ArchiveDatabase::read_entry: cannot read entry file " + file + ": " + e.what());
        }
    }
    /// Writes version 6 and `entry` to a temporary file renamed over `file`.
    void write_entry(const std::string& file, const E& entry) const {
        detail::replace_file(
            file,
            [](const std::string& temporary, const void* context) {
                VersionedArchive ar(temporary, 3);
                ar << static_cast<int>(current_version);
                static_cast<const E*>(context)->write(ar);
                ar.flush();
            },
            &entry);
    }

private:
    void check_entry(const THandle<E>& entry, const char* operation) const {
        if (entry.unhand() == nullptr)
            throw std::invalid_argument(std::string("ArchiveDatabase::") + operation + ": entry is a null pointer");
        check_identifier(entry->identifier(), operation);
    }
    static void check_identifier(const DatabaseEntryIdentifier& id, const char* operation) {
        const std::string fault = detail::identifier_fault(id.text());
        if (!fault.empty())
            throw database_error(std::string("ArchiveDatabase::") + operation + ": illegal identifier \"" +
                                 detail::printable_identifier(id.text()) + "\": " + fault);
    }
    void rebuild_positions() {
        positions_.clear();
        positions_.reserve(identifiers_.size());
        // The first of repeated lines wins, as a walk of the index would find it.
        for (std::size_t i = 0; i < identifiers_.size(); ++i) positions_.emplace(identifiers_[i].text(), static_cast<int>(i));
    }

    std::string path_;                                 // the directory
    std::string name_;                                 // the database name
    std::vector<DatabaseEntryIdentifier> identifiers_;  // in index file order
    unsigned int mode_;                                // bit 2: writable
    std::unordered_map<std::string, int> positions_;   // identifier text to position
};

template <class E>
const int ArchiveDatabase<E>::current_version;

extern template class DatabaseEntry<CrystalMaker>;
extern template class DatabaseEntry<ConnectivityInfo>;
extern template class Database<DatabaseEntry<CrystalMaker> >;
extern template class Database<DatabaseEntry<ConnectivityInfo> >;
extern template class ArchiveDatabase<DatabaseEntry<CrystalMaker> >;
extern template class ArchiveDatabase<DatabaseEntry<ConnectivityInfo> >;

}  // namespace molcryst

#endif
