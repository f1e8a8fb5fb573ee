#include "panels/ApprovalPrompt.h"

#include "base/VisibleText.h"
#include "panels/Followed.h"

#include <algorithm>
#include <utility>

namespace morvo {
namespace {

/// The first frame that comes may have been begun before the card stood.
constexpr int framesToBeSeen = 2;

/// Where the scripts cut a command, and where anything else, which they send as JSON.
constexpr qsizetype commandCut = 200;
constexpr qsizetype jsonCut = 140;

/// Whether the script may have cut it: it counts characters, and leaves no mark.
bool mayBeCut(const QString &summary) {
  const qsizetype length = summary.toUcs4().size();
  const bool isJson = summary.startsWith(u'{') || summary.startsWith(u'[');
  return length == commandCut || (isJson && length == jsonCut);
}

/// Every key that presses a button.
bool isAnswerKey(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space ||
         key == Qt::Key_Select;
}

} // namespace

ApprovalPrompt::ApprovalPrompt(QObject *parent) : QObject(parent) {}

void ApprovalPrompt::setStore(PetStore *store) {
  if (!Followed::replace(m_store, store, this)) {
    return;
  }
  if (m_store != nullptr) {
    connect(m_store, &PetStore::pendingApprovalChanged, this, &ApprovalPrompt::turnToRequest);
    connect(m_store, &QObject::destroyed, this, &ApprovalPrompt::forgetStore);
  }
  Q_EMIT storeChanged();
  turnToRequest();
  watchFocus();
}

QQuickWindow *ApprovalPrompt::window() const {
  return qobject_cast<QQuickWindow *>(m_window.data());
}

void ApprovalPrompt::setWindow(QQuickWindow *window) {
  if (!Followed::replace(m_window, window, this)) {
    return;
  }
  if (window != nullptr) {
    connect(window, &QQuickWindow::frameSwapped, this, &ApprovalPrompt::frameShown);
    connect(window, &QWindow::visibleChanged, this, &ApprovalPrompt::awaitFrames);
    connect(window, &QWindow::activeChanged, this, &ApprovalPrompt::watchFocus);
  }
  Q_EMIT windowChanged();
  awaitFrames();
  watchFocus();
}

void ApprovalPrompt::setCardShown(bool shown) {
  if (std::exchange(m_cardShown, shown) != shown) {
    Q_EMIT cardShownChanged();
    awaitFrames();
  }
}

void ApprovalPrompt::setEndShown(bool shown) {
  if (std::exchange(m_endShown, shown) != shown) {
    Q_EMIT endShownChanged();
    m_endWasHidden = m_endWasHidden || !shown;
    noteEnd();
    Q_EMIT noteChanged();
  }
}

/// The store is gone, and with it what waits.
void ApprovalPrompt::forgetStore() {
  Q_EMIT storeChanged();
  turnToRequest();
  watchFocus();
}

/// Another request than before waits, or none: nothing of it has been seen.
void ApprovalPrompt::turnToRequest() {
  m_endSeen = false;
  m_endWasHidden = false;
  // First: while the card turns to the request, the place of the one before may be its end.
  awaitFrames();
  Q_EMIT requestChanged();
  Q_EMIT noteChanged();
}

std::optional<PermRequest> ApprovalPrompt::request() const {
  return m_store != nullptr ? m_store->pendingApproval() : std::nullopt;
}

bool ApprovalPrompt::isPending() const { return request().has_value(); }

QString ApprovalPrompt::question() const {
  const auto pending = request();
  return pending ? QStringLiteral("要批准 %1 吗？").arg(VisibleText::ofLine(pending->tool))
                 : QString();
}

QString ApprovalPrompt::summary() const {
  const QString whole = request().value_or(PermRequest()).summary;
  QString shown = VisibleText::of(whole.first(std::min(whole.size(), longestSummary)));
  if (whole.size() > longestSummary) {
    shown += QStringLiteral("\n……后面还有没有显示的内容，不能在这里批准");
  }
  return shown;
}

QString ApprovalPrompt::note() const {
  const auto pending = request();
  if (!pending) {
    return {};
  }
  QStringList notes;
  if (!m_endSeen && !endIsInSight()) {
    notes << QStringLiteral("往下看完才能批准");
  } else if (m_endWasHidden) {
    // Not nothing: the buttons would move beneath the pointer.
    notes << QStringLiteral("看完了，可以决定");
  }
  if (mayBeCut(pending->summary)) {
    notes << QStringLiteral("这里可能不是全部内容");
  }
  return notes.join(u'；');
}

bool ApprovalPrompt::isRejectable() const {
  return m_isSettled && m_window != nullptr && isPending();
}

bool ApprovalPrompt::isApprovable() const {
  const auto pending = request();
  return isRejectable() && m_endSeen && pending && pending->summary.size() <= longestSummary;
}

void ApprovalPrompt::reject() { give(Answer::Reject); }

void ApprovalPrompt::approve() { give(Answer::Approve); }

bool ApprovalPrompt::keyPressed(Answer answer, int key, bool isAutoRepeat) {
  if (!isAnswerKey(key)) {
    return false;
  }
  if (m_keysCount && !isAutoRepeat) {
    give(answer);
  }
  return true;
}

void ApprovalPrompt::give(Answer answer) {
  const bool approves = answer == Answer::Approve;
  if (approves ? isApprovable() : isRejectable()) {
    m_store->decideApproval(approves);
  }
}

/// A new request, a card that grows, or a panel that has come up: the card has yet to be drawn.
void ApprovalPrompt::awaitFrames() {
  m_settling.cancel();
  const bool isOnScreen =
      isPending() && m_cardShown && m_window != nullptr && m_window->isVisible();
  m_awaitedFrames = isOnScreen ? framesToBeSeen : 0;
  if (isOnScreen) {
    // A request that looks like the one before would draw nothing by itself.
    window()->update();
  }
  if (std::exchange(m_isSettled, false)) {
    Q_EMIT answerableChanged();
  }
}

void ApprovalPrompt::frameShown() {
  if (m_awaitedFrames == 0 || m_store == nullptr) {
    return;
  }
  --m_awaitedFrames;
  if (m_awaitedFrames > 0) {
    window()->update();
  } else {
    noteEnd();
    m_settling = m_store->scheduler().after(settleTime, [this] { settle(); });
  }
}

bool ApprovalPrompt::endIsInSight() const {
  return m_endShown || request().value_or(PermRequest()).summary.isEmpty();
}

/// The end counts as seen once this very request has been drawn with it.
void ApprovalPrompt::noteEnd() {
  const bool isDrawn = m_awaitedFrames == 0 && isPending() && m_cardShown && m_window != nullptr &&
                       m_window->isVisible();
  if (isDrawn && !m_endSeen && endIsInSight()) {
    m_endSeen = true;
    Q_EMIT answerableChanged();
  } else if (isDrawn && !m_endSeen) {
    m_endWasHidden = true;
  }
}

void ApprovalPrompt::settle() {
  m_isSettled = true;
  Q_EMIT answerableChanged();
}

void ApprovalPrompt::watchFocus() {
  m_keysCount = false;
  m_keysSettling.cancel();
  if (m_store != nullptr && m_window != nullptr && m_window->isActive()) {
    m_keysSettling = m_store->scheduler().after(settleTime, [this] { m_keysCount = true; });
  }
}

} // namespace morvo
