#pragma once

#include <QPoint>
#include <QRect>

#include <functional>
#include <vector>

namespace morvo {

/// The monitors of the desktop and the pointer on them. Device-independent pixels, y down. Main
/// thread.
class Screens {
public:
  struct Area {
    /// The whole monitor.
    QRect frame;
    /// What panels and docks leave of it.
    QRect workArea;

    bool operator==(const Area &) const = default;
  };

  virtual ~Screens() = default;

  /// All monitors, the main one first; empty where there is none at the moment.
  [[nodiscard]] virtual std::vector<Area> areas() const = 0;
  /// Where the pointer is.
  [[nodiscard]] virtual QPoint pointer() const = 0;
  /// Has `handler` called after a monitor came, went, or changed its place, size or work area. It
  /// replaces the one before; an empty one ends the calls.
  virtual void onChanged(std::function<void()> handler) = 0;
};

} // namespace morvo
