#pragma once

#include "platform/Screens.h"

#include <utility>

namespace morvo::test {

/// Monitors and a pointer where the test puts them: one monitor with a panel at its top at first.
class FakeScreens final : public Screens {
public:
  [[nodiscard]] std::vector<Area> areas() const override { return m_areas; }
  [[nodiscard]] QPoint pointer() const override { return pointerAt; }
  void onChanged(std::function<void()> handler) override { m_handler = std::move(handler); }

  void change(std::vector<Area> areas) {
    m_areas = std::move(areas);
    if (m_handler) {
      m_handler();
    }
  }
  [[nodiscard]] QRect workArea() const { return m_areas.front().workArea; }

  QPoint pointerAt;

private:
  std::vector<Area> m_areas{{{0, 0, 1280, 800}, {0, 30, 1280, 770}}};
  std::function<void()> m_handler;
};

} // namespace morvo::test
