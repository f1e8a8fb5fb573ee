#include "Skeleton.h"

namespace morvo {

int Skeleton::add(const Joint &joint) {
  QTransform own;
  own.translate(joint.place.x(), joint.place.y());
  own.rotate(joint.turn);
  own.shear(joint.shear, 0);
  own.scale(joint.width, joint.height);
  m_worlds.push_back(joint.parent < 0 ? own : own * world(joint.parent));
  return static_cast<int>(m_worlds.size()) - 1;
}

const QTransform &Skeleton::world(int joint) const {
  return m_worlds.at(static_cast<std::size_t>(joint));
}

QPointF Skeleton::place(int joint, QPointF point) const { return world(joint).map(point); }

} // namespace morvo
