// CaseInsensitiveStringLess: ordering of strings that ignores letter case.
#ifndef MOLCRYST_SUPPORT_CASEINSENSITIVESTRINGLESS_H
#define MOLCRYST_SUPPORT_CASEINSENSITIVESTRINGLESS_H

#include <string>

namespace molcryst {

/// Lexicographic order comparing upper-cased ASCII characters; "abc" and
/// "ABC" are equivalent, and "ab" sorts before "ABC".
struct CaseInsensitiveStringLess {
    bool operator()(const std::string& a, const std::string& b) const;
};

}  // namespace molcryst

#endif
