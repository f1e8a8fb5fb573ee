#include "pet/DesktopPetController.h"

#include "base/Diagnostics.h"
#include "pet/MorvoTheme.h"
#include "pet/PanelGeometry.h"
#include "pet/PetPalette.h"
#include "platform/Appearance.h"

#include <QGuiApplication>
#include <QPalette>
#include <QScreen>

#include <algorithm>

namespace morvo {
namespace {

constexpr QSizeF desktopStage(200, 200);
constexpr QSizeF popoverStage(180, 180);
constexpr double faintestSprite = 0.15;

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
    : m_setting(ground.setting), m_windows(&ground.windows), m_clock(&ground.clock),
      m_scheduler(&ground.scheduler), m_sprites(ground.files),
      m_scene(desktopStage, ground.files, m_sprites, ground.setting, ground.clock, ground.random),
      m_popoverScene(popoverStage, ground.files, m_sprites, ground.setting, ground.clock,
                     ground.random),
      m_scale(ground.setting.petScale()), m_opacity(ground.setting.petOpacity()) {
  for (QScreen *screen : QGuiApplication::screens()) {
    watchScreen(screen);
  }
  QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &m_context,
                   [this](QScreen *screen) { watchScreen(screen); });
  // Queued: the screen that goes is still listed while the signal is sent.
  QObject::connect(
      qGuiApp, &QGuiApplication::screenRemoved, &m_context, [this] { recoverIfUnreachable(); },
      Qt::QueuedConnection);
}

DesktopPetController::~DesktopPetController() { hide(); }

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
  if (m_window) {
    m_window->setBubble(m_bubble, bubbleLook());
  }
}

void DesktopPetController::setScale(double scale) {
  m_scale = scale;
  if (m_window) {
    m_window->resizeTo(
        PanelGeometry::resized(m_window->geometry(), PanelGeometry::panelSize(m_scale)),
        PanelGeometry::spriteSide(m_scale));
  }
}

void DesktopPetController::setOpacity(double opacity) {
  m_opacity = std::clamp(opacity, faintestSprite, 1.0);
  m_scene.setOpacity(m_opacity);
  if (m_window) {
    m_window->setSpriteOpacity(m_opacity);
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
  m_scene.present();
  m_window.reset(
      new DesktopPetWindow({m_scene, *m_windows, *m_clock, *m_scheduler}, [this] { tapped(); }));
  setOpacity(m_opacity);
  refreshLook();
  const QRect place = defaultPlace(PanelGeometry::panelSize(m_scale));
  m_window->showAt(place, PanelGeometry::spriteSide(m_scale));
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

void DesktopPetController::hide() { m_window.reset(); }

void DesktopPetController::tapped() {
  if (m_interactions != nullptr) {
    m_interactions->petTapped();
  }
}

void DesktopPetController::catchUp() {
  const Instant now = m_clock->instant();
  m_scene.advance(now);
  m_popoverScene.advance(now);
}

void DesktopPetController::recoverIfUnreachable() {
  if (!m_window) {
    return;
  }
  std::vector<QRect> workAreas;
  for (const QScreen *screen : QGuiApplication::screens()) {
    workAreas.push_back(screen->availableGeometry());
  }
  if (!workAreas.empty() && !PanelGeometry::isReachable(m_window->geometry(), workAreas)) {
    m_window->setPosition(defaultPlace(m_window->size()).topLeft());
  }
}

void DesktopPetController::watchScreen(QScreen *screen) {
  QObject::connect(screen, &QScreen::availableGeometryChanged, &m_context,
                   [this] { recoverIfUnreachable(); });
}

QRect DesktopPetController::defaultPlace(QSize size) {
  const auto screens = QGuiApplication::screens();
  const auto atOrigin = std::ranges::find_if(
      screens, [](const QScreen *screen) { return screen->geometry().topLeft().isNull(); });
  const QScreen *screen = atOrigin != screens.end() ? *atOrigin : QGuiApplication::primaryScreen();
  return PanelGeometry::defaultPlace(size, screen ? screen->availableGeometry() : QRect());
}

BubbleLook DesktopPetController::bubbleLook() const {
  const bool dark = isDark(m_setting);
  const AdaptiveColor &theme = MorvoTheme::current(m_setting).color;
  return {PetPalette::abyss().in(dark), PetPalette::foam().in(dark),
          PetPalette::accent(m_scene.mood(), theme).in(dark), m_setting.fontScale()};
}

} // namespace morvo
