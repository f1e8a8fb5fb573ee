#pragma once

#include "app/PetStore.h"

#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickWindow>

#include <optional>

namespace morvo {

/// What the approval card shows, and when it takes an answer.
///
/// An answer counts only when the user has had the time to see what it is given to: the card takes
/// none before it has stood on the screen, whole, with this very request, for `settleTime`, and
/// does not approve before the end of the summary has been on the screen. A key counts only in the
/// card's own window, active for as long, so that no key meant for another window, held down or
/// just struck, gives an answer.
///
/// For the card: give it `store` and the `window` it stands in, and keep `cardShown` true for as
/// long as the card stands at its full height, `endShown` for as long as the last line of the
/// summary is in sight. It shows each new request from its first line on. Texts are plain text,
/// never markup.
/// The buttons are enabled by `rejectable` and `approvable` (a press that begins before is none),
/// call `reject` and `approve` on a click, and hand their keys to `keyPressed`. They stand in the
/// Tab order with "拒绝" first, and none of them takes the focus by itself. Escape is the panel's:
/// it closes, and the request stays.
class ApprovalPrompt : public QObject {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(morvo::PetStore *store READ store WRITE setStore NOTIFY storeChanged REQUIRED)
  Q_PROPERTY(QQuickWindow *window READ window WRITE setWindow NOTIFY windowChanged)
  Q_PROPERTY(bool cardShown READ isCardShown WRITE setCardShown NOTIFY cardShownChanged)
  Q_PROPERTY(bool endShown READ isEndShown WRITE setEndShown NOTIFY endShownChanged)
  Q_PROPERTY(bool pending READ isPending NOTIFY requestChanged)
  Q_PROPERTY(QString question READ question NOTIFY requestChanged)
  Q_PROPERTY(QString summary READ summary NOTIFY requestChanged)
  Q_PROPERTY(QString note READ note NOTIFY noteChanged)
  Q_PROPERTY(bool rejectable READ isRejectable NOTIFY answerableChanged)
  Q_PROPERTY(bool approvable READ isApprovable NOTIFY answerableChanged)
  Q_PROPERTY(QString rejectLabel READ rejectLabel CONSTANT)
  Q_PROPERTY(QString approveLabel READ approveLabel CONSTANT)

public:
  enum class Answer { Reject, Approve };
  Q_ENUM(Answer)

  /// From the first frame that shows the card whole to its first answer.
  static constexpr Duration settleTime = std::chrono::milliseconds(500);
  /// Characters shown of a summary; more are cut off, said to be, and cannot be approved.
  static constexpr qsizetype longestSummary = PermRequest::longestSummary;

  explicit ApprovalPrompt(QObject *parent = nullptr);

  [[nodiscard]] PetStore *store() const { return m_store; }
  void setStore(PetStore *store);
  [[nodiscard]] QQuickWindow *window() const;
  void setWindow(QQuickWindow *window);

  [[nodiscard]] bool isCardShown() const { return m_cardShown; }
  void setCardShown(bool shown);

  [[nodiscard]] bool isEndShown() const { return m_endShown; }
  void setEndShown(bool shown);

  /// Whether a request waits, and so whether the card stands in the panel.
  [[nodiscard]] bool isPending() const;
  /// "要批准 Bash 吗？"
  [[nodiscard]] QString question() const;
  /// What the tool is about to do, with every character that would not be seen made visible.
  [[nodiscard]] QString summary() const;
  /// What the user should know of the summary: that its end has yet to be read, or may not have
  /// come.
  [[nodiscard]] QString note() const;
  [[nodiscard]] static QString rejectLabel() { return QStringLiteral("拒绝"); }
  [[nodiscard]] static QString approveLabel() { return QStringLiteral("批准"); }
  [[nodiscard]] bool isRejectable() const;
  [[nodiscard]] bool isApprovable() const;

  /// Answers the request that is shown; nothing while it cannot be answered.
  Q_INVOKABLE void reject();
  Q_INVOKABLE void approve();
  /// A key struck on the button of `answer`; `key` is a Qt::Key. True when it is the button's own
  /// (Return, Enter, Space, Select), whether or not it gave the answer.
  Q_INVOKABLE bool keyPressed(morvo::ApprovalPrompt::Answer answer, int key, bool isAutoRepeat);

Q_SIGNALS:
  void storeChanged();
  void windowChanged();
  void cardShownChanged();
  void endShownChanged();
  void requestChanged();
  void noteChanged();
  void answerableChanged();

private:
  void turnToRequest();
  void awaitFrames();
  [[nodiscard]] bool endIsInSight() const;
  void noteEnd();
  void frameShown();
  void settle();
  void watchFocus();
  void give(Answer answer);
  void forgetStore();
  [[nodiscard]] std::optional<PermRequest> request() const;

  QPointer<PetStore> m_store;
  /// Told as what is left of it while it goes: its signals come even from its base's destructor.
  QPointer<QWindow> m_window;
  bool m_cardShown = false;
  bool m_endShown = false;
  /// The end of this very request's summary has been seen.
  bool m_endSeen = false;
  /// It had to be looked for.
  bool m_endWasHidden = false;
  /// Frames still to come before the card is sure to be seen.
  int m_awaitedFrames = 0;
  bool m_isSettled = false;
  bool m_keysCount = false;
  Scheduler::Timer m_settling;
  Scheduler::Timer m_keysSettling;
};

} // namespace morvo
