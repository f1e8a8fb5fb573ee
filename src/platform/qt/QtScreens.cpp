#include "platform/qt/QtScreens.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <iterator>

namespace morvo {

QtScreens::QtScreens() {
  for (QScreen *screen : QGuiApplication::screens()) {
    watch(screen);
  }
  QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &m_context, [this](QScreen *screen) {
    watch(screen);
    changed();
  });
  // Queued: the screen that goes is still listed while the signal is sent.
  QObject::connect(
      qGuiApp, &QGuiApplication::screenRemoved, &m_context, [this] { changed(); },
      Qt::QueuedConnection);
}

QtScreens::~QtScreens() = default;

std::vector<Screens::Area> QtScreens::areas() const {
  std::vector<Area> areas;
  const auto screens = QGuiApplication::screens();
  std::ranges::transform(screens, std::back_inserter(areas), [](const QScreen *screen) {
    return Area{screen->geometry(), screen->availableGeometry()};
  });
  return areas;
}

QPoint QtScreens::pointer() const { return QCursor::pos(); }

void QtScreens::watch(QScreen *screen) {
  for (const auto signal : {&QScreen::geometryChanged, &QScreen::availableGeometryChanged}) {
    QObject::connect(screen, signal, &m_context, [this] { changed(); });
  }
}

void QtScreens::changed() {
  if (m_handler) {
    m_handler();
  }
}

} // namespace morvo
