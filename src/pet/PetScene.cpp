#include "pet/PetScene.h"

#include "base/Diagnostics.h"
#include "pet/MorvoView.h"
#include "pet/NaturalOrder.h"
#include "pet/PetPackStore.h"
#include "pet/PetVitals.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace morvo {
namespace {

const QString idle = QStringLiteral("idle");
const QString calm = QStringLiteral("calm");
const QString diagnosticsTag = QStringLiteral("PET");

// Seconds a frame. The idle loop is slower when the user asks for it than when it comes back by
// itself.
constexpr Duration actionFrameTime = seconds(1.0 / 24);
constexpr Duration restingIdleFrameTime = seconds(1.0 / 16);
constexpr Duration chosenIdleFrameTime = seconds(1.0 / 12);
/// How often procedural motion alone is looked at.
constexpr Duration motionSampleTime = seconds(1.0 / 24);

// The sprite's place in the scene, in fractions of its size.
constexpr double widestPet = 0.94;
constexpr double tallestPet = 0.9;
constexpr QPointF restingPlace(0.5, 0.04);
constexpr QPointF feet(0.5, 0);

constexpr double squashedScale = 0.9;
constexpr double squashSeconds = 0.5;
constexpr double leastOpacity = 0.15;
constexpr double fallbackScale = 2;

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

double within(double value, std::pair<double, double> range) {
  return std::clamp(value, range.first, range.second);
}

bool isFloaty(const PetPack::MotionProfile &motion) { return motion.style == u"floaty"; }

/// Loops that need no pack to say so.
bool loopsByName(const QString &state) {
  static const QStringList names{idle, QStringLiteral("sleep"), QStringLiteral("code"),
                                 QStringLiteral("watching"), QStringLiteral("monitor")};
  return names.contains(state);
}

QString orElse(const QString &text, const QString &other) { return text.isEmpty() ? other : text; }

} // namespace

const QString PetScene::Keys::loop = QStringLiteral("loop");
const QString PetScene::Keys::oneshot = QStringLiteral("oneshot");
const QString PetScene::Keys::lifeBreath = QStringLiteral("life.breath");
const QString PetScene::Keys::lifeBob = QStringLiteral("life.bob");
const QString PetScene::Keys::lifeSway = QStringLiteral("life.sway");
const QString PetScene::Keys::lifeUpright = QStringLiteral("life.upright");
const QString PetScene::Keys::moodSquash = QStringLiteral("mood.squash");

PetScene::PetScene(QSizeF size, PetFiles files, MorvoSprites &sprites, Clock &clock,
                   RandomSource &random)
    : m_size(size), m_files(std::move(files)), m_sprites(&sprites), m_clock(&clock),
      m_random(&random), m_stage(clock.instant()), m_mood(calm) {}

PetScene::~PetScene() = default;

void PetScene::present() {
  if (m_pet) {
    return;
  }
  catchUp();
  m_pet = std::make_shared<Node>();
  m_pet->setTexture(firstPicture());
  m_pet->setAnchor(feet);
  m_pet->setAlpha(m_opacity);
  m_stage.root()->addChild(m_lifeNode);
  m_lifeNode->addChild(m_breathNode);
  m_breathNode->addChild(m_pet);
  applyNodeSize();
  playLoop();
  startLife();
  catchUp();
}

void PetScene::advance(Instant to) { m_stage.advance(to); }

void PetScene::catchUp() { m_stage.advance(m_clock->instant()); }

std::uint64_t PetScene::revision() const { return m_stage.root()->revision(); }

std::optional<Duration> PetScene::frameInterval() const {
  const Activity activity = m_stage.activity();
  if (activity.frameTime) {
    return activity.frameTime;
  }
  return activity.inMotion ? std::optional(motionSampleTime) : activity.nextEnd;
}

std::optional<PetPack> PetScene::currentPack() const {
  return PetPackStore::load(m_files, m_sprites->persona());
}

std::optional<SpriteFrame> PetScene::firstFrame() {
  const auto &frames = m_sprites->frames(loopState());
  return frames.empty() ? std::nullopt : std::optional(frames.front());
}

SpriteFrame PetScene::firstPicture() {
  if (auto frame = firstFrame()) {
    return *frame;
  }
  SpriteFrame frame;
  frame.picture = MorvoView::picture(MorvoView::accent(m_mood), fallbackScale);
  frame.size = frame.picture.size();
  return frame;
}

void PetScene::applyNodeSize() {
  const double widest = m_size.width() * widestPet;
  const double tallest = m_size.height() * tallestPet;
  const auto texture = m_pet ? m_pet->texture() : std::nullopt;
  if (texture) {
    const double width = std::max(texture->size.width(), 1.0);
    const double height = std::max(texture->size.height(), 1.0);
    const double scale = std::min(widest / width, tallest / height);
    m_pet->setSize({std::round(width * scale), std::round(height * scale)});
  } else if (m_pet) {
    const double side = std::round(std::min(widest, tallest));
    m_pet->setSize({side, side});
  }
  m_lifeBasePosition = {std::round(m_size.width() * restingPlace.x()),
                        std::round(m_size.height() * restingPlace.y())};
  m_lifeNode->setPosition(m_lifeBasePosition);
  // A bob goes up and down from where it began: one that went on from its middle would leave the
  // pet beside its place for good.
  if (const auto bob = m_lifeNode->actionForKey(Keys::lifeBob)) {
    m_lifeNode->run(*bob, Keys::lifeBob);
  }
}

QString PetScene::loopState() {
  const auto pack = currentPack();
  if (m_stickyLoopState) {
    if (!PetVitals::isOneshotOnlyFrameSet(*m_stickyLoopState, pack) &&
        m_sprites->hasFrames(*m_stickyLoopState)) {
      return *m_stickyLoopState;
    }
    m_stickyLoopState.reset();
  }
  QSet<QString> available;
  for (const QString &state : m_sprites->availableStateNames()) {
    if (m_sprites->hasFrame(state)) {
      available.insert(state);
    }
  }
  return PetVitals::resolveLoopAction(m_mood, pack ? pack->loopAction(m_mood) : QString(),
                                      pack && pack->hasLoopRule(m_mood), available);
}

void PetScene::stopFrames() {
  m_pet->removeAction(Keys::loop);
  m_pet->removeAction(Keys::oneshot);
}

void PetScene::playLoop() {
  if (!m_pet) {
    return;
  }
  const QString state = loopState();
  const auto &frames = m_sprites->frames(state);
  stopFrames();
  if (frames.size() > 1) {
    const Duration each = state == idle ? restingIdleFrameTime : actionFrameTime;
    m_pet->run(Action::repeatForever(Action::animate(frames, each)), Keys::loop);
  } else if (!frames.empty()) {
    m_pet->setTexture(frames.front());
  }
}

bool PetScene::isLoop(const std::optional<PetPack> &pack, const QString &kind,
                      const QString &state) {
  if (PetVitals::isOneshotOnlyFrameSet(state, pack)) {
    return false;
  }
  if (pack) {
    const auto names = [&](const QString &name) { return name == kind || name == state; };
    const auto action = std::ranges::find_if(pack->actions, [&](const PetPack::Action &candidate) {
      return names(candidate.frameSet) || names(candidate.id);
    });
    if (action != pack->actions.end()) {
      return action->loop;
    }
  }
  return loopsByName(state);
}

bool PetScene::react(const QString &kind) {
  if (!m_pet) {
    return false;
  }
  const auto pack = currentPack();
  const QString state = pack ? pack->frameSet(kind) : kind;
  const auto &frames = m_sprites->frames(state);
  if (frames.size() < 2) {
    Diagnostics::line(diagnosticsTag,
                      QStringLiteral("react skip: persona=%1 state=%2→%3 frames=%4")
                          .arg(m_sprites->persona(), kind, state, QString::number(frames.size())));
    return false;
  }
  catchUp();
  m_lastPerformanceAt = m_clock->instant();
  stopFrames();
  applyNodeSize();
  if (isLoop(pack, kind, state)) {
    m_stickyLoopState = state == idle ? std::nullopt : std::optional(state);
    const Duration each = state == idle ? chosenIdleFrameTime : actionFrameTime;
    m_pet->run(Action::repeatForever(Action::animate(frames, each)), Keys::loop);
  } else {
    m_stickyLoopState.reset();
    const auto backToLoop = Action::run([this] {
      m_stickyLoopState.reset();
      applyNodeSize();
      playLoop();
    });
    m_pet->run(Action::sequence({Action::animate(frames, actionFrameTime), backToLoop}),
               Keys::oneshot);
  }
  catchUp();
  return true;
}

void PetScene::setMood(const QString &mood) {
  if (mood == m_mood) {
    return;
  }
  catchUp();
  m_mood = mood;
  playLoop();
  if (m_pet) {
    m_pet->run(Action::scaleYTo(isTired() ? squashedScale : 1, seconds(squashSeconds)),
               Keys::moodSquash);
  }
  startLife();
  catchUp();
}

void PetScene::setPersona(const QString &personaId) {
  catchUp();
  m_stickyLoopState.reset();
  m_sprites->setPersona(personaId);
  if (m_pet) {
    if (const auto frame = firstFrame()) {
      m_pet->setTexture(frame);
    }
  }
  applyNodeSize();
  playLoop();
  startLife();
  catchUp();
}

std::vector<PetMenuAction> PetScene::catalogActions() {
  std::vector<PetMenuAction> catalog;
  QSet<QString> seen;
  const auto add = [&](const QString &id, const QString &frameSet, const QString &label,
                       bool loops) {
    if (!frameSet.isEmpty() && !seen.contains(frameSet)) {
      seen.insert(frameSet);
      catalog.push_back({.id = id,
                         .frameSet = frameSet,
                         .label = orElse(label, id),
                         .hasFrames = m_sprites->hasFrames(frameSet),
                         .isLoop = loops});
    }
  };
  if (const auto pack = currentPack()) {
    for (const auto &action : pack->actions) {
      add(action.id, orElse(action.frameSet, action.id), action.label, action.loop);
    }
  }
  for (const QString &state : m_sprites->availableStateNames()) {
    add(state, state, state, false);
  }
  std::ranges::stable_sort(catalog, NaturalOrder::less, &PetMenuAction::label);
  return catalog;
}

bool PetScene::hasFrames() { return m_sprites->hasFrames(idle); }

QSet<QString> PetScene::availableFrameSetsNow() {
  QSet<QString> states;
  for (const QString &state : m_sprites->availableStateNames()) {
    if (m_sprites->hasFrames(state)) {
      states.insert(state);
    }
  }
  return states;
}

void PetScene::setOpacity(double opacity) {
  m_opacity = std::clamp(opacity, leastOpacity, 1.0);
  if (m_pet) {
    m_pet->setAlpha(m_opacity);
  }
}

void PetScene::setSize(QSizeF size) {
  if (size == m_size) {
    return;
  }
  catchUp();
  m_size = size;
  applyNodeSize();
  startLife();
  catchUp();
}

bool PetScene::isPerforming() const {
  return m_pet && m_pet->actionForKey(Keys::oneshot).has_value();
}

bool PetScene::isTired() const { return m_mood == u"sleepy" || m_mood == u"dreamy"; }

void PetScene::startLife() {
  const auto pack = currentPack();
  const auto motion = pack && pack->motion ? *pack->motion : PetPack::MotionProfile();
  const double period =
      within(motion.breathPeriod.value_or(defaultBreathPeriod), breathPeriodRange) *
      (isTired() ? tiredPeriodFactor : 1);
  startBreath(motion, period);
  m_lifeNode->removeAction(Keys::lifeBob);
  m_lifeNode->removeAction(Keys::lifeSway);
  m_lifeNode->removeAction(Keys::lifeUpright);
  m_lifeNode->setPosition(m_lifeBasePosition);
  startBob(motion, period);
  startSway(motion, period);
}

void PetScene::startBreath(const PetPack::MotionProfile &motion, double period) {
  const double amplitude =
      within(motion.breathAmplitude.value_or(defaultBreathAmplitude), breathAmplitudeRange) *
      (isTired() ? tiredAmplitudeFactor : 1);
  const auto inhale =
      Action::scaleYTo(1 + amplitude, seconds(period * inhaleShare), Easing::easeInOut);
  const auto exhale = Action::scaleYTo(1 - exhaleDepth * amplitude, seconds(period * exhaleShare),
                                       Easing::easeInOut);
  m_breathNode->run(Action::repeatForever(Action::sequence({inhale, exhale})), Keys::lifeBreath);
}

void PetScene::startBob(const PetPack::MotionProfile &motion, double period) {
  const double standard = isFloaty(motion) ? floatyBob : 0;
  const double height = std::clamp(motion.bobAmplitude.value_or(standard), 0.0, mostBob);
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
  const double degrees = std::min(motion.swayDegrees.value_or(standard), mostSway);
  if (degrees <= 0) {
    m_lifeNode->run(Action::rotateTo(0, seconds(uprightSeconds)), Keys::lifeUpright);
    return;
  }
  const Duration time = seconds(period * swayShare);
  const double angle = radians(degrees);
  m_lifeNode->run(
      Action::repeatForever(Action::sequence({Action::rotateTo(angle, time, Easing::easeInOut),
                                              Action::rotateTo(-angle, time, Easing::easeInOut)})),
      Keys::lifeSway);
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
