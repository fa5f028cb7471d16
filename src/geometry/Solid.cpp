#include "molcryst/geometry/Solid.h"

namespace molcryst {

Solid::~Solid() = default;

}  // namespace molcryst
