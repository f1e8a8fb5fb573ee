#pragma once

#include "app/PanelEntries.h"
#include "panels/PanelRows.h"
#include "panels/PanelSection.h"

namespace morvo {

/// The personas to choose from, and the user's own to manage. `choices` has the rows label,
/// persona; `customs` has persona, name, isCurrent, missingBadge, missingLine.
class PersonasSection : public morvo::PanelSection {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(morvo::PanelEntries *entries READ entries WRITE setEntries NOTIFY changed REQUIRED)
  Q_PROPERTY(QAbstractItemModel *choices READ choices CONSTANT)
  Q_PROPERTY(QAbstractItemModel *customs READ customs CONSTANT)
  Q_PROPERTY(QString current READ current NOTIFY changed)
  Q_PROPERTY(bool hasCustoms READ hasCustoms NOTIFY changed)
  Q_PROPERTY(bool filling READ isFilling NOTIFY changed)
  Q_PROPERTY(QString fillLabel READ fillLabel NOTIFY changed)
  Q_PROPERTY(QColor warningColor READ warningColor NOTIFY changed)

public:
  explicit PersonasSection(QObject *parent = nullptr);

  [[nodiscard]] PanelEntries *entries() const { return m_entries; }
  void setEntries(PanelEntries *entries);

  [[nodiscard]] PanelRows *choices() { return &m_choices; }
  [[nodiscard]] PanelRows *customs() { return &m_customs; }
  /// The current persona in the words of the menu, without its mark.
  [[nodiscard]] const QString &current() const { return m_current; }
  [[nodiscard]] bool hasCustoms() const { return m_customs.rowCount() > 0; }
  [[nodiscard]] bool isFilling() const { return m_isFilling; }
  [[nodiscard]] const QString &fillLabel() const { return m_fillLabel; }
  [[nodiscard]] const QColor &warningColor() const { return m_warningColor; }

  Q_INVOKABLE void choose(const QString &id);
  Q_INVOKABLE void createNew();
  /// Takes a name that holds more than white space.
  Q_INVOKABLE void rename(const QString &id, const QString &name);
  Q_INVOKABLE void remove(const QString &id);
  Q_INVOKABLE void fillMissing(const QString &id);

protected:
  void connectTo(PetStore &store) override;
  void update(const PetStore &store, const PanelLook &look) override;

private:
  QPointer<PanelEntries> m_entries;
  PanelRows m_choices;
  PanelRows m_customs;
  QString m_current;
  bool m_isFilling = false;
  QString m_fillLabel;
  QColor m_warningColor;
};

} // namespace morvo
