// Test helpers: the print form of a value, and what the log says while code runs.
#ifndef MOLCRYST_TESTS_COMMON_TEXT_H
#define MOLCRYST_TESTS_COMMON_TEXT_H

#include <sstream>
#include <string>

#include "molcryst/support/TARNLog.h"

namespace molcryst {
namespace testing {

/// What `out << x` writes.
template <class T>
std::string printed(const T& x) {
    std::ostringstream out;
    out << x;
    return out.str();
}

/// The log written at verbosity `level` while `f()` runs.
template <class F>
std::string log_of(int level, F f) {
    std::ostringstream log;
    const int saved = TARNLog::level_;
    TARNLog::set_stream(&log);
    TARNLog::level_ = level;
    struct Restore {
        int level;
        ~Restore() {
            TARNLog::level_ = level;
            TARNLog::set_stream(nullptr);
        }
    } restore{saved};
    f();
    return log.str();
}

}  // namespace testing
}  // namespace molcryst

#endif
