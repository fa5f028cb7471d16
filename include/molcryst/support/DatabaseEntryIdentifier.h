// DatabaseEntryIdentifier: the key of an entry in an entry database.
#ifndef MOLCRYST_SUPPORT_DATABASEENTRYIDENTIFIER_H
#define MOLCRYST_SUPPORT_DATABASEENTRYIDENTIFIER_H

#include <ostream>
#include <string>

#include "molcryst/support/Archive.h"

namespace molcryst {

/// A short text naming a database entry. It is a line of the database's index
/// file and part of the entry's file name, so it holds at most
/// `maximum_length_` characters and none of line feed, carriage return, NUL
/// or "/"; anything else throws std::invalid_argument. Archived as a string.
class DatabaseEntryIdentifier {
public:
    /// Longest identifier accepted: room for any practical entry name while
    /// keeping entry file names well within what file systems allow.
    static const int maximum_length_;

    DatabaseEntryIdentifier() = default;
    DatabaseEntryIdentifier(const std::string& text);  // NOLINT: identifiers convert from text

    const std::string& text() const { return text_; }
    bool empty() const { return text_.empty(); }

    void write(Archive& ar) const;
    /// Reads and checks an identifier; on failure the identifier is unchanged.
    void read(Archive& ar);
    /// Writes the text alone.
    void print(std::ostream& out) const;

    bool operator==(const DatabaseEntryIdentifier& other) const { return text_ == other.text_; }
    bool operator!=(const DatabaseEntryIdentifier& other) const { return text_ != other.text_; }
    bool operator<(const DatabaseEntryIdentifier& other) const { return text_ < other.text_; }

private:
    std::string text_;
};

std::ostream& operator<<(std::ostream& out, const DatabaseEntryIdentifier& id);
Archive& operator<<(Archive& ar, const DatabaseEntryIdentifier& id);
Archive& operator>>(Archive& ar, DatabaseEntryIdentifier& id);

}  // namespace molcryst

#endif
