#pragma once

#include "base/Environment.h"

#include <QObject>
#include <QString>

#include <array>

namespace morvo {

/// The panel's tabs, in their order.
enum class MainPanelTab { chat, monitor, pet };

/// What the tabs are called, and which one the panel begins with.
namespace MainPanelTabs {

inline constexpr std::array all{MainPanelTab::chat, MainPanelTab::monitor, MainPanelTab::pet};

[[nodiscard]] QString label(MainPanelTab tab);
/// The name of its symbol.
[[nodiscard]] QString symbol(MainPanelTab tab);
/// As `MORVO_DRAWER` and `MORVO_SHOW_PANEL` say; the chat without them.
[[nodiscard]] MainPanelTab opening(const Environment &environment);

} // namespace MainPanelTabs
} // namespace morvo
