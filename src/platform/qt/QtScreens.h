#pragma once

#include "platform/Screens.h"

#include <QObject>

class QScreen;

namespace morvo {

/// The monitors as Qt knows them. Needs the application object, which must outlive it. Main thread.
class QtScreens final : public Screens {
public:
  QtScreens();
  QtScreens(const QtScreens &) = delete;
  QtScreens &operator=(const QtScreens &) = delete;
  ~QtScreens() override;

  [[nodiscard]] std::vector<Area> areas() const override;
  [[nodiscard]] QPoint pointer() const override;
  void onChanged(std::function<void()> handler) override { m_handler = std::move(handler); }

private:
  void watch(QScreen *screen);
  void changed();

  std::function<void()> m_handler;
  /// Ends the connections to the screens with this object.
  QObject m_context;
};

} // namespace morvo
