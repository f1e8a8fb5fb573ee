#pragma once

#include "MorvoPose.h"
#include "Skeleton.h"

namespace morvo {

/// The creature's joints in one pose, and where its round head carries the face.
struct MorvoBones {
  explicit MorvoBones(const MorvoPose &pose);

  Skeleton skeleton;
  int body = 0;
  int tail = 0;
  int stalk = 0;
  int leftEar = 0;
  int rightEar = 0;
  int leftArm = 0;
  int rightArm = 0;

  /// A point on the skin, as the body's space sees it.
  struct Spot {
    QPointF place;
    double width = 1; ///< Foreshortening; not above 0 when it is turned away.
  };
  /// The spot `around` degrees from the middle of the face at this height above the base.
  [[nodiscard]] static Spot onSkin(const MorvoPose &pose, double around, double height);
};

} // namespace morvo
