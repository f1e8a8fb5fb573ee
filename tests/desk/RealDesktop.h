#pragma once

#include "support/PrivateDesktop.h"

namespace morvo::test::RealDesktop {

/// The desktop on which the program's tests run; set by `main`.
inline PrivateDesktop *desktop = nullptr;

} // namespace morvo::test::RealDesktop
