#pragma once

#include "platform/WindowSystem.h"

#include <vector>

namespace morvo::test {

/// A desktop that writes down what windows ask of it.
class FakeWindowSystem final : public WindowSystem {
public:
  void prepareOverlay(QWindow &window) override {
    overlays.push_back(&window);
    preparedBeforeShown = preparedBeforeShown && window.handle() != nullptr && !window.isVisible();
  }
  void setInputRegion(QWindow & /*window*/, const QRegion &region) override {
    inputRegions.push_back(region);
  }
  void setShape(QWindow & /*window*/, const std::optional<QRegion> &region) override {
    shapes.push_back(region);
  }
  void stackBeneath(QWindow & /*window*/, QWindow *other) override { above.push_back(other); }
  [[nodiscard]] bool isCompositing() const override { return m_compositing; }
  void onCompositingChanged(std::function<void()> handler) override {
    m_handler = std::move(handler);
  }

  void setCompositing(bool compositing) {
    m_compositing = compositing;
    if (m_handler) {
      m_handler();
    }
  }
  [[nodiscard]] bool hasListener() const { return static_cast<bool>(m_handler); }

  std::vector<QWindow *> overlays;
  /// What overlays were put beneath, null for nothing.
  std::vector<QWindow *> above;
  bool preparedBeforeShown = true;
  std::vector<QRegion> inputRegions;
  std::vector<std::optional<QRegion>> shapes;

private:
  bool m_compositing = true;
  std::function<void()> m_handler;
};

} // namespace morvo::test
