#include "MorvoBones.h"

#include "PetArt.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace morvo {
namespace {

constexpr double degree = std::numbers::pi / 180;
/// Of the body's outline, taken as an ellipse.
constexpr double middleHeight = 160;
constexpr double halfHeight = 172;
constexpr double halfWidth = 160;

constexpr QPointF tailRoot(-84, -66);
constexpr QPointF stalkRoot(6, -318);
constexpr QPointF earRoot(116, -264);
constexpr QPointF armRoot(128, -140);
/// The tail leaves the body to the left.
constexpr double tailHeading = -84;

int addFin(Skeleton &skeleton, int body, QPointF root, double side, const MorvoPose::Fin &fin) {
  const int mirror =
      skeleton.add({.parent = body, .place = QPointF(side * root.x(), root.y()), .width = side});
  return skeleton.add({.parent = mirror, .turn = fin.turn});
}

} // namespace

MorvoBones::MorvoBones(const MorvoPose &pose) {
  const QPointF stand(canvasSide / 2.0, baseLine);
  const int root =
      skeleton.add({.place = stand + pose.shift - QPointF(0, pose.pivot), .turn = pose.tilt});
  body = skeleton.add({.parent = root,
                       .place = {0, pose.pivot},
                       .width = pose.widthScale,
                       .height = pose.heightScale,
                       .shear = -pose.lean});
  // What turns with the head moves across it, the farther the nearer it is to the viewer.
  const double turned = std::sin(pose.yaw * degree);
  tail = skeleton.add(
      {.parent = body, .place = tailRoot + QPointF(-26 * turned, 0), .turn = tailHeading});
  stalk = skeleton.add({.parent = body, .place = stalkRoot + QPointF(34 * turned, 0)});
  leftEar = addFin(skeleton, body, earRoot - QPointF(20 * turned, 0), -1, pose.leftEar);
  rightEar = addFin(skeleton, body, earRoot - QPointF(20 * turned, 0), 1, pose.rightEar);
  leftArm = addFin(skeleton, body, armRoot - QPointF(36 * turned, 0), -1, pose.leftArm);
  rightArm = addFin(skeleton, body, armRoot + QPointF(4 * turned, 0), 1, pose.rightArm);
}

MorvoBones::Spot MorvoBones::onSkin(const MorvoPose &pose, double around, double height) {
  const double up = (height - pose.pitch - middleHeight) / halfHeight;
  const double girth = halfWidth * std::sqrt(std::max(1 - up * up, 0.0));
  const double angle = (around + pose.yaw) * degree;
  return {{girth * std::sin(angle), pose.pitch - height}, std::cos(angle)};
}

} // namespace morvo
