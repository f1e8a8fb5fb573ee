#include "app/PanelWindow.h"

#include "app/PanelPlacement.h"
#include "app/PetStore.h"
#include "base/Diagnostics.h"

#include <QGuiApplication>
#include <QQmlError>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickView>
#include <QQuickWindow>
#include <QScreen>

#include <chrono>
#include <utility>

namespace morvo {
namespace {

/// A panel that lost the focus this short ago lost it to the click that is being handled.
constexpr std::chrono::milliseconds sameClick{300};

/// What a user can set to choose another way of drawing.
constexpr auto backendVariable = "QT_QUICK_BACKEND";

} // namespace

const QString PanelWindow::mainPanel = QStringLiteral("qrc:/qt/qml/Morvo/Panels/MainPanel.qml");

PanelWindow::PanelWindow(Ground ground) : m_ground(std::move(ground)) {}

PanelWindow::~PanelWindow() {
  if (m_view) {
    // A view that goes tells that it is hidden.
    m_view->disconnect(this);
  }
}

bool PanelWindow::load() {
  if (m_view) {
    return true;
  }
  if (!qEnvironmentVariableIsSet(backendVariable)) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  }
  QQuickStyle::setStyle(QStringLiteral("Basic"));
  auto view = std::make_unique<QQuickView>();
  view->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
  view->setColor(Qt::transparent);
  view->setResizeMode(QQuickView::SizeViewToRootObject);
  view->setTitle(QStringLiteral("MorvoBar"));
  view->setInitialProperties({{QStringLiteral("store"), QVariant::fromValue(&m_ground.store)},
                              {QStringLiteral("entries"), QVariant::fromValue(&m_ground.entries)},
                              {QStringLiteral("stage"), QVariant::fromValue(&m_ground.stage)}});
  view->setSource(m_ground.source);
  if (view->status() != QQuickView::Ready) {
    for (const QQmlError &error : view->errors()) {
      Diagnostics::line(u"PANEL", error.toString());
    }
    return false;
  }
  connect(view.get(), &QWindow::activeChanged, this, &PanelWindow::closeWhenInactive);
  connect(view.get(), &QWindow::visibleChanged, this, &PanelWindow::visibleChanged);
  connect(view.get(), &QQuickWindow::frameSwapped, this, &PanelWindow::drawn);
  // Of a type that only the QML file knows.
  connect(view->rootObject(), SIGNAL(closeRequested()), this, SLOT(close()));
  m_view = std::move(view);
  return true;
}

void PanelWindow::show(const std::optional<QRect> &icon, const std::optional<QPoint> &click) {
  if (!load()) {
    return;
  }
  const auto pet = m_ground.petPlace ? m_ground.petPlace() : std::nullopt;
  const auto anchor = PanelPlacement::anchor({.icon = icon, .click = click, .pet = pet});
  QScreen *screen = anchor ? QGuiApplication::screenAt(anchor->center()) : nullptr;
  if (screen == nullptr) {
    screen = QGuiApplication::primaryScreen();
  }
  const QRect workArea = screen->availableGeometry();
  m_view->rootObject()->setProperty("screenHeight", workArea.height());
  m_view->setPosition(PanelPlacement::origin(m_view->size(), workArea, anchor));
  m_awaitsFrame = true;
  m_hasBeenActive = false;
  m_view->show();
  m_view->raise();
  m_view->requestActivate();
  QMetaObject::invokeMethod(m_view->rootObject(), "appeared");
}

/// The first frame of an opening. By now a window manager has put its frame around the window.
void PanelWindow::drawn() {
  if (!std::exchange(m_awaitsFrame, false)) {
    return;
  }
  if (m_ground.store.setting().environment().isOne(QStringLiteral("MORVO_DEBUG"))) {
    Diagnostics::line(u"PANEL", u"drawn");
  }
  if (m_ground.onScreen && isShown()) {
    m_ground.onScreen(m_view.get());
  }
}

void PanelWindow::visibleChanged(bool visible) const {
  if (!visible && m_ground.onScreen) {
    m_ground.onScreen(nullptr);
  }
}

void PanelWindow::close() {
  if (m_view) {
    m_view->hide();
  }
}

bool PanelWindow::isShown() const { return m_view && m_view->isVisible(); }

/// News of the last opening's end may come after the next one has begun: only a panel that has had
/// the keyboard since can lose it.
void PanelWindow::closeWhenInactive() {
  if (m_view->isActive()) {
    m_hasBeenActive = true;
  } else if (m_transient && m_hasBeenActive && m_view->isVisible()) {
    m_view->hide();
    m_sinceClosedItself.start();
  }
}

bool PanelWindow::hasJustClosedItself() const {
  return m_sinceClosedItself.isValid() && !m_sinceClosedItself.hasExpired(sameClick.count());
}

} // namespace morvo
