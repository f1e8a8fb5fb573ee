#pragma once

#include <QPointF>

#include <vector>

namespace morvo {

/// Everything that can differ between two pictures of the creature. The default value is the rest
/// pose, on which every action begins and ends. Lengths are pixels of the canvas, angles degrees.
struct MorvoPose {
  /// A bubble, heart or letter that floats beside the body.
  struct Floater {
    QPointF centre; ///< On the canvas.
    double size = 0;
    double opacity = 1;
  };

  /// Of the whole body; up is negative.
  QPointF shift;
  double tilt = 0;
  /// Scales about the middle of the base line, so squashing keeps the feet on the ground.
  double widthScale = 1;
  double heightScale = 1;

  /// 1 is wide open, 0 closed.
  double eyesOpen = 1;
  /// From 0 to 1: closed in laughter, arched upwards. Outranks `eyesOpen`.
  double eyesLaughing = 0;
  double eyeScale = 1;
  QPointF gaze;
  /// 0 is a small smile, 1 a wide open mouth.
  double mouthOpen = 0;
  double blush = 0.55;

  /// Raised from hanging (0) to straight up (about 110).
  double leftFin = 0;
  double rightFin = 0;
  double tail = 0;
  /// Of the lantern on the head.
  double stalk = 0;
  double glow = 0.7;

  /// Size of the startled mark beside the head; 0 shows none.
  double alarm = 0;
  std::vector<Floater> bubbles;
  std::vector<Floater> hearts;
  std::vector<Floater> snores;
};

} // namespace morvo
