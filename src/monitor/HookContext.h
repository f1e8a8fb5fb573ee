#pragma once

#include "base/Environment.h"
#include "base/FileLayer.h"
#include "platform/HomeFolder.h"

namespace morvo {

/// What connecting an agent needs of its surroundings. A light value.
struct HookContext {
  HomeFolder home;
  /// Holds the overrides of the agents' file paths.
  Environment environment;
  /// Must outlive everything made with the context.
  FileLayer *files = nullptr;
  /// The interpreter that the scripts name; elsewhere only in tests.
  QString python = QStringLiteral("/usr/bin/python3");
};

} // namespace morvo
