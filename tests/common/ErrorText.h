// Test helper: the message of the exception an operation throws.
#ifndef MOLCRYST_TESTS_COMMON_ERRORTEXT_H
#define MOLCRYST_TESTS_COMMON_ERRORTEXT_H

#include <string>

namespace molcryst {
namespace testing {

/// The message of the exception of type `E` that `f()` throws; "no
/// exception" when it returns normally. Other exception types pass through.
template <class E, class F>
std::string error_text(F f) {
    try {
        f();
    } catch (const E& e) {
        return e.what();
    }
    return "no exception";
}

}  // namespace testing
}  // namespace molcryst

#endif
