#pragma once

#include "base/Environment.h"
#include "platform/HomeFolder.h"

namespace morvo::HomeFolders {

/// `MORVO_HOME` when it is set and not empty, made absolute; else the home of the user database.
/// `HOME` is never looked at.
[[nodiscard]] HomeFolder find(const Environment &environment);

} // namespace morvo::HomeFolders
