#pragma once

#include "base/RandomSource.h"
#include "pet/DesktopPetWindow.h"
#include "pet/PetBehaviorMode.h"
#include "pet/PetBody.h"
#include "pet/PetInteractions.h"
#include "pet/PetMenuHandler.h"
#include "pet/PetMotion.h"
#include "pet/PetTouch.h"
#include "platform/ContextMenu.h"
#include "platform/Screens.h"
#include "platform/Setting.h"

#include <QPointer>

#include <memory>
#include <optional>

namespace morvo {

/// The pet's body: its two stages, on the desktop and in the panel, its window, and what moves
/// that. The window exists only while the pet is shown; whatever moves it ends with it. Main
/// thread.
class DesktopPetController final : public PetBody, private PetTouch {
public:
  /// What the body stands on; the references outlive it.
  struct Ground {
    PetFiles files;
    Setting setting;
    WindowSystem &windows;
    Screens &screens;
    ContextMenu &menu;
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
  void setInteractions(PetInteractions *interactions);

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

  /// Keeps the pet beneath that window, which is on the screen, and whatever pet is shown later;
  /// null puts it above all windows again. The window may go without a word.
  void standBeneath(QWindow *other);

  /// Throws the pet, in pixels a second, y down. Nothing while it is hidden.
  void throwPet(QPointF velocity);
  /// Walks somewhere; to the pointer. Nothing while it is hidden.
  void strollRandom();
  void comeHere();
  /// Takes the pet back so far that it can be seen and taken hold of. Nothing while it is hidden.
  void recoverIfOffscreen();
  /// Stores the mode and has the pet decide anew in a second.
  void setBehaviorMode(PetBehaviorMode mode);
  [[nodiscard]] PetBehaviorMode behaviorMode() const;
  /// Opens the context menu there, on the desktop. Nothing without anybody to tell.
  void showContextMenu(QPoint at);

  /// The id of the pet that all stages show.
  [[nodiscard]] const QString &personaInPlay() const { return m_sprites.persona(); }
  [[nodiscard]] bool isVisible() const { return m_window != nullptr; }
  [[nodiscard]] bool isQuiet() const { return m_scene.isQuiet(); }
  /// Both null while the pet is hidden.
  [[nodiscard]] DesktopPetWindow *window() const { return m_window.get(); }
  [[nodiscard]] const PetMotion *motion() const { return m_motion ? &*m_motion : nullptr; }
  [[nodiscard]] PetScene &scene() { return m_scene; }
  /// The stage of the panel. Its owner presents it, and lets its time pass while it is painted.
  [[nodiscard]] PetScene &popoverScene() { return m_popoverScene; }

private:
  /// A window may be taken away from within one of its own events.
  struct RetireLater {
    void operator()(DesktopPetWindow *window) const;
  };

  // `PetTouch`.
  void pressed() override;
  void dragged(const DragTrack &track) override;
  void released(const DragTrack &track) override;
  void dropped() override;
  void clicked() override;
  void menuRequested(QPoint at) override;
  void scrolled(double pixels) override;

  void hide();
  /// Brings both stages up to now, so that what they are told next begins now.
  void catchUp();
  /// Takes the pet back onto a screen after a monitor was unplugged or a work area shrank.
  void recoverIfUnreachable();
  [[nodiscard]] QRect defaultPlace(QSize size) const;
  /// Tells the scenes the user's colour, for the drawing of a pet without frames.
  void useTheme();
  [[nodiscard]] BubbleLook bubbleLook() const;
  [[nodiscard]] bool isDebugging() const;
  /// A line on standard error, while `MORVO_DEBUG` is "1".
  void tell(const QString &text) const;

  Setting m_setting;
  WindowSystem *m_windows;
  Screens *m_screens;
  ContextMenu *m_menu;
  Clock *m_clock;
  Scheduler *m_scheduler;
  RandomSource *m_random;
  PetInteractions *m_interactions = nullptr;
  /// Mutable, for looking up a frame set finds and keeps its files.
  mutable MorvoSprites m_sprites;
  mutable PetScene m_scene;
  PetScene m_popoverScene;
  std::unique_ptr<DesktopPetWindow, RetireLater> m_window;
  /// There exactly while the window is.
  std::optional<PetMotion> m_motion;
  PetMenuHandler m_menuHandler;
  QPointer<QWindow> m_above;
  QString m_bubble;
  double m_scale;
};

} // namespace morvo
