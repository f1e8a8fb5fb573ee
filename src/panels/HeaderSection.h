#pragma once

#include "panels/PanelSection.h"

namespace morvo {

/// The panel's head: who the pet is, how it feels, and what is wrong with the chat.
class HeaderSection : public morvo::PanelSection {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString name READ name NOTIFY changed)
  Q_PROPERTY(QString state READ state NOTIFY changed)
  Q_PROPERTY(QColor stateColor READ stateColor NOTIFY changed)
  Q_PROPERTY(QString trouble READ trouble NOTIFY changed)
  Q_PROPERTY(QColor troubleColor READ troubleColor NOTIFY changed)
  Q_PROPERTY(QString settingsHelp READ settingsHelp CONSTANT)

public:
  using PanelSection::PanelSection;

  [[nodiscard]] const QString &name() const { return m_name; }
  [[nodiscard]] const QString &state() const { return m_state; }
  [[nodiscard]] const QColor &stateColor() const { return m_stateColor; }
  /// Empty while the chat is well: the line is hidden then.
  [[nodiscard]] const QString &trouble() const { return m_trouble; }
  [[nodiscard]] const QColor &troubleColor() const { return m_troubleColor; }
  [[nodiscard]] static QString settingsHelp() { return QStringLiteral("打开独立设置窗口"); }

protected:
  void connectTo(PetStore &store) override;
  void update(const PetStore &store, const PanelLook &look) override;

private:
  QString m_name;
  QString m_state;
  QColor m_stateColor;
  QString m_trouble;
  QColor m_troubleColor;
};

} // namespace morvo
