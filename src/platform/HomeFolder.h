#pragma once

#include <QString>

namespace morvo {

/// The home folder that everything of the user's hangs on, as a value handed in. It is found by
/// `HomeFolders::find` of the platform and never read from `HOME`.
struct HomeFolder {
  /// Absolute, without a slash at the end.
  QString path;

  /// An absolute path below the home folder.
  [[nodiscard]] QString file(const QString &relative) const { return path + u'/' + relative; }
};

} // namespace morvo
