#include "platform/linux/X11Platform.h"

#include "base/Diagnostics.h"

#include <QtGlobal>

namespace morvo::X11Platform {
namespace {

constexpr auto qtPlatformVariable = "QT_QPA_PLATFORM";

} // namespace

Choice choose(const Environment &environment) {
  if (environment.nonEmpty(QString::fromLatin1(qtPlatformVariable))) {
    return {};
  }
  if (environment.nonEmpty(QStringLiteral("DISPLAY"))) {
    return {.qtPlatform = QStringLiteral("xcb"), .warning = std::nullopt};
  }
  if (environment.nonEmpty(QStringLiteral("WAYLAND_DISPLAY"))) {
    return {.qtPlatform = std::nullopt,
            .warning = QStringLiteral("no X display (XWayland) on this Wayland desktop: the pet is "
                                      "a plain window that cannot walk, stay above others or let "
                                      "clicks through")};
  }
  return {};
}

void chooseQtPlatform(const Environment &environment) {
  const Choice choice = choose(environment);
  if (choice.qtPlatform) {
    qputenv(qtPlatformVariable, choice.qtPlatform->toLatin1());
  }
  if (choice.warning) {
    Diagnostics::line(u"DESKPET", *choice.warning);
  }
}

} // namespace morvo::X11Platform
