#pragma once

#include <QColor>

namespace morvo {

/// How the speech bubble is painted.
struct BubbleLook {
  QColor ground;
  QColor text;
  QColor edge;
  double fontScale = 1;

  bool operator==(const BubbleLook &) const = default;
};

} // namespace morvo
