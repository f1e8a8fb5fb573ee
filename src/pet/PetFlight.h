#pragma once

#include "base/Time.h"

#include <QPoint>
#include <QPointF>
#include <QRect>

/// How a thrown pet flies: it falls, bounces off the edges of the work area and comes to rest on
/// its floor. Device-independent pixels and pixels a second, y down.
namespace morvo::PetFlight {

/// Between two steps.
inline constexpr Duration stepTime = seconds(1.0 / 60);

struct Step {
  /// The panel's new corner.
  QPoint origin;
  QPointF velocity;
  bool isAtRest = false;

  bool operator==(const Step &) const = default;
};

/// Whether a pet let go at this velocity flies at all; never at one that is no finite number.
[[nodiscard]] bool isThrow(QPointF velocity);
/// Where the panel is one step later. From every throw, repeated steps come to rest, with the panel
/// inside the work area where it fits, else at its floor and its right edge.
[[nodiscard]] Step physicsStep(const QRect &panel, QPointF velocity, const QRect &workArea);

} // namespace morvo::PetFlight
