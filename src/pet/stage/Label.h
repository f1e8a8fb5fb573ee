#pragma once

#include <QColor>
#include <QString>

namespace morvo {

/// A short text that a node shows, centred on it.
struct Label {
  QString text;
  QString fontName;
  double fontSize = 0; ///< Points of the scene.
  QColor color;

  bool operator==(const Label &) const = default;
};

} // namespace morvo
