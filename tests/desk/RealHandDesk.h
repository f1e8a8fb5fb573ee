#pragma once

#include "RealPetDesk.h"

namespace morvo::test {

/// A small pet, so that it has room to fly also on a screen of half the points, and hands on it.
class RealHandDesk : public RealPetDesk {
protected:
  void SetUp() override {
    RealPetDesk::SetUp();
    m_interactions.onScale = [this](double scale) { m_controller.setScale(scale); };
    m_interactions.setPetScale(smallest);
    startCompositor();
    show();
    m_workArea = m_screens.areas().front().workArea;
  }

  /// The hand lies on the pet's belly and presses.
  void press() {
    m_windowAt = window().position();
    m_pointer = evened(m_windowAt + belly());
    m_grip = m_pointer;
    hand({QStringLiteral("mousedown"), QStringLiteral("1")});
  }
  /// The hand moves and the window has followed.
  void dragBy(QPoint way) {
    m_pointer += way;
    hand({});
    const QPoint goal = m_windowAt + m_pointer - m_grip;
    ASSERT_TRUE(PrivateDesktop::waitUntil([this, goal] {
      // Rounding, where a point is one and a half pixels.
      return (window().position() - goal).manhattanLength() <= 1;
    }));
  }
  void dragInSteps(QPoint step, int steps) {
    for (int i = 0; i < steps; ++i) {
      dragBy(step);
    }
  }
  /// The hand slows down: what it does in one frame is no throw, however fast the machine.
  void settle(QPoint direction) { dragInSteps(direction, settlingSteps); }
  void release() { hand({QStringLiteral("mouseup"), QStringLiteral("1")}); }
  void hand(const QStringList &then) {
    const QPoint pixel = pixelAt(m_pointer);
    static_cast<void>(
        desktop().output(QStringLiteral("xdotool"),
                         QStringList{QStringLiteral("mousemove"), QString::number(pixel.x()),
                                     QString::number(pixel.y())} +
                             then));
  }
  /// Whole pixels also on a screen of one and a half to the point.
  [[nodiscard]] static QPoint evened(QPoint point) { return {point.x() & ~1, point.y() & ~1}; }

  /// Where the X server has the window, in points.
  [[nodiscard]] QPoint onServer() {
    const QString told = desktop().output(
        QStringLiteral("xdotool"), {QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"),
                                    QString::number(window().winId())});
    const auto number = [&told](const QString &name) {
      const qsizetype start = told.indexOf(name) + name.size();
      return told.mid(start, told.indexOf(u'\n', start) - start).toInt();
    };
    const QPointF origin = window().screen()->geometry().topLeft();
    const QPointF pixel(number(QStringLiteral("X=")), number(QStringLiteral("Y=")));
    return (origin + (pixel - origin) / window().devicePixelRatio()).toPoint();
  }
  [[nodiscard]] bool standsOnServerAt(QPoint place) {
    return PrivateDesktop::waitUntil(
        [this, place] { return (onServer() - place).manhattanLength() <= 1; });
  }
  [[nodiscard]] const PetMotion &motion() { return *m_controller.motion(); }
  [[nodiscard]] PetScene &scene() { return m_controller.scene(); }
  [[nodiscard]] bool lands() {
    // A flight takes a few seconds, and many times that on a machine that is short of time.
    for (int i = 0; i < 6 && motion().isFlying(); ++i) {
      static_cast<void>(PrivateDesktop::waitUntil([this] { return !motion().isFlying(); }));
    }
    return !motion().isFlying();
  }
  [[nodiscard]] static int bottom(const QRect &rect) { return rect.y() + rect.height(); }

  static constexpr double smallest = 0.8;
  static constexpr int settlingSteps = 8;
  QPoint m_windowAt;
  QPoint m_grip;
  QPoint m_pointer;
  QRect m_workArea;
};

} // namespace morvo::test
