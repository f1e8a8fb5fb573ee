#pragma once

#include <QPointF>
#include <QTransform>

#include <vector>

namespace morvo {

/// Joints that carry each other. A shape is drawn in the space of its joint, in whatever order the
/// picture needs, not in the order of the joints.
class Skeleton {
public:
  struct Joint {
    int parent = -1;   ///< Index of the joint that carries this one; −1 is the canvas.
    QPointF place;     ///< In the parent's space.
    double turn = 0;   ///< Degrees, clockwise.
    double width = 1;  ///< Scale along the joint's own x.
    double height = 1; ///< Scale along the joint's own y.
    double shear = 0;  ///< Sideways lean: x per y.
  };

  /// The joint's index. Parents come before their children.
  int add(const Joint &joint);
  /// From the joint's space to the canvas.
  [[nodiscard]] const QTransform &world(int joint) const;
  /// A point of the joint's space on the canvas.
  [[nodiscard]] QPointF place(int joint, QPointF point = {}) const;

private:
  std::vector<QTransform> m_worlds;
};

} // namespace morvo
