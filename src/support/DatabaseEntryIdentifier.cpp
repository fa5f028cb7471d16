#include "molcryst/support/DatabaseEntryIdentifier.h"

#include <stdexcept>

namespace molcryst {

const int DatabaseEntryIdentifier::maximum_length_ = 64;

namespace {
// Empty when `text` is a valid identifier, else what is wrong with it.
std::string identifier_fault(const std::string& text) {
    if (text.size() > static_cast<std::size_t>(DatabaseEntryIdentifier::maximum_length_))
        return "is longer than " + std::to_string(DatabaseEntryIdentifier::maximum_length_) + " characters";
    if (text.find_first_of(std::string("\n\r/\0", 4)) != std::string::npos)
        return "contains a line break, a slash or a NUL character";
    return std::string();
}
}  // namespace

DatabaseEntryIdentifier::DatabaseEntryIdentifier(const std::string& text) : text_(text) {
    std::string fault = identifier_fault(text_);
    if (!fault.empty())
        throw std::invalid_argument("DatabaseEntryIdentifier::DatabaseEntryIdentifier(const std::string&) identifier " +
                                    fault);
}

void DatabaseEntryIdentifier::write(Archive& ar) const { ar << text_; }

void DatabaseEntryIdentifier::read(Archive& ar) {
    Archive::Field field(ar, "DatabaseEntryIdentifier::read text");
    std::string text;
    ar >> text;
    std::string fault = identifier_fault(text);
    if (!fault.empty()) ar.read_error("identifier " + fault);
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
