#include "app/PanelWindow.h"

#include "app/PanelPlacement.h"
#include "app/PetStore.h"
#include "base/Diagnostics.h"

#include <QCursor>
#include <QGuiApplication>
#include <QQmlError>
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

PanelWindow::PanelWindow(PetStore &store, QUrl source)
    : m_store(&store), m_source(std::move(source)) {}

PanelWindow::~PanelWindow() = default;

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
  view->setInitialProperties({{QStringLiteral("store"), QVariant::fromValue(m_store)}});
  view->setSource(m_source);
  if (view->status() != QQuickView::Ready) {
    for (const QQmlError &error : view->errors()) {
      Diagnostics::line(u"PANEL", error.toString());
    }
    return false;
  }
  connect(view.get(), &QWindow::activeChanged, this, &PanelWindow::closeWhenInactive);
  m_view = std::move(view);
  return true;
}

void PanelWindow::show(const std::optional<QRect> &icon) {
  if (!load()) {
    return;
  }
  const QPoint pointer = QCursor::pos();
  QScreen *screen = QGuiApplication::screenAt(icon ? icon->center() : pointer);
  if (screen == nullptr) {
    screen = QGuiApplication::primaryScreen();
  }
  m_view->setPosition(
      PanelPlacement::origin(m_view->size(), screen->availableGeometry(), icon, pointer));
  m_view->show();
  m_view->raise();
  m_view->requestActivate();
}

void PanelWindow::close() {
  if (m_view) {
    m_view->hide();
  }
}

bool PanelWindow::isShown() const { return m_view && m_view->isVisible(); }

void PanelWindow::closeWhenInactive() {
  if (m_transient && m_view->isVisible() && !m_view->isActive()) {
    m_view->hide();
    m_sinceClosedItself.start();
  }
}

bool PanelWindow::hasJustClosedItself() const {
  return m_sinceClosedItself.isValid() && !m_sinceClosedItself.hasExpired(sameClick.count());
}

} // namespace morvo
