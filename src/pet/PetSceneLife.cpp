#include "pet/PetScene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace morvo {
namespace {

// Breathing, bobbing, swaying: limits, defaults, and what tiredness makes of them.
constexpr double defaultBreathAmplitude = 0.016;
constexpr std::pair breathAmplitudeRange(0.004, 0.05);
constexpr double tiredAmplitudeFactor = 0.6;
constexpr double defaultBreathPeriod = 3.4;
constexpr std::pair breathPeriodRange(1.2, 8.0);
constexpr double tiredPeriodFactor = 1.6;
constexpr double inhaleShare = 0.45;
constexpr double exhaleShare = 0.55;
constexpr double exhaleDepth = 0.35;
constexpr double floatyBob = 4;
constexpr double mostBob = 12;
constexpr double bobShare = 0.9;
constexpr double floatySway = 1.6;
constexpr double mostSway = 6;
constexpr double swayShare = 1.1;
constexpr double uprightSeconds = 0.25;

// Gestures: figures as the eye likes them.
constexpr double leastHop = 4;
constexpr double hopShare = 0.05; ///< Of the pet's height.
constexpr double gestureSwayDegrees = 3;
constexpr double perkScale = 1.05;
constexpr double stretchScale = 1.06;

constexpr int heartCount = 5;
constexpr double heartDelay = 0.08;
constexpr double heartSpread = 22;
constexpr double heartDrift = 12;
constexpr double heartRise = 60;
constexpr double heartSeconds = 0.9;
constexpr double heartScale = 1.3;
constexpr double heartStart = 0.55; ///< Of the pet's height.
constexpr double heartZ = 100;
constexpr double heartFontSize = 24;

double radians(double degrees) { return degrees * std::numbers::pi / 180; }

/// A value that is no number is as good as none; infinite ones are taken to their limit.
double numberOr(const std::optional<double> &value, double fallback) {
  return value && !std::isnan(*value) ? *value : fallback;
}

double within(double value, std::pair<double, double> range) {
  return std::clamp(value, range.first, range.second);
}

bool isFloaty(const PetPack::MotionProfile &motion) { return motion.style == u"floaty"; }

} // namespace

bool PetScene::isTired() const { return m_mood == u"sleepy" || m_mood == u"dreamy"; }

void PetScene::startLife() {
  const auto pack = currentPack();
  const auto motion = pack && pack->motion ? *pack->motion : PetPack::MotionProfile();
  const double period =
      within(numberOr(motion.breathPeriod, defaultBreathPeriod), breathPeriodRange) *
      (isTired() ? tiredPeriodFactor : 1);
  startBreath(motion, period);
  m_lifeNode->removeAction(Keys::lifeBob);
  m_lifeNode->removeAction(Keys::lifeSway);
  m_lifeNode->removeAction(Keys::lifeUpright);
  putInPlace();
  startBob(motion, period);
  startSway(motion, period);
  holdOn();
}

void PetScene::holdOn() {
  // Of two actions on one property the later wins: begun anew, they stay above the new life.
  for (const QString &key : {Keys::lifeGaitLean, Keys::lifeDizzy, Keys::lifeCarry}) {
    if (const auto held = m_lifeNode->actionForKey(key)) {
      m_lifeNode->run(*held, key);
    }
  }
  if (const auto squash = m_breathNode->actionForKey(Keys::lifeCarrySquash)) {
    m_breathNode->run(*squash, Keys::lifeCarrySquash);
  }
}

void PetScene::startBreath(const PetPack::MotionProfile &motion, double period) {
  const double amplitude =
      within(numberOr(motion.breathAmplitude, defaultBreathAmplitude), breathAmplitudeRange) *
      (isTired() ? tiredAmplitudeFactor : 1);
  const auto inhale =
      Action::scaleYTo(1 + amplitude, seconds(period * inhaleShare), Easing::easeInOut);
  const auto exhale = Action::scaleYTo(1 - exhaleDepth * amplitude, seconds(period * exhaleShare),
                                       Easing::easeInOut);
  m_breathNode->run(Action::repeatForever(Action::sequence({inhale, exhale})), Keys::lifeBreath);
}

void PetScene::startBob(const PetPack::MotionProfile &motion, double period) {
  const double standard = isFloaty(motion) ? floatyBob : 0;
  const double height = std::clamp(numberOr(motion.bobAmplitude, standard), 0.0, mostBob);
  if (height <= 0) {
    return;
  }
  const Duration time = seconds(period * bobShare);
  m_lifeNode->run(Action::repeatForever(
                      Action::sequence({Action::moveBy({0, height}, time, Easing::easeInOut),
                                        Action::moveBy({0, -height}, time, Easing::easeInOut)})),
                  Keys::lifeBob);
}

void PetScene::startSway(const PetPack::MotionProfile &motion, double period) {
  const double standard = isFloaty(motion) ? floatySway : 0;
  const double degrees = std::min(numberOr(motion.swayDegrees, standard), mostSway);
  if (degrees <= 0) {
    standUpright(uprightSeconds);
    return;
  }
  const Duration time = seconds(period * swayShare);
  const double angle = radians(degrees);
  m_lifeNode->run(
      Action::repeatForever(Action::sequence({Action::rotateTo(angle, time, Easing::easeInOut),
                                              Action::rotateTo(-angle, time, Easing::easeInOut)})),
      Keys::lifeSway);
}

void PetScene::standUpright(double overSeconds, Arc arc) {
  m_lifeNode->run(Action::rotateTo(0, seconds(overSeconds), Easing::linear, arc),
                  Keys::lifeUpright);
}

void PetScene::putInPlace() {
  m_lifeNode->setPosition(m_lifeBasePosition);
  // A hop goes up and down from where it began: one that went on from its middle would leave the
  // pet beside its place for good.
  for (const QString &key : {Keys::lifeBob, Keys::lifeGait, Keys::lifeGesture}) {
    const auto hop = m_lifeNode->actionForKey(key);
    if (hop && (key != Keys::lifeGesture || m_gestureHops)) {
      m_lifeNode->run(*hop, key);
    }
  }
}

void PetScene::dropGesture() {
  const bool hops = m_gestureHops && m_lifeNode->actionForKey(Keys::lifeGesture);
  m_lifeNode->removeAction(Keys::lifeGesture);
  if (hops) {
    putInPlace();
  }
}

void PetScene::perform(ProceduralGesture gesture) {
  catchUp();
  if (!m_pet || m_lifeNode->actionForKey(Keys::lifeGesture) ||
      m_breathNode->actionForKey(Keys::lifeGesture)) {
    return;
  }
  m_lastAutonomous = rawValue(gesture);
  m_gestureHops = gesture == ProceduralGesture::bob;
  switch (gesture) {
  case ProceduralGesture::bob:
    hop();
    break;
  case ProceduralGesture::sway:
    swayOnce();
    break;
  case ProceduralGesture::perk:
    gestureOfBreath(Action::sequence({Action::scaleTo(perkScale, seconds(0.16), Easing::easeOut),
                                      Action::scaleTo(1, seconds(0.35), Easing::easeIn),
                                      Action::wait(seconds(0.22))}));
    break;
  case ProceduralGesture::stretch:
    gestureOfBreath(
        Action::sequence({Action::scaleYTo(stretchScale, seconds(1.1), Easing::easeInOut),
                          Action::scaleYTo(1, seconds(0.9), Easing::easeInOut)}));
    break;
  }
  catchUp();
}

void PetScene::hop() {
  const double height = std::max(m_pet->size().height() * hopShare, leastHop);
  m_lifeNode->run(Action::sequence({Action::moveBy({0, height}, seconds(0.42), Easing::easeOut),
                                    Action::moveBy({0, -height}, seconds(0.55), Easing::easeIn)}),
                  Keys::lifeGesture);
}

void PetScene::swayOnce() {
  const double angle = radians(gestureSwayDegrees);
  m_lifeNode->run(Action::sequence({Action::rotateBy(angle, seconds(0.8), Easing::easeInOut),
                                    Action::rotateBy(-2 * angle, seconds(1.4), Easing::easeInOut),
                                    Action::rotateBy(angle, seconds(0.7), Easing::easeInOut)}),
                  Keys::lifeGesture);
}

void PetScene::gestureOfBreath(const Action &movement) {
  m_breathNode->removeAction(Keys::lifeBreath);
  m_breathNode->run(Action::sequence({movement, Action::run([this] { startLife(); })}),
                    Keys::lifeGesture);
}

void PetScene::emitHearts() {
  if (!m_pet) {
    return;
  }
  catchUp();
  for (int index = 0; index < heartCount; ++index) {
    emitHeart(index);
  }
  catchUp();
}

void PetScene::emitHeart(int index) {
  static const std::array colors{QColor::fromRgbF(1, 0.45F, 0.6F),
                                 QColor::fromRgbF(0.4F, 0.75F, 1)};
  const auto heart = std::make_shared<Node>();
  heart->setLabel(Label{.text = QStringLiteral("♥"),
                        .fontName = QStringLiteral("HelveticaNeue-Bold"),
                        .fontSize = heartFontSize,
                        .color = colors.at(m_random->below(colors.size()))});
  const double aside = m_random->uniform(-heartSpread, heartSpread);
  heart->setPosition(m_lifeNode->position() + QPointF(aside, m_pet->size().height() * heartStart));
  heart->setAlpha(0);
  heart->setZPosition(heartZ);
  m_stage.root()->addChild(heart);
  const double drift = m_random->uniform(-heartDrift, heartDrift);
  const auto blink = Action::sequence(
      {Action::fadeIn(seconds(0.15)), Action::wait(seconds(0.4)), Action::fadeOut(seconds(0.35))});
  const auto flight = Action::group({Action::moveBy({drift, heartRise}, seconds(heartSeconds)),
                                     blink, Action::scaleTo(heartScale, seconds(heartSeconds))});
  heart->run(Action::sequence(
      {Action::wait(seconds(index * heartDelay)), flight, Action::removeFromParent()}));
}

} // namespace morvo
