#pragma once

#include "app/PanelEntries.h"
#include "app/PanelStage.h"

#include <QQmlEngine>

namespace morvo {

// What the program hands to the panel, by name in QML.

struct PanelEntriesElement {
  Q_GADGET
  QML_FOREIGN(morvo::PanelEntries)
  QML_NAMED_ELEMENT(PanelEntries)
  QML_UNCREATABLE("The program owns its doors.")
};

struct PanelStageElement {
  Q_GADGET
  QML_FOREIGN(morvo::PanelStage)
  QML_NAMED_ELEMENT(PanelStage)
  QML_UNCREATABLE("The program owns the stage.")
};

} // namespace morvo
