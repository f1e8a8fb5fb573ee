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
  Q_PROPERTY(QString openerName READ openerName NOTIFY changed)
  Q_PROPERTY(bool hasCustoms READ hasCustoms NOTIFY changed)
  Q_PROPERTY(bool filling READ isFilling NOTIFY changed)
  Q_PROPERTY(QString fillLabel READ fillLabel NOTIFY changed)
  Q_PROPERTY(QColor warningColor READ warningColor NOTIFY changed)
  Q_PROPERTY(QString title READ title CONSTANT)
  Q_PROPERTY(QString newPetLabel READ newPetLabel CONSTANT)
  Q_PROPERTY(QString manageLabel READ manageLabel CONSTANT)
  Q_PROPERTY(QString namePlaceholder READ namePlaceholder CONSTANT)
  Q_PROPERTY(QString saveLabel READ saveLabel CONSTANT)
  Q_PROPERTY(QString currentBadge READ currentBadge CONSTANT)
  Q_PROPERTY(QString chooseLabel READ chooseLabel CONSTANT)
  Q_PROPERTY(QString renameHelp READ renameHelp CONSTANT)
  Q_PROPERTY(QString removeHelp READ removeHelp CONSTANT)
  Q_PROPERTY(QString fillHelp READ fillHelp CONSTANT)

public:
  explicit PersonasSection(QObject *parent = nullptr);

  [[nodiscard]] PanelEntries *entries() const { return m_entries; }
  void setEntries(PanelEntries *entries);

  [[nodiscard]] PanelRows *choices() { return &m_choices; }
  [[nodiscard]] PanelRows *customs() { return &m_customs; }
  /// The current persona in the words of the menu, without its mark.
  [[nodiscard]] const QString &current() const { return m_current; }
  /// What the menu's button is called to those who do not see it.
  [[nodiscard]] QString openerName() const { return title() + u' ' + m_current; }
  [[nodiscard]] bool hasCustoms() const { return m_customs.rowCount() > 0; }
  [[nodiscard]] bool isFilling() const { return m_isFilling; }
  [[nodiscard]] const QString &fillLabel() const { return m_fillLabel; }
  [[nodiscard]] const QColor &warningColor() const { return m_warningColor; }
  [[nodiscard]] static QString title() { return QStringLiteral("形象"); }
  [[nodiscard]] static QString newPetLabel() { return QStringLiteral("＋ 新建自定义宠物…"); }
  [[nodiscard]] static QString manageLabel() { return QStringLiteral("管理我的宠物…"); }
  [[nodiscard]] static QString namePlaceholder() { return QStringLiteral("名字"); }
  [[nodiscard]] static QString saveLabel() { return QStringLiteral("保存"); }
  [[nodiscard]] static QString currentBadge() { return QStringLiteral("当前"); }
  [[nodiscard]] static QString chooseLabel() { return QStringLiteral("选中"); }
  [[nodiscard]] static QString renameHelp() { return QStringLiteral("改名"); }
  [[nodiscard]] static QString removeHelp() { return QStringLiteral("删除"); }
  [[nodiscard]] static QString fillHelp() {
    return QStringLiteral("只生成缺失动作，已有完整帧的组会跳过");
  }

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
