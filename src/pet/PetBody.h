#pragma once

#include "pet/PetMenuAction.h"

#include <QString>

#include <vector>

namespace morvo {

/// The pet as the hub sees it: a body that plays, speaks in a bubble, and stands on the desktop.
/// Implemented by `DesktopPetController`. Main thread.
class PetBody {
public:
  virtual ~PetBody() = default;

  /// Plays an action of the pack, or a frame set, on every stage. False when no stage could.
  virtual bool react(const QString &kind) = 0;
  virtual void setMood(const QString &mood) = 0;
  virtual void setPersona(const QString &personaId) = 0;
  virtual void emitHearts() = 0;
  /// Shows the pet at its default place, or takes its window away. Changes no setting.
  virtual void setVisible(bool visible) = 0;
  /// Keeps the pet from acting by itself while agents run.
  virtual void setQuietMode(bool quiet) = 0;
  /// The speech bubble; an empty text takes it away.
  virtual void setBubble(const QString &text) = 0;
  /// Size factor.
  virtual void setScale(double scale) = 0;
  /// Opacity of the sprite; the bubble stays readable.
  virtual void setOpacity(double opacity) = 0;
  /// What the pet in play can be asked for, sorted by label.
  [[nodiscard]] virtual std::vector<PetMenuAction> catalogActions() const = 0;
};

} // namespace morvo
