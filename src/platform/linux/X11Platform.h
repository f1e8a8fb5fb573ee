#pragma once

#include "base/Environment.h"

#include <QString>

#include <optional>

/// The choice of the window system. A Wayland client may not place its own window, so the program
/// asks for X11 (XWayland) wherever there is one.
namespace morvo::X11Platform {

struct Choice {
  /// The Qt platform to ask for; nothing leaves it to Qt and the user.
  std::optional<QString> qtPlatform;
  /// What the user loses on this desktop; nothing when all works.
  std::optional<QString> warning;

  bool operator==(const Choice &) const = default;
};

/// A user's own choice in `QT_QPA_PLATFORM` stands. Else X11 where `DISPLAY` names one, and a
/// warning where there is only Wayland.
[[nodiscard]] Choice choose(const Environment &environment);

/// Makes the choice for this process, with a line on standard error for a warning. To be called
/// before the application object is made.
void chooseQtPlatform(const Environment &environment);

} // namespace morvo::X11Platform
