#include "molcryst/connectivity/ArchiveDatabase.h"

#include <cstdio>

namespace molcryst {

database_error::~database_error() = default;

namespace detail {

std::string identifier_fault(const std::string& text) {
    if (text.empty()) return "it is empty";
    if (text.size() > static_cast<std::size_t>(DatabaseEntryIdentifier::maximum_length_))
        return "it is longer than " + std::to_string(DatabaseEntryIdentifier::maximum_length_) + " characters";
    for (char c : text) {
        const unsigned char u = static_cast<unsigned char>(c);
        if (c == '/' || c == '\\') return "it holds a path separator";
        if (u < 0x20 || u == 0x7f) return "it holds a control character";
    }
    if (text.find("..") != std::string::npos) return "it holds \"..\"";
    return std::string();
}

std::string printable_identifier(const std::string& text) {
    static const char hex[] = "0123456789abcdef";
    std::string out;
    for (char c : text) {
        const unsigned char u = static_cast<unsigned char>(c);
        if (u < 0x20 || u == 0x7f || c == '"' || c == '\\') {
            out += "\\x";
            out += hex[u >> 4];
            out += hex[u & 15];
        } else {
            out += c;
        }
    }
    return out;
}

void replace_file(const std::string& file, void (*write)(const std::string&, const void*), const void* context) {
    // Beside the file, so that the rename stays within one file system and is atomic.
    const std::string temporary = file + ".tmp";
    try {
        write(temporary, context);
    } catch (const database_error&) {
        std::remove(temporary.c_str());
        throw;
    } catch (const std::exception& e) {
        std::remove(temporary.c_str());
        throw database_error("ArchiveDatabase: cannot write " + file + ": " + e.what());
    }
    if (std::rename(temporary.c_str(), file.c_str()) != 0) {
        std::remove(temporary.c_str());
        throw database_error("ArchiveDatabase: cannot rename " + temporary + " to " + file);
    }
}

}  // namespace detail

template class DatabaseEntry<CrystalMaker>;
template class DatabaseEntry<ConnectivityInfo>;
template class Database<DatabaseEntry<CrystalMaker> >;
template class Database<DatabaseEntry<ConnectivityInfo> >;
template class ArchiveDatabase<DatabaseEntry<CrystalMaker> >;
template class ArchiveDatabase<DatabaseEntry<ConnectivityInfo> >;

}  // namespace molcryst
