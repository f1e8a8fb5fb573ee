#pragma once

#include <QString>

namespace morvo {

/// A tool permission that an agent waits for.
struct PermRequest {
  QString id;
  QString tool;
  QString summary; ///< What the tool is about to do.

  bool operator==(const PermRequest &) const = default;
};

} // namespace morvo
