#include "usage/QuotaProbe.h"

#include "usage/ProbeCLI.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cmath>
#include <locale.h>
#include <stdlib.h>
#include <utility>

namespace morvo::QuotaProbe {
namespace {

const QString source = QStringLiteral("caut");

const QString standardFolders = QStringLiteral("/usr/local/bin:/opt/homebrew/bin:/usr/bin");

constexpr auto timeout = std::chrono::seconds(8);

constexpr double whole = 100;

/// The number that all of the text is, as the C library reads it whatever the user's language.
std::optional<double> numberOf(const QByteArray &text) {
  static const auto plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
  if (text.isEmpty() || std::isspace(static_cast<unsigned char>(text.front())) != 0) {
    return std::nullopt;
  }
  char *end = nullptr;
  const double number = ::strtod_l(text.constData(), &end, plain);
  return end == text.constData() + text.size() ? std::optional(number) : std::nullopt;
}

std::optional<double> numberOf(const QJsonValue &value) {
  std::optional<double> number;
  if (value.isDouble()) {
    number = value.toDouble();
  } else if (value.isString()) {
    number = numberOf(value.toString().toUtf8());
  }
  // An infinite number is one: what it tells is capped.
  return number && !std::isnan(*number) ? number : std::nullopt;
}

/// What one window tells of its use, by whichever of the two figures it has.
std::optional<double> usedPercent(const QJsonObject &window) {
  if (const auto used = numberOf(window.value(u"usedPercent"))) {
    return used;
  }
  const auto remaining = numberOf(window.value(u"remainingPercent"));
  return remaining ? std::optional(std::max(whole - *remaining, 0.0)) : std::nullopt;
}

QString planOf(const QJsonObject &element) {
  const QString identified =
      element.value(u"usage").toObject().value(u"identity").toObject().value(u"plan").toString();
  return element.value(u"plan").toString(identified);
}

std::optional<ProbedQuota> recordOf(const QJsonObject &element) {
  const QString provider = element.value(u"provider").toString();
  const QJsonObject usage = element.value(u"usage").toObject();
  const QJsonObject secondary = usage.value(u"secondary").toObject();
  auto primaryPct = usedPercent(usage.value(u"primary").toObject());
  if (!primaryPct) {
    primaryPct = numberOf(secondary.value(u"usedPercent"));
  }
  if (provider.isEmpty() || !primaryPct || *primaryPct < 0) {
    return std::nullopt;
  }
  const auto weekly = usedPercent(secondary);
  return ProbedQuota{.providerId = normalizeProviderId(provider),
                     .primaryUsedPct = std::min(*primaryPct, whole),
                     .weeklyUsedPct =
                         weekly ? std::optional(std::clamp(*weekly, 0.0, whole)) : std::nullopt,
                     .source = source,
                     .plan = planOf(element)};
}

} // namespace

bool cautEnabled(const Environment &environment) {
  return !environment.isOne(QStringLiteral("MORVO_DISABLE_CAUT"));
}

std::optional<QString> findCautBinary(const Environment &environment) {
  const auto named = environment.nonEmpty(QStringLiteral("MORVO_CAUT_PATH"));
  if (auto found = named ? ProbeCLI::executable(*named) : std::nullopt) {
    return found;
  }
  return ProbeCLI::firstExecutable(source, cautFolders(environment));
}

QString cautFolders(const Environment &environment) {
  return environment.value(QStringLiteral("PATH")).value_or(standardFolders);
}

QCoro::Task<std::vector<ProbedQuota>> runCautUsage(Scheduler &scheduler, QString binary,
                                                   Environment environment, std::stop_token stop) {
  const ProbeCLI::Run run{.executable = binary,
                          .arguments = {QStringLiteral("usage"), QStringLiteral("--json"),
                                        QStringLiteral("--provider"), QStringLiteral("all")},
                          .timeout = timeout,
                          .environment = environment};
  const auto written = co_await ProbeCLI::output(scheduler, run, stop);
  co_return written ? parseCautUsageJSON(written->standardOutput) : std::vector<ProbedQuota>();
}

std::vector<ProbedQuota> parseCautUsageJSON(const QByteArray &output) {
  const auto document = QJsonDocument::fromJson(output);
  const QJsonValue data =
      document.isArray() ? QJsonValue(document.array()) : document.object().value(u"data");
  std::vector<ProbedQuota> records;
  const QJsonArray elements = data.toArray();
  for (const auto &element : elements) {
    if (auto record = recordOf(element.toObject())) {
      records.push_back(*std::move(record));
    }
  }
  return records;
}

QString normalizeProviderId(const QString &raw) {
  struct Spelling {
    QStringView contained;
    QStringView id;
  };
  static constexpr std::array spellings{
      Spelling{u"claude", u"claude"},     Spelling{u"codex", u"codex"},
      Spelling{u"openai", u"codex"},      Spelling{u"gemini", u"gemini"},
      Spelling{u"google", u"gemini"},     Spelling{u"cursor", u"cursor"},
      Spelling{u"copilot", u"copilot"},   Spelling{u"github", u"copilot"},
      Spelling{u"qwen", u"qwen"},         Spelling{u"iflow", u"iflow"},
      Spelling{u"opencode", u"opencode"}, Spelling{u"kimi", u"kimi"},
      Spelling{u"minimax", u"minimax"}};
  static constexpr std::array hyphened{Spelling{u"i-flow", u"iflow"},
                                       Spelling{u"open-code", u"opencode"}};
  const QString name = raw.trimmed().toLower();
  const auto *const contained = std::ranges::find_if(
      spellings, [&name](const Spelling &spelling) { return name.contains(spelling.contained); });
  if (contained != spellings.end()) {
    return contained->id.toString();
  }
  const auto *const equal = std::ranges::find(hyphened, QStringView(name), &Spelling::contained);
  return equal == hyphened.end() ? name : equal->id.toString();
}

QHash<QString, LiveRateLimit> cautLiveMap(const std::vector<ProbedQuota> &records) {
  QHash<QString, LiveRateLimit> limits;
  for (const ProbedQuota &record : records) {
    const auto known = limits.constFind(record.providerId);
    if (known != limits.constEnd() && known->primaryPct >= record.primaryUsedPct) {
      continue;
    }
    limits.insert(
        record.providerId,
        {.primaryPct = record.primaryUsedPct,
         .weeklyPct = record.weeklyUsedPct.value_or(0),
         .primaryResetsAt = std::nullopt,
         .weeklyResetsAt = std::nullopt,
         .plan = record.plan.isEmpty() ? record.source : record.plan + u'·' + record.source});
  }
  return limits;
}

} // namespace morvo::QuotaProbe
