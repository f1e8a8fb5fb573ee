#include "pet/BehaviorDirector.h"
#include "pet/PetScene.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace morvo {
namespace {

// What the frame sets of these states are called in packs.
const QStringList &walkingHints() {
  static const QStringList hints{QStringLiteral("walk"), QStringLiteral("run"),
                                 QStringLiteral("move"), QStringLiteral("stroll"),
                                 QStringLiteral("trot"), QStringLiteral("走"),
                                 QStringLiteral("跑"),   QStringLiteral("散步")};
  return hints;
}

const QStringList &carriedHints() {
  static const QStringList hints{QStringLiteral("carried"), QStringLiteral("held"),
                                 QStringLiteral("grab"), QStringLiteral("被拎"),
                                 QStringLiteral("拎起")};
  return hints;
}

const QStringList &tossedHints() {
  static const QStringList hints{QStringLiteral("tossed"), QStringLiteral("dizzy"),
                                 QStringLiteral("thrown"), QStringLiteral("fly"),
                                 QStringLiteral("眩晕"),   QStringLiteral("甩飞")};
  return hints;
}

/// Points a second that tilt the carried pet by a radian, to the other side.
constexpr double velocityPerRadian = -1600;
constexpr double mostTilt = 0.28;
constexpr double tiltSeconds = 0.12;
constexpr double carriedSquash = 0.94;
constexpr double releaseSeconds = 0.3;
constexpr double unsquashSeconds = 0.25;

constexpr double dizzyTilt = 0.22;
constexpr double dizzySeconds = 0.12;
constexpr double landingUprightSeconds = 0.2;

constexpr double turnSeconds = 0.12;
constexpr double gaitLean = 4 * std::numbers::pi / 180;
constexpr double gaitLeanSeconds = 0.25;
constexpr double gaitHop = 4;
constexpr double gaitHopSeconds = 0.14;
constexpr double gaitEndSeconds = 0.25;

/// Long enough that holding still costs nothing.
constexpr double holdSeconds = 60;

/// Goes to a tilt and stays there, whatever else sways.
Action heldTilt(double angle, Duration duration, Easing easing) {
  return Action::sequence({Action::rotateTo(angle, duration, easing),
                           Action::repeatForever(Action::rotateTo(angle, seconds(holdSeconds)))});
}

/// Goes to a height and stays there, though the pet breathes.
Action heldSquash(double scale, Duration duration) {
  return Action::sequence({Action::scaleYTo(scale, duration),
                           Action::repeatForever(Action::scaleYTo(scale, seconds(holdSeconds)))});
}

} // namespace

void PetScene::setCarried(bool carried, double horizontalVelocity) {
  catchUp();
  if (carried) {
    const double velocity = std::isnan(horizontalVelocity) ? 0 : horizontalVelocity;
    carry(std::clamp(velocity / velocityPerRadian, -mostTilt, mostTilt));
  } else {
    m_carriedActive = false;
    m_lifeNode->removeAction(Keys::lifeCarry);
    m_breathNode->removeAction(Keys::lifeCarrySquash);
    standUpright(releaseSeconds, Arc::direct);
    m_breathNode->run(Action::scaleYTo(1, seconds(unsquashSeconds)), Keys::lifeUnsquash);
    playLoop();
  }
  catchUp();
}

void PetScene::carry(double tilt) {
  dropGesture();
  // The ways back from an earlier state end here, or they would pull against this one.
  m_lifeNode->removeAction(Keys::lifeUpright);
  m_breathNode->removeAction(Keys::lifeUnsquash);
  m_lifeNode->run(heldTilt(tilt, seconds(tiltSeconds), Easing::linear), Keys::lifeCarry);
  m_breathNode->run(heldSquash(carriedSquash, seconds(tiltSeconds)), Keys::lifeCarrySquash);
  if (!m_carriedActive) {
    m_carriedActive = true;
    static_cast<void>(playSemanticLoop(carriedHints()));
  }
}

void PetScene::setTossed(bool tossed) {
  if (tossed == m_tossedActive) {
    return;
  }
  catchUp();
  m_tossedActive = tossed;
  if (tossed) {
    dropGesture();
    if (!playSemanticLoop(tossedHints())) {
      const auto wobble = Action::sequence({Action::rotateTo(dizzyTilt, seconds(dizzySeconds)),
                                            Action::rotateTo(-dizzyTilt, seconds(dizzySeconds))});
      m_lifeNode->run(Action::repeatForever(wobble), Keys::lifeDizzy);
    }
  } else {
    land();
  }
  catchUp();
}

void PetScene::land() {
  m_lifeNode->removeAction(Keys::lifeDizzy);
  standUpright(landingUprightSeconds, Arc::direct);
  m_breathNode->run(
      Action::sequence({Action::scaleYTo(0.86, seconds(0.09)),
                        Action::scaleYTo(1.05, seconds(0.12)), Action::scaleYTo(1, seconds(0.15)),
                        Action::run([this] { startLife(); })}),
      Keys::lifeUnsquash);
  playLoop();
}

void PetScene::beginGait(double direction) {
  catchUp();
  m_gaitActive = true;
  m_facing = direction < 0 ? -1 : 1;
  m_lifeNode->run(Action::scaleXTo(m_facing, seconds(turnSeconds)), Keys::lifeFacing);
  if (!playSemanticLoop(walkingHints())) {
    walkWithoutFrames();
  }
  catchUp();
}

void PetScene::walkWithoutFrames() {
  m_lifeNode->run(heldTilt(-m_facing * gaitLean, seconds(gaitLeanSeconds), Easing::easeOut),
                  Keys::lifeGaitLean);
  dropGesture();
  m_lifeNode->run(Action::repeatForever(Action::sequence(
                      {Action::moveBy({0, gaitHop}, seconds(gaitHopSeconds), Easing::easeOut),
                       Action::moveBy({0, -gaitHop}, seconds(gaitHopSeconds), Easing::easeIn)})),
                  Keys::lifeGait);
}

void PetScene::endGait() {
  catchUp();
  m_gaitActive = false;
  m_lifeNode->removeAction(Keys::lifeGait);
  m_lifeNode->removeAction(Keys::lifeGaitLean);
  putInPlace();
  standUpright(gaitEndSeconds);
  playLoop();
  startLife();
  catchUp();
}

bool PetScene::playSemanticLoop(const QStringList &hints) {
  const auto state =
      BehaviorDirector::semanticFrameSet(hints, currentPack(), availableFrameSetsNow());
  if (!state) {
    return false;
  }
  const auto &frames = m_sprites->frames(*state);
  if (m_pet && frames.size() > 1) {
    stopFrames();
    repeatFrames(frames);
  }
  return true;
}

} // namespace morvo
