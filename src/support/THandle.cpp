#include "molcryst/support/THandle.h"

#include <stdexcept>

namespace molcryst {

void HandleCommon::null_handle_error() {
    throw std::logic_error("HandleCommon::null_handle_error attempt to dereference a null handle");
}

}  // namespace molcryst
