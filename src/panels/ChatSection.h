#pragma once

#include "app/PanelEntries.h"
#include "panels/ChatMessagesModel.h"
#include "panels/MainPanelTab.h"
#include "panels/PanelSection.h"

namespace morvo {

/// The chat tab: the timeline, and when one may write and send.
class ChatSection : public morvo::PanelSection {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(morvo::PanelEntries *entries READ entries WRITE setEntries NOTIFY changed REQUIRED)
  Q_PROPERTY(QAbstractItemModel *messages READ messages CONSTANT)
  Q_PROPERTY(bool empty READ isEmpty NOTIFY messagesShown)
  Q_PROPERTY(QString timelineName READ timelineName CONSTANT)
  Q_PROPERTY(QString invitation READ invitation CONSTANT)
  Q_PROPERTY(QString sendHelp READ sendHelp CONSTANT)
  Q_PROPERTY(QString placeholder READ placeholder NOTIFY changed)
  Q_PROPERTY(QString spentLine READ spentLine NOTIFY changed)
  Q_PROPERTY(bool typable READ isTypable NOTIFY changed)
  Q_PROPERTY(bool sendable READ isSendable NOTIFY changed)
  Q_PROPERTY(QColor sendColor READ sendColor NOTIFY changed)

public:
  using PanelSection::PanelSection;

  [[nodiscard]] PanelEntries *entries() const { return m_entries; }
  void setEntries(PanelEntries *entries);

  [[nodiscard]] ChatMessagesModel *messages() { return &m_messages; }
  [[nodiscard]] bool isEmpty() const { return m_messages.rowCount() == 0; }
  [[nodiscard]] static QString timelineName() { return MainPanelTabs::label(MainPanelTab::chat); }
  [[nodiscard]] static QString sendHelp() { return QStringLiteral("发送"); }
  /// Shown in place of an empty timeline.
  [[nodiscard]] static QString invitation() {
    return QStringLiteral("跟它说点什么吧，它会一直陪着你写代码。");
  }
  [[nodiscard]] const QString &placeholder() const { return m_placeholder; }
  /// Empty while the day's quota lasts: the line is hidden then.
  [[nodiscard]] const QString &spentLine() const { return m_spentLine; }
  [[nodiscard]] bool isTypable() const { return m_spentLine.isEmpty(); }
  [[nodiscard]] bool isSendable() const { return m_isSendable; }
  [[nodiscard]] const QColor &sendColor() const { return m_sendColor; }

  /// Sends the draft if it holds text and may be sent. True when it was, and so is to be cleared.
  Q_INVOKABLE bool send(const QString &draft);

Q_SIGNALS:
  /// The timeline has changed, and its rows with it.
  void messagesShown();

protected:
  void connectTo(PetStore &store) override;
  void update(const PetStore &store, const PanelLook &look) override;

private:
  void showMessages();

  QPointer<PanelEntries> m_entries;
  ChatMessagesModel m_messages;
  QString m_placeholder;
  QString m_spentLine;
  bool m_isSendable = false;
  QColor m_sendColor;
};

} // namespace morvo
