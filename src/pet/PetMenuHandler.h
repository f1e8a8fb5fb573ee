#pragma once

#include "pet/PetBehaviorMode.h"
#include "pet/PetInteractions.h"
#include "pet/PetMenuAction.h"
#include "platform/ContextMenu.h"

#include <functional>
#include <vector>

namespace morvo {

/// The pet's context menu: its entries, and what each of them does. Main thread.
class PetMenuHandler {
public:
  /// What the body itself does; none of it is missing.
  struct Body {
    std::function<PetBehaviorMode()> behaviorMode;
    std::function<void(PetBehaviorMode)> setBehaviorMode;
    std::function<std::vector<PetMenuAction>()> catalogActions;
    std::function<void()> stroll;
    std::function<void()> comeHere;
    std::function<void()> hide;
  };

  explicit PetMenuHandler(Body body);

  /// The entries for the present state. They refer to this object and to `interactions`, and are
  /// to be called while both live.
  [[nodiscard]] std::vector<ContextMenu::Entry> entries(PetInteractions &interactions) const;

private:
  [[nodiscard]] ContextMenu::Entry modeEntry(const QString &title, PetBehaviorMode mode) const;
  [[nodiscard]] static ContextMenu::Entry actionEntry(PetInteractions &interactions,
                                                      const PetMenuAction &action);
  [[nodiscard]] static ContextMenu::Entry petEntry(PetInteractions &interactions,
                                                   const PetChoice &choice);
  [[nodiscard]] std::vector<ContextMenu::Entry> actionEntries(PetInteractions &interactions) const;
  [[nodiscard]] static std::vector<ContextMenu::Entry> petEntries(PetInteractions &interactions);

  Body m_body;
};

} // namespace morvo
