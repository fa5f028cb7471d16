#include "molcryst/support/DatabaseEntryIdentifier.h"

namespace molcryst {

const int DatabaseEntryIdentifier::maximum_length_ = 64;

DatabaseEntryIdentifier::DatabaseEntryIdentifier(const std::string& text) : text_(text) {}

void DatabaseEntryIdentifier::write(Archive& ar) const { ar << text_; }

void DatabaseEntryIdentifier::read(Archive& ar) {
    Archive::Field field(ar, "DatabaseEntryIdentifier::read text");
    std::string text;
    ar >> text;
    text_.swap(text);
}

void DatabaseEntryIdentifier::print(std::ostream& out) const { out << text_; }

std::ostream& operator<<(std::ostream& out, const DatabaseEntryIdentifier& id) {
    id.print(out);
    return out;
}

Archive& operator<<(Archive& ar, const DatabaseEntryIdentifier& id) {
    id.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, DatabaseEntryIdentifier& id) {
    id.read(ar);
    return ar;
}

}  // namespace molcryst
