#include "monitor/SourceLoad.h"

#include <array>
#include <charconv>

namespace morvo {
namespace {

constexpr std::int64_t thousand = 1000;
constexpr std::int64_t million = 1000000;

/// With one decimal, rounded as `printf` rounds: exact halves go to the even digit, which Qt's own
/// conversion does not do.
QString oneDecimal(double value) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::fixed, 1).ptr;
  return QString::fromLatin1(text.data(), end - text.data());
}

QString shortTokens(std::int64_t tokens) {
  if (tokens < thousand) {
    return QString::number(tokens);
  }
  const auto value = static_cast<double>(tokens);
  return tokens < million ? oneDecimal(value / static_cast<double>(thousand)) + u'K'
                          : oneDecimal(value / static_cast<double>(million)) + u'M';
}

QString withoutFigures(QuotaTrust trust) {
  switch (trust) {
  case QuotaTrust::live:
    return QStringLiteral("官方额度");
  case QuotaTrust::calibrated:
    return QStringLiteral("估算");
  case QuotaTrust::metered:
    return QStringLiteral("本机累计");
  case QuotaTrust::missing:
    return QStringLiteral("暂无数据");
  }
  Q_UNREACHABLE();
}

} // namespace

QString SourceLoad::primaryLine() const {
  const QString tokens = shortTokens(windowTokens);
  if (usedPct) {
    const QString window =
        trust == QuotaTrust::live ? QStringLiteral("5h ") : QStringLiteral("5h·估 ");
    return window + QString::number(*usedPct) + QStringLiteral("% · ") + tokens;
  }
  if (windowTokens >= 1) {
    return QStringLiteral("5h ") + tokens + QStringLiteral(" token");
  }
  return withoutFigures(trust);
}

} // namespace morvo
