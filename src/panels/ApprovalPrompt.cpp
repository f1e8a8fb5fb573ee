#include "panels/ApprovalPrompt.h"

#include "base/VisibleText.h"
#include "panels/Followed.h"

#include <algorithm>
#include <utility>

namespace morvo {
namespace {

/// The first frame that comes may have been begun before the card stood.
constexpr int framesToBeSeen = 2;

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
    connect(m_store, &PetStore::pendingApprovalChanged, this, [this] {
      Q_EMIT requestChanged();
      awaitFrames();
    });
    connect(m_store, &QObject::destroyed, this, &ApprovalPrompt::forgetStore);
  }
  Q_EMIT storeChanged();
  Q_EMIT requestChanged();
  awaitFrames();
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

/// The store is gone, and with it what waits.
void ApprovalPrompt::forgetStore() {
  Q_EMIT storeChanged();
  Q_EMIT requestChanged();
  awaitFrames();
  watchFocus();
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

bool ApprovalPrompt::isRejectable() const {
  return m_isSettled && m_window != nullptr && isPending();
}

bool ApprovalPrompt::isApprovable() const {
  const auto pending = request();
  return isRejectable() && pending && pending->summary.size() <= longestSummary;
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
    m_settling = m_store->scheduler().after(settleTime, [this] { settle(); });
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
