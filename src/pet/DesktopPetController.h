#pragma once

#include "base/RandomSource.h"
#include "pet/DesktopPetWindow.h"
#include "pet/PetBody.h"
#include "pet/PetInteractions.h"
#include "platform/Setting.h"

#include <QObject>

#include <memory>

class QScreen;

namespace morvo {

/// The pet's body: its two stages, on the desktop and in the panel, and its window. The window
/// exists only while the pet is shown. Main thread.
class DesktopPetController final : public PetBody {
public:
  /// What the body stands on; the references outlive it.
  struct Ground {
    PetFiles files;
    Setting setting;
    WindowSystem &windows;
    Clock &clock;
    Scheduler &scheduler;
    RandomSource &random;
  };

  explicit DesktopPetController(const Ground &ground);
  DesktopPetController(const DesktopPetController &) = delete;
  DesktopPetController &operator=(const DesktopPetController &) = delete;
  ~DesktopPetController() override;

  /// Who is told of what the user does to the pet; outlives this object or is set to null. Without
  /// one the pet does not show itself.
  void setInteractions(PetInteractions *interactions) { m_interactions = interactions; }

  bool react(const QString &kind) override;
  void setMood(const QString &mood) override;
  void setPersona(const QString &personaId) override;
  void emitHearts() override;
  void setVisible(bool visible) override;
  void setQuietMode(bool quiet) override;
  void setBubble(const QString &text) override;
  void setScale(double scale) override;
  void setOpacity(double opacity) override;
  [[nodiscard]] std::vector<PetMenuAction> catalogActions() const override;

  /// Shows the pet at its default place; nothing happens when it is already shown.
  void show();
  /// Appearance, theme or text size have changed.
  void refreshLook();

  /// The id of the pet that all stages show.
  [[nodiscard]] const QString &personaInPlay() const { return m_sprites.persona(); }
  [[nodiscard]] bool isVisible() const { return m_window != nullptr; }
  [[nodiscard]] bool isQuiet() const { return m_scene.isQuiet(); }
  /// Null while the pet is hidden.
  [[nodiscard]] DesktopPetWindow *window() const { return m_window.get(); }
  [[nodiscard]] PetScene &scene() { return m_scene; }
  /// The stage of the panel. Its owner presents it, and lets its time pass while it is painted.
  [[nodiscard]] PetScene &popoverScene() { return m_popoverScene; }

private:
  /// A window may be taken away from within one of its own events.
  struct RetireLater {
    void operator()(DesktopPetWindow *window) const;
  };

  void hide();
  void tapped();
  /// Brings both stages up to now, so that what they are told next begins now.
  void catchUp();
  /// Takes the pet back onto a screen after a monitor was unplugged or a work area shrank.
  void recoverIfUnreachable();
  void watchScreen(QScreen *screen);
  [[nodiscard]] static QRect defaultPlace(QSize size);
  [[nodiscard]] BubbleLook bubbleLook() const;
  [[nodiscard]] bool isDebugging() const;
  /// A line on standard error, while `MORVO_DEBUG` is "1".
  void tell(const QString &text) const;

  Setting m_setting;
  WindowSystem *m_windows;
  Clock *m_clock;
  Scheduler *m_scheduler;
  PetInteractions *m_interactions = nullptr;
  /// Mutable, for looking up a frame set finds and keeps its files.
  mutable MorvoSprites m_sprites;
  mutable PetScene m_scene;
  PetScene m_popoverScene;
  std::unique_ptr<DesktopPetWindow, RetireLater> m_window;
  QString m_bubble;
  double m_scale;
  double m_opacity;
  /// Ends the connections to the screens with this object.
  QObject m_context;
};

} // namespace morvo
