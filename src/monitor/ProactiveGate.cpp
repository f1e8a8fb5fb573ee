#include "monitor/ProactiveGate.h"

#include <algorithm>

namespace morvo {

ProactiveGate::ProactiveGate(const Setting &setting) { configure(setting); }

void ProactiveGate::configure(const Setting &setting) {
  minInterval = setting.proactiveMinInterval();
  dedupWindow = setting.proactiveDedupWindow();
}

ProactiveGate::Decision ProactiveGate::decide(const QString &line, int priority, bool notify,
                                              Instant now) {
  forgetOld(now);
  const bool duplicate = wasSaidLately(line);
  const bool early = isEarly(now);
  const bool wantsNotify = notify && priority > 0;

  Decision decision;
  if (priority >= needsUserPriority) {
    decision = {.bubble = true, .notify = wantsNotify};
  } else if (!duplicate) {
    decision = {.bubble = !early, .notify = wantsNotify};
  }
  if (decision.bubble) {
    lastBubbleAt = now;
  }
  if (decision.bubble || decision.notify) {
    remember(line, now);
  }
  return decision;
}

void ProactiveGate::forgetOld(Instant now) {
  while (!recent.empty() && inSeconds(now - recent.front().at) > dedupWindow) {
    recent.pop_front();
  }
}

void ProactiveGate::remember(const QString &line, Instant now) {
  if (!line.isEmpty()) {
    recent.push_back({.text = line, .at = now});
  }
}

bool ProactiveGate::wasSaidLately(const QString &line) const {
  return !line.isEmpty() &&
         std::ranges::any_of(recent, [&](const RecentLine &entry) { return entry.text == line; });
}

bool ProactiveGate::isEarly(Instant now) const {
  return lastBubbleAt && inSeconds(now - *lastBubbleAt) < minInterval;
}

} // namespace morvo
