#pragma once

#include "FakeContextMenu.h"
#include "FakeScreens.h"
#include "FakeWindowSystem.h"
#include "RecordedInteractions.h"
#include "pet/DesktopPetController.h"
#include "support/ManualClock.h"
#include "support/ManualScheduler.h"
#include "support/MemorySettings.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace morvo::test {

/// A controller on a desk of fakes, with the built-in pet. The test owns time.
class PetDesk : public testing::Test {
protected:
  PetDesk() {
    m_controller->setInteractions(&m_interactions);
    m_interactions.onScale = [this](double scale) { m_controller->setScale(scale); };
  }

  /// Shows the pet and lets the platform expose the window.
  DesktopPetWindow &shown() {
    m_controller->show();
    QCoreApplication::processEvents();
    return *m_controller->window();
  }
  /// A mouse event at that point of the desktop, `milliseconds` after the server started.
  static void mouse(DesktopPetWindow &window, QEvent::Type type, QPointF at,
                    quint64 milliseconds = 0, Qt::MouseButton button = Qt::LeftButton) {
    const bool isDown = type != QEvent::MouseButtonRelease;
    QMouseEvent event(type, at - window.position(), at,
                      type == QEvent::MouseMove ? Qt::NoButton : button,
                      isDown ? button : Qt::NoButton, Qt::NoModifier);
    event.setTimestamp(milliseconds);
    QCoreApplication::sendEvent(&window, &event);
  }
  void restart(const QHash<QString, QString> &environment) {
    m_controller.emplace(ground(environment));
    m_controller->setInteractions(&m_interactions);
  }
  [[nodiscard]] DesktopPetController::Ground
  ground(const QHash<QString, QString> &environment = {}) {
    return {{HomeFolder{m_home.path()}, QStringLiteral(MORVO_PET_RESOURCES)},
            Setting(m_settings, Environment(environment)),
            m_windows,
            m_screens,
            m_menu,
            m_clock,
            m_scheduler,
            m_random};
  }

  QTemporaryDir m_home;
  MemorySettings m_settings;
  FakeWindowSystem m_windows;
  FakeScreens m_screens;
  FakeContextMenu m_menu;
  ManualClock m_clock;
  ManualScheduler m_scheduler{m_clock};
  SeededRandomSource m_random{7};
  RecordedInteractions m_interactions;
  std::optional<DesktopPetController> m_controller{ground()};
};

} // namespace morvo::test
