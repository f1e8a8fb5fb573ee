#include "pet/DesktopPetController.h"

#include "base/Diagnostics.h"
#include "pet/MorvoTheme.h"
#include "pet/PanelGeometry.h"
#include "pet/PetPalette.h"
#include "platform/Appearance.h"
#include "platform/SettingKeys.h"

#include <QGuiApplication>
#include <QPalette>

#include <algorithm>

namespace morvo {
namespace {

constexpr QSizeF desktopStage(200, 200);
constexpr QSizeF popoverStage(180, 180);
/// Growth for each pixel of scrolling.
constexpr double scalePerPixel = 0.003;
/// A change of mode is visible at once.
constexpr Duration decisionAfterMode = std::chrono::seconds(1);

bool isDark(const Setting &setting) {
  switch (AppearanceController::wanted(setting)) {
  case Appearance::light:
    return false;
  case Appearance::dark:
    return true;
  case Appearance::followSystem:
    break;
  }
  constexpr int middle = 128;
  return QGuiApplication::palette().color(QPalette::Window).lightness() < middle;
}

QString described(const QRect &frame) {
  return QStringLiteral("(%1, %2, %3, %4)")
      .arg(frame.x())
      .arg(frame.y())
      .arg(frame.width())
      .arg(frame.height());
}

} // namespace

DesktopPetController::DesktopPetController(const Ground &ground)
    : m_setting(ground.setting), m_windows(&ground.windows), m_screens(&ground.screens),
      m_menu(&ground.menu), m_clock(&ground.clock), m_scheduler(&ground.scheduler),
      m_random(&ground.random), m_sprites(ground.files),
      m_scene(desktopStage, ground.files, m_sprites, ground.setting, ground.clock, ground.random),
      m_popoverScene(popoverStage, ground.files, m_sprites, ground.setting, ground.clock,
                     ground.random),
      m_menuHandler({.behaviorMode = [this] { return behaviorMode(); },
                     .setBehaviorMode = [this](PetBehaviorMode mode) { setBehaviorMode(mode); },
                     .catalogActions = [this] { return catalogActions(); },
                     .stroll = [this] { strollRandom(); },
                     .comeHere = [this] { comeHere(); },
                     .hide = [this] { hide(); }}),
      m_scale(ground.setting.petScale()) {
  m_scene.setOpacity(ground.setting.petOpacity());
  m_scene.setStrollHandler([this] { strollRandom(); });
  m_screens->onChanged([this] { recoverIfUnreachable(); });
}

DesktopPetController::~DesktopPetController() {
  m_screens->onChanged({});
  m_menu->close();
  hide();
}

void DesktopPetController::setInteractions(PetInteractions *interactions) {
  // The entries of an open menu refer to the one before.
  m_menu->close();
  m_interactions = interactions;
}

void DesktopPetController::RetireLater::operator()(DesktopPetWindow *window) const {
  window->retire();
  window->deleteLater();
}

bool DesktopPetController::react(const QString &kind) {
  catchUp();
  const bool onDesktop = m_scene.react(kind);
  const bool inPopover = m_popoverScene.react(kind);
  if (m_window) {
    if (onDesktop && isDebugging()) {
      m_window->onNextDrawing([this, kind] { tell(QStringLiteral("drew ") + kind); });
    }
    m_window->wake();
  }
  return onDesktop || inPopover;
}

void DesktopPetController::setMood(const QString &mood) {
  catchUp();
  m_scene.setMood(mood);
  m_popoverScene.setMood(mood);
  refreshLook();
  if (m_window) {
    m_window->wake();
  }
}

void DesktopPetController::setPersona(const QString &personaId) {
  catchUp();
  useTheme();
  m_scene.setPersona(personaId);
  m_popoverScene.setPersona(personaId);
  if (m_window) {
    m_window->wake();
  }
}

void DesktopPetController::emitHearts() {
  catchUp();
  m_scene.emitHearts();
  m_popoverScene.emitHearts();
  if (m_window) {
    m_window->wake();
  }
}

void DesktopPetController::setVisible(bool visible) {
  if (visible) {
    show();
  } else {
    hide();
  }
}

void DesktopPetController::setQuietMode(bool quiet) {
  m_scene.setQuietMode(quiet);
  m_popoverScene.setQuietMode(quiet);
}

void DesktopPetController::setBubble(const QString &text) {
  if (text.isEmpty() && !m_bubble.isEmpty()) {
    tell(QStringLiteral("bubble cleared"));
  }
  m_bubble = text;
  refreshLook();
}

void DesktopPetController::refreshLook() {
  const std::uint64_t before = m_scene.revision();
  useTheme();
  if (m_window) {
    m_window->setBubble(m_bubble, bubbleLook());
    if (m_scene.revision() != before) {
      m_window->wake();
    }
  }
}

void DesktopPetController::setScale(double scale) {
  m_scale = scale;
  if (m_window && m_motion) {
    const QRect place =
        PanelGeometry::resized(m_window->place(), PanelGeometry::panelSize(m_scale));
    m_motion->windowPlaced(place);
    m_window->resizeTo(place, PanelGeometry::spriteSide(m_scale));
    m_motion->recoverIfOutOfReach();
  }
}

void DesktopPetController::setOpacity(double opacity) {
  m_scene.setOpacity(opacity);
  if (m_window) {
    m_window->wake();
  }
}

std::vector<PetMenuAction> DesktopPetController::catalogActions() const {
  return m_scene.catalogActions();
}

void DesktopPetController::show() {
  if (m_window || m_interactions == nullptr) {
    return;
  }
  catchUp();
  useTheme();
  m_scene.present();
  m_window.reset(new DesktopPetWindow({m_scene, *m_windows, *m_clock, *m_scheduler}, *this));
  refreshLook();
  const QRect place = defaultPlace(PanelGeometry::panelSize(m_scale));
  m_window->showAt(place, PanelGeometry::spriteSide(m_scale));
  if (m_above) {
    m_windows->stackBeneath(*m_window, m_above);
  }
  m_motion.emplace(
      PetMotion::Ground{*m_window, m_scene, *m_screens, *m_clock, *m_scheduler, *m_random});
  tell(QStringLiteral("shown at %1 win=%2").arg(described(place)).arg(m_window->winId()));
}

bool DesktopPetController::isDebugging() const {
  return m_setting.environment().isOne(QStringLiteral("MORVO_DEBUG"));
}

void DesktopPetController::tell(const QString &text) const {
  if (isDebugging()) {
    Diagnostics::line(u"DESKPET", text);
  }
}

void DesktopPetController::hide() {
  m_motion.reset();
  m_window.reset();
}

void DesktopPetController::standBeneath(QWindow *other) {
  m_above = other;
  if (m_window) {
    m_windows->stackBeneath(*m_window, other);
  }
}

void DesktopPetController::throwPet(QPointF velocity) {
  if (m_motion) {
    m_motion->throwPet(velocity);
  }
}

void DesktopPetController::strollRandom() {
  if (m_motion) {
    m_motion->strollRandom();
  }
}

void DesktopPetController::comeHere() {
  if (m_motion) {
    m_motion->comeHere();
  }
}

void DesktopPetController::recoverIfOffscreen() {
  if (m_motion) {
    m_motion->recoverIfOffscreen();
  }
}

void DesktopPetController::setBehaviorMode(PetBehaviorMode mode) {
  m_setting.store().set(SettingKeys::behaviorMode, rawValue(mode));
  if (mode == PetBehaviorMode::rest && m_motion) {
    m_motion->cancelStroll();
  }
  catchUp();
  m_scene.scheduleDirector(decisionAfterMode);
  m_popoverScene.scheduleDirector(decisionAfterMode);
  if (m_window) {
    m_window->wake();
  }
}

PetBehaviorMode DesktopPetController::behaviorMode() const {
  return petBehaviorMode(m_setting.str(SettingKeys::behaviorMode, {}));
}

void DesktopPetController::showContextMenu(QPoint at) {
  if (m_interactions != nullptr) {
    m_menu->popUp(m_menuHandler.entries(*m_interactions), at);
  }
}

void DesktopPetController::pressed() {
  if (m_motion) {
    m_motion->pickUp();
  }
}

void DesktopPetController::dragged(const DragTrack &track) {
  if (m_motion) {
    m_motion->carry(track);
  }
}

void DesktopPetController::released(const DragTrack &track) {
  if (m_motion) {
    m_motion->letGo(track);
  }
}

void DesktopPetController::dropped() {
  if (m_motion) {
    m_motion->drop();
  }
}

void DesktopPetController::clicked() {
  if (m_interactions != nullptr) {
    m_interactions->petTapped();
  }
}

void DesktopPetController::menuRequested(QPoint at) { showContextMenu(at); }

void DesktopPetController::scrolled(double pixels) {
  if (m_interactions != nullptr) {
    m_interactions->setPetScale(pixels * scalePerPixel + m_interactions->petScale());
  }
}

void DesktopPetController::catchUp() {
  const Instant now = m_clock->instant();
  m_scene.advance(now);
  m_popoverScene.advance(now);
}

void DesktopPetController::recoverIfUnreachable() {
  if (!m_motion || (m_motion->isCarried() && m_window->place().contains(m_screens->pointer()))) {
    // A hand brings it back when it lets go. One that is elsewhere has let go unseen.
    return;
  }
  if (!m_motion->isWithinReach()) {
    m_motion->place(defaultPlace(m_window->place().size()).topLeft());
  }
}

QRect DesktopPetController::defaultPlace(QSize size) const {
  const auto areas = m_screens->areas();
  const auto atOrigin = std::ranges::find_if(
      areas, [](const Screens::Area &area) { return area.frame.topLeft().isNull(); });
  if (atOrigin != areas.end()) {
    return PanelGeometry::defaultPlace(size, atOrigin->workArea);
  }
  return PanelGeometry::defaultPlace(size, areas.empty() ? QRect() : areas.front().workArea);
}

void DesktopPetController::useTheme() {
  const AdaptiveColor &theme = MorvoTheme::current(m_setting).color;
  m_scene.setTheme(theme);
  m_popoverScene.setTheme(theme);
}

BubbleLook DesktopPetController::bubbleLook() const {
  const bool dark = isDark(m_setting);
  const AdaptiveColor &theme = MorvoTheme::current(m_setting).color;
  return {PetPalette::abyss().in(dark), PetPalette::foam().in(dark),
          PetPalette::accent(m_scene.mood(), theme).in(dark), m_setting.fontScale()};
}

} // namespace morvo
