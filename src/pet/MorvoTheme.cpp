#include "pet/MorvoTheme.h"

#include "platform/SettingKeys.h"

#include <algorithm>
#include <array>

namespace morvo::MorvoTheme {
namespace {

AdaptiveColor pair(const std::array<float, 3> &light, const std::array<float, 3> &dark) {
  return {QColor::fromRgbF(light[0], light[1], light[2]),
          QColor::fromRgbF(dark[0], dark[1], dark[2])};
}

} // namespace

std::span<const Preset> presets() {
  static const std::array all{
      Preset{u"teal", u"荧光青", pair({0.043F, 0.612F, 0.518F}, {0.337F, 0.878F, 0.761F})},
      Preset{u"blue", u"深海蓝", pair({0.094F, 0.451F, 0.851F}, {0.4F, 0.7F, 1.0F})},
      Preset{u"purple", u"星紫", pair({0.451F, 0.298F, 0.8F}, {0.7F, 0.55F, 1.0F})},
      Preset{u"pink", u"珊瑚粉", pair({0.851F, 0.278F, 0.549F}, {1.0F, 0.5F, 0.7F})},
      Preset{u"amber", u"琥珀", pair({0.8F, 0.498F, 0.051F}, {1.0F, 0.72F, 0.3F})},
  };
  return all;
}

const Preset &current(const Setting &setting) {
  const auto forced = setting.environment().nonEmpty(QStringLiteral("MORVO_THEME"));
  const QString wanted =
      forced ? *forced : setting.str(SettingKeys::themeColor, QStringLiteral("teal"));
  const auto all = presets();
  const auto found = std::ranges::find(all, wanted, &Preset::id);
  return found == all.end() ? all.front() : *found;
}

} // namespace morvo::MorvoTheme
