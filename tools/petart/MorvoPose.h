#pragma once

#include <QPointF>

#include <vector>

namespace morvo {

/// Everything that can differ between two pictures of the creature. Lengths are pixels of the
/// canvas, angles degrees; left and right are the viewer's.
struct MorvoPose {
  /// Something that floats beside the body, on the canvas.
  struct Floater {
    QPointF centre;
    double size = 0;
    double opacity = 1;
    double turn = 0;
  };
  /// A fin: how far it is turned away from straight up, outwards, and how its outer half bends.
  struct Fin {
    double turn = 0;
    double bend = 0;
  };

  // The body.
  QPointF shift;         ///< Up is negative.
  double tilt = 0;       ///< About `pivot`.
  double pivot = 0;      ///< Height above the base.
  double widthScale = 1; ///< Scales about the middle of the base line: squashing keeps it there.
  double heightScale = 1;
  double lean = 0; ///< Sideways, as a part of the height.
  double puff = 0; ///< How far the cheeks are blown up, 0 to 1.

  // The face.
  double yaw = 11;  ///< Where the head looks: positive is to the right.
  double pitch = 0; ///< How far down the face sits.
  double eyesOpen = 1;
  double wink = 0;         ///< Closes the left eye on its own.
  double eyesLaughing = 0; ///< Above one half: closed, arched upwards.
  double eyeScale = 1;
  double swirl = -1; ///< From 0: dizzy eyes, turned by this many degrees.
  QPointF gaze;
  double brow = 0; ///< −1 worried, 1 firm.
  double browLift = 0;
  double mouthOpen = 0;  ///< 0 a small closed mouth, 1 wide open.
  double mouthRound = 0; ///< 1 an "o".
  double smile = 1;      ///< −1 turns the closed mouth's corners down.
  double blush = 0.5;

  // What hangs on the body.
  Fin leftEar{52, 18};
  Fin rightEar{52, 18};
  Fin leftArm{142, -24};
  Fin rightArm{142, -24};
  double tail = 42;
  double tailWhip = 26;
  double stalk = 62;
  double stalkWhip = 34;

  // Light.
  double glow = 0.6;     ///< Of the skin.
  double lantern = 0.8;  ///< Of the lantern.
  double warning = 0;    ///< Turns the lantern from honey to orange.
  double wavePhase = -1; ///< From 0 to 1: where a wave of light runs along the spots.

  // Around it.
  double alarm = 0;  ///< Size of the startled mark.
  double shell = 0;  ///< How far the clam that it works at has come up, 0 to 1.
  double typing = 0; ///< Flicker of the clam's light, 0 to 1.
  double spout = 0;  ///< Height of the water column above the head.
  double spoutSway = 0;
  std::vector<Floater> drops;
  std::vector<Floater> bubbles;
  std::vector<Floater> hearts;
  std::vector<Floater> snores;
  std::vector<Floater> notes;
};

} // namespace morvo
