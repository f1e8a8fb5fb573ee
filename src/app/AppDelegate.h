#pragma once

#include "app/PanelHost.h"
#include "app/PetStore.h"
#include "platform/TrayIcon.h"

#include <QIcon>
#include <QObject>
#include <QStringList>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace morvo {

/// Starts the program's parts in their order and drives the tray icon. Lives as long as the
/// application. Main thread.
class AppDelegate final : public QObject {
  Q_OBJECT

public:
  /// What the delegate works with. The references must outlive it.
  struct Parts {
    Setting setting;
    Scheduler &scheduler;
    TrayIcon &statusItem;
    PetBody &pet;
    std::function<std::unique_ptr<PetStore>()> makeStore;
    std::function<std::unique_ptr<PanelHost>(PetStore &)> makePopover;
    /// The id of the pet in play.
    std::function<QString()> personaInPlay;
    /// The tray's idle frames of a persona; empty when it has none, nothing while they are being
    /// made: then they are asked for again, and the tray shows what it has.
    std::function<std::optional<std::vector<QIcon>>(const QString &personaId)> idleFrames;
    /// Makes the whole application look as the settings say.
    std::function<void()> applyAppearance;
    /// Looks for an update, as the launch does; may be missing.
    std::function<void()> checkForUpdate;
    /// Takes a link of the program's own scheme; may be missing.
    std::function<void(const QString &url)> handleOpenUrl;
  };

  /// The word that ends a running program.
  static const QString quitWord;
  /// Whether `open` knows what to do with the word.
  [[nodiscard]] static bool understands(const QString &word);

  explicit AppDelegate(Parts parts);
  ~AppDelegate() override;

  /// The whole start.
  void applicationDidFinishLaunching();
  /// Words that a later start handed over: links are opened, "quit" ends the program, anything
  /// else, or nothing, brings up the panel.
  void open(const QStringList &words);

  void togglePopover();
  /// Brings up the panel, or brings it to the front.
  void showPopover();
  void applyAppearance() const;
  /// Shows the next frame in the tray; the red dot while an approval is pending.
  void tickFrame();

  [[nodiscard]] PetStore *store() const { return m_store.get(); }
  [[nodiscard]] std::size_t frameIdx() const { return m_frameIdx; }
  [[nodiscard]] const QString &iconPersonaId() const { return m_iconPersonaId; }

private:
  void setupMenubar();
  void showPopoverAt(const std::optional<QPoint> &click);
  void showPanelAtStart();
  void showPetAtStart();
  /// The persona that `MORVO_PERSONA_ID` names, if it is a known one.
  [[nodiscard]] std::optional<MorvoPersona> personaOfEnvironment() const;
  void loadFrames(const QString &personaId);
  void setIcon(const QIcon &icon);

  Parts m_parts;
  std::unique_ptr<PetStore> m_store;
  std::unique_ptr<PanelHost> m_popover;
  Scheduler::Timer m_frameTimer;
  Scheduler::Timer m_showPanel;
  Scheduler::Timer m_updateCheck;
  /// The idle frames in play, and the same with the red dot.
  std::vector<QIcon> m_frames;
  std::vector<QIcon> m_dottedFrames;
  /// Stand in for missing frames: at rest, and while an approval is pending.
  std::array<QIcon, 2> m_titles;
  std::size_t m_frameIdx = 0;
  QString m_iconPersonaId;
  /// Ticks until missing frames are looked for again.
  int m_ticksToLook = 0;
  /// What the tray shows, so that a frame like the last one costs nothing.
  qint64 m_shownIcon = 0;
};

} // namespace morvo
