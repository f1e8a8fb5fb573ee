#include "panels/LoadFormat.h"

#include "panels/PanelTexts.h"

#include <algorithm>
#include <iterator>

namespace morvo::LoadFormat {
namespace {

using Tone = PanelTint::Tone;

constexpr int tightPct = 70;
constexpr int fullPct = 85;

QString percentText(std::optional<int> pct, std::int64_t tokens, QuotaTrust trust) {
  if (!pct) {
    return tokens < 1 ? QStringLiteral("暂无") : QStringLiteral("—");
  }
  const QString figure = QStringLiteral("%1%").arg(*pct);
  return trust == QuotaTrust::calibrated ? QStringLiteral("约 ") + figure : figure;
}

} // namespace

std::vector<SourceLoad> active(const std::vector<SourceLoad> &loads) {
  std::vector<SourceLoad> kept;
  std::ranges::copy_if(loads, std::back_inserter(kept), [](const SourceLoad &load) {
    return load.usedPct || load.weekPct || load.windowTokens > 0 || load.weekTokens > 0;
  });
  return kept;
}

Bar bar(const QString &title, std::optional<int> pct, std::int64_t tokens, QuotaTrust trust) {
  return {.title = title,
          .pct = pct,
          .percent = percentText(pct, tokens, trust),
          .tokens = tokens < 1 ? QStringLiteral("0")
                               : PanelTexts::fmtTokens(tokens) + QStringLiteral(" token"),
          .fill = barColor(pct, trust),
          .percentTint = pct ? PanelTint{Tone::foam, 0.75} : PanelTint{Tone::foam, 0.4}};
}

Bar window(const SourceLoad &load) {
  return bar(QStringLiteral("5 小时"), load.usedPct, load.windowTokens, load.trust);
}

Bar week(const SourceLoad &load) {
  return bar(QStringLiteral("一周"), load.weekPct, load.weekTokens, load.trust);
}

PanelTint barColor(std::optional<int> pct, QuotaTrust trust) {
  if (!pct) {
    return {Tone::foam, 0.25};
  }
  if (*pct >= fullPct) {
    return {Tone::red, 1};
  }
  return *pct >= tightPct ? PanelTint{Tone::orange, 1} : trustColor(trust);
}

PanelTint trustColor(QuotaTrust trust) {
  switch (trust) {
  case QuotaTrust::live:
    return {Tone::theme, 1};
  case QuotaTrust::calibrated:
    return {Tone::orange, 1};
  case QuotaTrust::metered:
    return {Tone::foam, 0.7};
  case QuotaTrust::missing:
    break;
  }
  return {Tone::foam, 0.45};
}

QString trustLabel(QuotaTrust trust) {
  switch (trust) {
  case QuotaTrust::live:
    return QStringLiteral("官方额度");
  case QuotaTrust::calibrated:
    return QStringLiteral("估算");
  case QuotaTrust::metered:
    return QStringLiteral("本机累计");
  case QuotaTrust::missing:
    break;
  }
  return QStringLiteral("暂无数据");
}

QString trustCaption(QuotaTrust trust) {
  switch (trust) {
  case QuotaTrust::live:
    return QStringLiteral(
        "来自该工具自己的额度接口/会话字段（如 Codex rate_limits、claude /usage）");
  case QuotaTrust::calibrated:
    return QStringLiteral("没有官方剩余额度时，用你本机历史用量估的负载，不是官方条");
  case QuotaTrust::metered:
    return QStringLiteral("只统计到本机日志里的 token 数，没有「还剩百分之几」");
  case QuotaTrust::missing:
    break;
  }
  return QStringLiteral("本机没读到这家可展示的用量");
}

} // namespace morvo::LoadFormat
