#pragma once

#include <QString>

namespace morvo {

/// A tool permission that an agent waits for.
struct PermRequest {
  /// Characters of a summary that are shown. The scripts' own end at 200; of what a stranger wrote
  /// beyond this, one more is kept, to tell that there was more.
  static constexpr qsizetype longestSummary = 20000;

  QString id;
  QString tool;    ///< Short enough to be shown.
  QString summary; ///< What the tool is about to do.

  bool operator==(const PermRequest &) const = default;
};

} // namespace morvo
