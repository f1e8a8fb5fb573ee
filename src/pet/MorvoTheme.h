#pragma once

#include "pet/AdaptiveColor.h"
#include "platform/Setting.h"

#include <span>

/// The colour that the user chose for what matters.
namespace morvo::MorvoTheme {

struct Preset {
  QStringView id;
  QStringView name;
  AdaptiveColor color;
};

/// In the order in which they are offered.
[[nodiscard]] std::span<const Preset> presets();

/// The preset named by `MORVO_THEME` if that is set and not empty, else by the setting, else
/// "teal"; the first preset when the name is unknown.
[[nodiscard]] const Preset &current(const Setting &setting);

} // namespace morvo::MorvoTheme
