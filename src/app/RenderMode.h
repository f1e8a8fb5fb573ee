#pragma once

#include "app/EntryModes.h"

/// A picture of the main panel without a screen, for `MORVO_RENDER`.
namespace morvo::RenderMode {

/// Pixels a point.
inline constexpr double scale = 2;

/// Writes a PNG of the panel on a store that shows a fixed scene, with the agents of this machine.
/// `MORVO_PERSONA_ID` names the pet, which may wear the picture `MORVO_AVATAR_PATH`;
/// `MORVO_DRAWER` and `MORVO_SHOW_PANEL` choose the tab. Stores nothing of the scene. Tells on
/// standard error that the picture was written; it does so too when only the writing of the file
/// failed. Needs a QApplication; the offscreen platform serves.
void run(const EntryModes::Ground &ground, const QString &path);

} // namespace morvo::RenderMode
