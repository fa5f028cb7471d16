// database_error: the one exception type of entry databases.
#ifndef MOLCRYST_CONNECTIVITY_DATABASE_ERROR_H
#define MOLCRYST_CONNECTIVITY_DATABASE_ERROR_H

#include <stdexcept>
#include <string>

namespace molcryst {

/// A fault of an entry database: a refused change, a missing or unreadable
/// entry, an identifier that cannot name a file.
class database_error : public std::runtime_error {
public:
    explicit database_error(const std::string& what) : std::runtime_error(what) {}
    ~database_error() override;
};

}  // namespace molcryst

#endif
