#include "RealHandDesk.h"
#include "pet/PanelGeometry.h"

#include <array>

namespace morvo {
namespace {

using test::PrivateDesktop;

/// Two monitors side by side, as the X server tells of them; each is half of the desktop.
class RealMonitorsTest : public test::RealHandDesk {
protected:
  void SetUp() override {
    addMonitor(left, QStringLiteral("screen"), 0);
    addMonitor(right, QStringLiteral("none"), width);
    ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return monitors() == 2; }));
    RealHandDesk::SetUp();
  }
  void TearDown() override {
    RealHandDesk::TearDown();
    for (const auto *screen : QGuiApplication::screens()) {
      remove(screen->name());
    }
    EXPECT_TRUE(PrivateDesktop::waitUntil(
        [this] { return monitors() == 1 && m_screens.areas().front().frame.width() > width; }));
  }

  void addMonitor(const QString &name, const QString &output, int x) {
    xrandr({QStringLiteral("--setmonitor"), name,
            QStringLiteral("%1/%1x%2/%2+%3+0").arg(width).arg(height).arg(x), output});
  }
  void remove(const QString &name) { xrandr({QStringLiteral("--delmonitor"), name}); }
  void xrandr(const QStringList &words) {
    static_cast<void>(desktop().output(QStringLiteral("xrandr"), words));
  }
  [[nodiscard]] std::size_t monitors() const { return m_screens.areas().size(); }
  [[nodiscard]] QRect areaOf(const QString &name) const {
    for (const auto *screen : QGuiApplication::screens()) {
      if (screen->name() == name) {
        return screen->availableGeometry();
      }
    }
    return {};
  }

  /// Carries the pet to the middle of the other monitor, and holds it there.
  void carryOver() {
    press();
    // To where both monitors reach, also where one counts fewer points.
    m_pointer = QPoint(areaOf(left).right(), areaOf(right).center().y());
    hand({});
    const int middle = areaOf(right).center().x();
    while (window().geometry().center().x() < middle && m_pointer.x() < middle + width) {
      m_pointer += QPoint(12, 0);
      hand({});
      const QPoint goal = m_pointer;
      ASSERT_TRUE(PrivateDesktop::waitUntil(
          [&] { return (m_screens.pointer() - goal).manhattanLength() <= 2; }));
      ASSERT_TRUE(
          PrivateDesktop::waitUntil([&] { return window().geometry().contains(m_pointer); }));
    }
    // A hand that slows down does not throw.
    for (int step = 0; step < settlingSteps; ++step) {
      m_pointer += QPoint(1, 0);
      const QPoint goal = m_pointer;
      hand({});
      ASSERT_TRUE(PrivateDesktop::waitUntil(
          [&] { return (m_screens.pointer() - goal).manhattanLength() <= 2; }));
    }
  }
  void putDown() {
    release();
    ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return !scene().isCarried(); }));
    ASSERT_TRUE(lands());
  }
  /// The window as large as it should be, in points of the monitor it is on.
  [[nodiscard]] bool isWhole() {
    return PrivateDesktop::waitUntil([this] {
      return window().size() == PanelGeometry::panelSize(smallest) &&
             window().size() == window().place().size();
    });
  }
  /// The pet's body is seen where it should be, and what is under it beside it.
  [[nodiscard]] bool isSeen() {
    return screenComesToShow([this](const QImage &image) {
      return image.pixelColor(onScreen(belly())) != image.pixelColor(onScreen({1, 1})) &&
             image.pixelColor(onScreen({1, 1})) == image.pixelColor(onScreen({-2, 1}));
    });
  }

  static inline const QString left = QStringLiteral("left");
  static inline const QString right = QStringLiteral("right");
  static constexpr int width = 640;
  static constexpr int height = 800;
};

TEST_F(RealMonitorsTest, ThePetStandsOnTheMonitorAtTheOriginAtFirst) {
  EXPECT_TRUE(areaOf(left).contains(window().place()));
  EXPECT_TRUE(isSeen());
}

TEST_F(RealMonitorsTest, IsCarriedToTheOtherMonitorAndStaysThere) {
  carryOver();
  EXPECT_TRUE(scene().isCarried());
  putDown();
  EXPECT_TRUE(areaOf(right).intersects(window().place()));
  EXPECT_EQ(window().screen()->name(), right);
  EXPECT_TRUE(isWhole());
  EXPECT_TRUE(standsOnServerAt(window().place().topLeft()));
  EXPECT_TRUE(isSeen());
  keep(QStringLiteral("other-monitor"));
  clickAt(onScreen(belly()));
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] { return m_interactions.taps == 1; }));
}

TEST_F(RealMonitorsTest, AThrownPetBouncesOffTheEdgeOfItsMonitor) {
  int farthest = 0;
  m_controller.throwPet({1500, -300});
  ASSERT_TRUE(PrivateDesktop::waitUntil([&] {
    farthest = std::max(farthest, window().place().right());
    return !motion().isFlying();
  }));
  EXPECT_EQ(farthest, areaOf(left).right());
  EXPECT_TRUE(areaOf(left).contains(window().place()));
  EXPECT_EQ(bottom(window().place()), bottom(areaOf(left)));
}

TEST_F(RealMonitorsTest, AThrowOnTheOtherMonitorLandsOnItsFloor) {
  carryOver();
  putDown();
  m_controller.throwPet({-1500, -300});
  ASSERT_TRUE(lands());
  EXPECT_TRUE(areaOf(right).contains(window().place()));
  EXPECT_EQ(bottom(window().place()), bottom(areaOf(right)));
  EXPECT_TRUE(standsOnServerAt(window().place().topLeft()));
}

TEST_F(RealMonitorsTest, APetThatStoodOnARemovedMonitorComesBack) {
  carryOver();
  putDown();
  remove(right);
  ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return monitors() == 1; }));
  EXPECT_TRUE(
      PrivateDesktop::waitUntil([this] { return areaOf(left).contains(window().place()); }));
  EXPECT_TRUE(isWhole());
  EXPECT_TRUE(standsOnServerAt(window().place().topLeft()));
  EXPECT_TRUE(isSeen());
}

TEST_F(RealMonitorsTest, APetThatFliesOverARemovedMonitorLandsOnTheOther) {
  carryOver();
  putDown();
  m_controller.throwPet({200, -1500});
  remove(right);
  ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return monitors() == 1; }));
  ASSERT_TRUE(lands());
  EXPECT_TRUE(
      PrivateDesktop::waitUntil([this] { return areaOf(left).contains(window().place()); }));
  EXPECT_TRUE(standsOnServerAt(window().place().topLeft()));
}

TEST_F(RealMonitorsTest, APetThatIsHeldOverARemovedMonitorComesBackWhenItIsLetGo) {
  carryOver();
  remove(right);
  ASSERT_TRUE(PrivateDesktop::waitUntil([this] { return monitors() == 1; }));
  putDown();
  EXPECT_TRUE(PrivateDesktop::waitUntil([this] {
    const std::array areas{m_screens.areas().front().workArea};
    return PanelGeometry::isReachable(window().place(), areas);
  }));
  EXPECT_TRUE(isWhole());
  EXPECT_TRUE(standsOnServerAt(window().place().topLeft()));
}

} // namespace
} // namespace morvo
