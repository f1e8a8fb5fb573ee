#include "pet/PetScene.h"

#include "base/Diagnostics.h"
#include "pet/FrameSetName.h"
#include "pet/MorvoView.h"
#include "pet/NaturalOrder.h"
#include "pet/PetPackStore.h"
#include "pet/PetPalette.h"
#include "pet/PetVitals.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace morvo {
namespace {

using FrameSetName::idle;

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
constexpr double fallbackScale = 2;
/// Seconds; a day of a pet's life is worked out in no time, a thousand years are not.
constexpr double longestUpdate = 24.0 * 3600;

/// Loops that need no pack to say so.
bool loopsByName(const QString &state) {
  static const QStringList names{idle, FrameSetName::sleep, FrameSetName::code,
                                 FrameSetName::watching, QStringLiteral("monitor")};
  return names.contains(state);
}

QString orElse(const QString &text, const QString &other) { return text.isEmpty() ? other : text; }

} // namespace

const QString PetScene::Keys::loop = QStringLiteral("loop");
const QString PetScene::Keys::oneshot = QStringLiteral("oneshot");
const QString PetScene::Keys::director = QStringLiteral("director");
const QString PetScene::Keys::lifeBreath = QStringLiteral("life.breath");
const QString PetScene::Keys::lifeBob = QStringLiteral("life.bob");
const QString PetScene::Keys::lifeSway = QStringLiteral("life.sway");
const QString PetScene::Keys::lifeUpright = QStringLiteral("life.upright");
const QString PetScene::Keys::lifeGesture = QStringLiteral("life.gesture");
const QString PetScene::Keys::lifeCarry = QStringLiteral("life.carry");
const QString PetScene::Keys::lifeCarrySquash = QStringLiteral("life.carrysquash");
const QString PetScene::Keys::lifeDizzy = QStringLiteral("life.dizzy");
const QString PetScene::Keys::lifeUnsquash = QStringLiteral("life.unsquash");
const QString PetScene::Keys::lifeGait = QStringLiteral("life.gait");
const QString PetScene::Keys::lifeGaitLean = QStringLiteral("life.gaitlean");
const QString PetScene::Keys::lifeFacing = QStringLiteral("life.facing");
const QString PetScene::Keys::moodSquash = QStringLiteral("mood.squash");

PetScene::PetScene(QSizeF size, PetFiles files, MorvoSprites &sprites, Setting setting,
                   Clock &clock, RandomSource &random)
    : m_size(size), m_files(std::move(files)), m_sprites(&sprites), m_setting(std::move(setting)),
      m_clock(&clock), m_random(&random), m_stage(clock.instant()), m_mood(calm) {}

PetScene::~PetScene() = default;

void PetScene::present() {
  if (m_pet) {
    return;
  }
  catchUp();
  m_presentedAt = m_stage.now();
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
  scheduleDirector(firstDecision);
  catchUp();
}

void PetScene::advance(Instant to) { m_stage.advance(to); }

void PetScene::update(double time) {
  if (m_presentedAt && time >= 0) {
    advance(*m_presentedAt + seconds(std::min(time, longestUpdate)));
  }
}

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
  frame.picture = MorvoView::picture(PetPalette::accent(m_mood, m_theme).dark, fallbackScale);
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
  putInPlace();
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
    repeatFrames(frames, state == idle ? restingIdleFrameTime : actionFrameTime);
  } else if (!frames.empty()) {
    m_pet->setTexture(frames.front());
  }
}

void PetScene::repeatFrames(const Action::Frames &frames, Duration each) {
  m_pet->run(Action::repeatForever(Action::animate(frames, each)), Keys::loop);
}

void PetScene::repeatFrames(const Action::Frames &frames) { repeatFrames(frames, actionFrameTime); }

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
  m_lastPerformanceAt = m_stage.now();
  stopFrames();
  applyNodeSize();
  if (isLoop(pack, kind, state)) {
    m_stickyLoopState = state == idle ? std::nullopt : std::optional(state);
    repeatFrames(frames, state == idle ? chosenIdleFrameTime : actionFrameTime);
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

void PetScene::setTheme(const AdaptiveColor &theme) {
  if (theme == m_theme) {
    return;
  }
  m_theme = theme;
  if (!m_pet) {
    return;
  }
  if (const auto &shown = m_pet->texture(); shown && !shown->picture.isNull()) {
    m_pet->setTexture(firstPicture());
  }
}

void PetScene::setPersona(const QString &personaId) {
  catchUp();
  m_stickyLoopState.reset();
  m_lastAutonomous.reset();
  m_sprites->setPersona(personaId);
  if (m_pet) {
    m_pet->setTexture(firstPicture());
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
  m_opacity = std::clamp(opacity, faintest, 1.0);
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

} // namespace morvo
