// CifError: what is wrong with a CIF file, and where.
#ifndef MOLCRYST_IO_CIFERROR_H
#define MOLCRYST_IO_CIFERROR_H

#include <stdexcept>
#include <string>

namespace molcryst {

/// A fault in a CIF file. Its text is one line, "FILE:LINE: what is wrong",
/// or "FILE: what is wrong" when no line is known.
class CifError : public std::runtime_error {
public:
    CifError(const std::string& source, int line, const std::string& reason);

    const std::string& source() const { return source_; }
    int line() const { return line_; }  // 1-based; 0 when not known
    const std::string& reason() const { return reason_; }

private:
    std::string source_;
    int line_;
    std::string reason_;
};

}  // namespace molcryst

#endif
