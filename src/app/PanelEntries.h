#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

namespace morvo {

/// The doors that lead out of the panel into other parts of the program. A door that nobody serves
/// is not shown. Main thread.
class PanelEntries final : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool settings READ hasSettings CONSTANT)
  Q_PROPERTY(bool chat READ hasChat CONSTANT)
  Q_PROPERTY(bool newPet READ hasNewPet CONSTANT)
  Q_PROPERTY(bool fillAnimations READ hasFillAnimations CONSTANT)

public:
  struct Doors {
    /// Opens the settings window.
    std::function<void()> settings;
    /// Begins a chat turn with the user's text.
    std::function<void(const QString &text)> send;
    /// Begins a new pet in a window of that title, and has the account's rights looked up again.
    std::function<void(const QString &title)> newPet;
    /// The action groups of a pet that are still to be made.
    std::function<QStringList(const QString &personaId)> missingFrameSets;
    /// Makes them; those that are complete stay.
    std::function<void(const QString &personaId)> fillMissingAnimations;
  };

  explicit PanelEntries(Doors doors);

  [[nodiscard]] bool hasSettings() const { return m_doors.settings != nullptr; }
  [[nodiscard]] bool hasChat() const { return m_doors.send != nullptr; }
  [[nodiscard]] bool hasNewPet() const { return m_doors.newPet != nullptr; }
  [[nodiscard]] bool hasFillAnimations() const {
    return m_doors.missingFrameSets != nullptr && m_doors.fillMissingAnimations != nullptr;
  }

  // Each does nothing while nobody serves it.
  Q_INVOKABLE void openSettings() const;
  void send(const QString &text) const;
  void openNewPet(const QString &title) const;
  [[nodiscard]] QStringList missingFrameSets(const QString &personaId) const;
  void fillMissingAnimations(const QString &personaId) const;

private:
  Doors m_doors;
};

} // namespace morvo
