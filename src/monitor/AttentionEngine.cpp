#include "monitor/AttentionEngine.h"

#include "base/VisibleText.h"
#include "pet/PetVitals.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace morvo::AttentionEngine {
namespace {

/// From this percentage on a quota counts as tight.
constexpr int pressurePct = 70;
constexpr int fullPct = 100;
/// Characters of a detail; a headline is one of them.
constexpr qsizetype longestDetail = 1000;

const QString calmHeadline = QStringLiteral("都安静 · 没有要你拍板的事");

int wholePct(double pct) {
  // A figure that is none counts as nothing used.
  return std::isnan(pct) ? 0 : static_cast<int>(std::lround(std::clamp<double>(pct, 0, fullPct)));
}

bool isTight(const SourceLoad &load) { return load.usedPct.value_or(0) >= pressurePct; }

AttentionItem confirmItem(const AttentionSnapshot::PendingConfirm &pending) {
  return {.id = QStringLiteral("confirm"),
          .kind = AttentionKind::needsConfirm,
          .title = QStringLiteral("等你确认"),
          .detail = VisibleText::shortened(pending.agent + QStringLiteral("：") + pending.summary,
                                           longestDetail),
          .agentName = pending.agent};
}

AttentionItem doneItem(const AttentionSnapshot::RecentDone &done) {
  return {.id = QStringLiteral("done-") + done.agent,
          .kind = AttentionKind::agentDone,
          .title = QStringLiteral("刚完成"),
          .detail = VisibleText::shortened(
              done.label.isEmpty() ? done.agent : done.agent + QStringLiteral(" · ") + done.label,
              longestDetail),
          .agentName = done.agent};
}

QString trustNote(QuotaTrust trust) {
  switch (trust) {
  case QuotaTrust::live:
    return QStringLiteral("（真实额度）");
  case QuotaTrust::calibrated:
    return QStringLiteral("（估算，非官方）");
  case QuotaTrust::metered:
  case QuotaTrust::missing:
    return {};
  }
  Q_UNREACHABLE();
}

AttentionItem quotaItem(const SourceLoad &load) {
  return {.id = QStringLiteral("quota-") + load.id,
          .kind = AttentionKind::quotaPressure,
          .title = load.name + QStringLiteral(" 额度偏紧"),
          .detail = load.primaryLine() + trustNote(load.trust),
          .agentName = load.name};
}

AttentionItem calmItem() {
  return {.id = QStringLiteral("calm"),
          .kind = AttentionKind::calm,
          .title = QStringLiteral("都安静"),
          .detail = QStringLiteral("没有要你拍板的事"),
          .agentName = std::nullopt};
}

QString explainPressure(const std::optional<SourceLoad> &tightest) {
  if (tightest && tightest->trust == QuotaTrust::live) {
    return tightest->name + QStringLiteral(" 官方额度偏紧，我放慢一点。");
  }
  if (tightest && tightest->trust == QuotaTrust::calibrated) {
    return tightest->name + QStringLiteral(" 负载偏高（历史估算，不是官方剩余），我有点蔫。");
  }
  return QStringLiteral("额度偏紧，先稳住节奏。");
}

QString explainLoad(const std::optional<SourceLoad> &tightest) {
  if (!tightest || !isTight(*tightest)) {
    return QStringLiteral("一切平静。");
  }
  const QString pct = QString::number(tightest->usedPct.value_or(0));
  return tightest->trust == QuotaTrust::calibrated
             ? tightest->name + QStringLiteral(" 约 ") + pct + QStringLiteral("%（估算）。")
             : tightest->name + u' ' + pct + QStringLiteral("%（真实）。");
}

} // namespace

SourceLoad sourceLoad(const DetectedAgent &agent, const LearnedPct &learnedPct) {
  SourceLoad load{.id = agent.id,
                  .name = agent.name,
                  .windowTokens = agent.windowTokens,
                  .weekTokens = agent.weekTokens};
  if (agent.liveLimit) {
    load.trust = QuotaTrust::live;
    load.usedPct = wholePct(agent.liveLimit->primaryPct);
    load.weekPct = wholePct(agent.liveLimit->weeklyPct);
  } else if (agent.windowTokens >= 1) {
    load.trust = QuotaTrust::calibrated;
    load.usedPct = std::clamp(learnedPct(agent.windowTokens), 0, fullPct);
  } else if (agent.weekTokens > 0) {
    load.trust = QuotaTrust::metered;
  }
  return load;
}

std::vector<SourceLoad> sourceLoads(const std::vector<DetectedAgent> &agents,
                                    const LearnedPct &learnedPct) {
  std::vector<SourceLoad> loads;
  std::ranges::transform(
      agents, std::back_inserter(loads),
      [&learnedPct](const DetectedAgent &agent) { return sourceLoad(agent, learnedPct); });
  return loads;
}

bool comesBefore(const AttentionItem &left, const AttentionItem &right) {
  return std::tie(left.kind, left.id) < std::tie(right.kind, right.id);
}

std::vector<AttentionItem> rank(const AttentionSnapshot &snapshot) {
  std::vector<AttentionItem> items;
  if (snapshot.pendingConfirm) {
    items.push_back(confirmItem(*snapshot.pendingConfirm));
  }
  if (snapshot.recentDone) {
    items.push_back(doneItem(*snapshot.recentDone));
  }
  std::vector<SourceLoad> tight;
  std::ranges::copy_if(snapshot.loads, std::back_inserter(tight), isTight);
  // Shows in the result only where two loads share an id.
  std::ranges::stable_sort(tight, std::ranges::greater(),
                           [](const SourceLoad &load) { return *load.usedPct; });
  std::ranges::transform(tight, std::back_inserter(items), quotaItem);
  if (items.empty()) {
    items.push_back(calmItem());
  }
  std::ranges::stable_sort(items, comesBefore);
  return items;
}

QString headline(const std::vector<AttentionItem> &items) {
  if (items.empty()) {
    return calmHeadline;
  }
  const AttentionItem &first = items.front();
  switch (first.kind) {
  case AttentionKind::needsConfirm:
    return first.detail;
  case AttentionKind::agentDone:
    return first.detail + QStringLiteral(" 刚完成");
  case AttentionKind::quotaPressure:
    return first.title + QStringLiteral(" · ") + first.detail;
  case AttentionKind::running:
  case AttentionKind::connectorGap:
    return first.title;
  case AttentionKind::calm:
    return calmHeadline;
  }
  Q_UNREACHABLE();
}

std::optional<SourceLoad> tightest(const std::vector<SourceLoad> &loads) {
  // An absent percentage is less than any.
  const auto found = std::ranges::max_element(loads, {}, &SourceLoad::usedPct);
  return found == loads.end() || !found->usedPct ? std::nullopt : std::optional(*found);
}

QString explain(const std::optional<AttentionItem> &top,
                const std::optional<SourceLoad> &tightest) {
  if (!top) {
    return explainLoad(tightest);
  }
  switch (top->kind) {
  case AttentionKind::needsConfirm:
    return QStringLiteral("有一步要你拍板，我先盯着。");
  case AttentionKind::agentDone:
    return QStringLiteral("刚做完一轮，可以回头看一眼。");
  case AttentionKind::quotaPressure:
    return explainPressure(tightest);
  case AttentionKind::running:
    return QStringLiteral("有 agent 在干活，我陪着盯。");
  case AttentionKind::connectorGap:
    return top->detail;
  case AttentionKind::calm:
    return explainLoad(tightest);
  }
  Q_UNREACHABLE();
}

std::optional<int> aggregateLoadPct(const std::vector<SourceLoad> &loads) {
  std::vector<int> percentages;
  for (const SourceLoad &load : loads) {
    if (load.usedPct) {
      percentages.push_back(*load.usedPct);
    }
  }
  return percentages.empty() ? std::nullopt
                             : std::optional(PetVitals::aggregateUsedPct(percentages));
}

} // namespace morvo::AttentionEngine
