#pragma once

#include "app/EntryModes.h"

#include <QImage>

namespace morvo {
class PanelEntries;
class PanelStage;
class PetStore;
} // namespace morvo

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

/// The panel as it is drawn at that many pixels a point, on a screen of any height; nothing of it
/// moves. Null, with a line on standard error, when it cannot be made. The software backend must
/// have been chosen.
[[nodiscard]] QImage picture(PetStore &store, PanelEntries &entries, PanelStage &stage,
                             double pixels);

} // namespace morvo::RenderMode
