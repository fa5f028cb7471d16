#include "molcryst/support/CaseInsensitiveStringLess.h"

#include <cctype>

namespace molcryst {

bool CaseInsensitiveStringLess::operator()(const std::string& a, const std::string& b) const {
    std::string::size_type n = a.size() < b.size() ? a.size() : b.size();
    for (std::string::size_type i = 0; i < n; ++i) {
        int ca = std::toupper(static_cast<unsigned char>(a[i]));
        int cb = std::toupper(static_cast<unsigned char>(b[i]));
        if (ca != cb) return ca < cb;
    }
    return a.size() < b.size();
}

}  // namespace molcryst
