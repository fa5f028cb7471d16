// DatabaseEntryIdentifier: the key of an entry in an entry database.
#ifndef MOLCRYST_SUPPORT_DATABASEENTRYIDENTIFIER_H
#define MOLCRYST_SUPPORT_DATABASEENTRYIDENTIFIER_H

#include <ostream>
#include <string>

#include "molcryst/support/Archive.h"

namespace molcryst {

/// A short text naming a database entry, archived as a string. Any text is
/// an identifier: a database looks it up as it stands. Only where an
/// identifier becomes a line of an index file or part of an entry file name
/// does the database hold it to `maximum_length_` and refuse line breaks,
/// slashes and NUL characters.
class DatabaseEntryIdentifier {
public:
    /// Longest identifier a database stores: room for any practical entry
    /// name while keeping entry file names well within what file systems allow.
    static const int maximum_length_;

    DatabaseEntryIdentifier() = default;
    DatabaseEntryIdentifier(const std::string& text);  // NOLINT: identifiers convert from text

    const std::string& text() const { return text_; }
    bool empty() const { return text_.empty(); }

    void write(Archive& ar) const;
    /// On failure the identifier is unchanged.
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
