#pragma once

#include <QPointF>

#include <array>
#include <vector>

namespace morvo {

/// Everything that can differ between two pictures of the girl. The default value is the rest pose.
/// Lengths are pixels of the canvas, angles degrees, clockwise. Of a pair, the first stands on the
/// left of the picture; what is told as outwards points away from the body on either side.
struct AnimePose {
  enum class Hand { mitten, open };
  /// What an arm is drawn over.
  enum class Layer { behind, body, head };

  struct Arm {
    QPointF hand{28, 70}; ///< From the shoulder: outwards, down.
    double elbow = 0.35;  ///< 1 points outwards as far as the arm allows, −1 inwards.
    double wrist = 0;
    Hand shape = Hand::mitten;
    Layer layer = Layer::body;
  };
  struct Leg {
    QPointF foot;    ///< From where it stands at rest: to the right, down.
    double turn = 0; ///< Of the shoe.
    double knee = 0.3;
  };
  struct Eyes {
    double open = 1;  ///< 0 is closed.
    double lower = 0; ///< How far the lower lid has risen.
    double joy = 0;   ///< Closed lids: 0 hangs like a bow, 1 arches like a bridge.
    double size = 1;
    double star = 0; ///< Size of the star in the eye.
    bool wince = false;
    QPointF gaze; ///< Of −1 to 1.
  };
  struct Mouth {
    double open = 0;
    double width = 1;
    double smile = 1; ///< −1 is sad.
    double round = 0; ///< 1 is an O.
  };
  /// What hangs on the head and comes late, as it differs from hanging still.
  struct Follow {
    double tail = 0;
    double tip = 0;
    double locks = 0; ///< Pixels to the right.
    double crest = 0;
    double ears = 0;
    double lift = 0; ///< Pixels by which hanging hair has risen.
  };
  /// A small thing in the air. Its place is on the canvas.
  struct Floater {
    enum class Kind { star, heart, snore, spark, code, note, speed };
    Kind kind = Kind::star;
    QPointF place;
    double size = 0;
    double opacity = 1;
    double turn = 0;
    bool behind = false; ///< Flies behind her.
  };
  enum class Prop { none, laptop, cushion };

  QPointF shift;
  double tilt = 0;
  double pivot = 0; ///< Height above the base line that the tilt turns about.
  double width = 1;
  double height = 1;

  bool sitting = false;
  double crouch = 0; ///< How far the hips sink over feet that stay.
  double sway = 0;   ///< Of the hips, to the right.
  double lean = 0;
  double breath = 0; ///< 1 is a full chest.

  double headTilt = 0;
  QPointF headShift;
  double turn = 0;  ///< −1 looks to the left, 1 to the right.
  double pitch = 0; ///< −1 looks up, 1 down.
  Eyes eyes;
  Mouth mouth;
  double blush = 0.6;
  double brows = 0;    ///< Pixels by which they are raised.
  double browTilt = 0; ///< Positive is bold, negative worried.
  std::array<Arm, 2> arms;
  std::array<Leg, 2> legs;
  Follow follow;
  Prop prop = Prop::none;
  double glow = 0;  ///< Light of the laptop on her, or of the heart in her hands.
  double alarm = 0; ///< Size of the startled mark beside the head.
  double heart = 0; ///< Size of the heart between her hands.
  std::vector<Floater> floaters;
};

} // namespace morvo
