#include "platform/Appearance.h"

#include "platform/SettingKeys.h"

namespace morvo::AppearanceController {

Appearance wanted(const Setting &setting) {
  const QString name = setting.environment()
                           .value(QStringLiteral("MORVO_APPEARANCE"))
                           .value_or(setting.str(SettingKeys::appearance, QStringLiteral("dark")));
  if (name == u"light") {
    return Appearance::light;
  }
  return name == u"dark" ? Appearance::dark : Appearance::followSystem;
}

} // namespace morvo::AppearanceController
