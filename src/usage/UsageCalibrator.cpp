#include "usage/UsageCalibrator.h"

#include "platform/SettingKeys.h"
#include "usage/TokenCount.h"
#include "usage/UsageAnalytics.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace morvo {
namespace {

/// No more peaks are kept.
constexpr std::size_t mostSamples = 60;
/// How far above the habitual peak the limit is thought to be.
constexpr double headroom = 1.1;
/// What is shown while nothing is known.
constexpr int unknownPct = 50;

std::int64_t integer(const SettingsStore &settings, const QString &key) {
  return settings.object(key).value_or(QVariant()).toLongLong();
}

} // namespace

struct UsageCalibrator::Scale {
  std::chrono::seconds block;
  std::size_t fewestSamples;
  QString peaks;
  QString currentBlock;
  QString currentPeak;
};

UsageCalibrator::UsageCalibrator(SettingsStore &settings, const Clock &clock)
    : m_settings(&settings), m_clock(&clock) {}

std::int64_t UsageCalibrator::ceiling(std::int64_t window) {
  return learn({.block = std::chrono::hours(5),
                .fewestSamples = 4,
                .peaks = SettingKeys::usageBlockPeaks,
                .currentBlock = SettingKeys::usageCurBlockBucket,
                .currentPeak = SettingKeys::usageCurBlockPeak},
               window);
}

std::int64_t UsageCalibrator::weeklyCeiling(std::int64_t week) {
  return learn({.block = std::chrono::days(7),
                .fewestSamples = 3,
                .peaks = SettingKeys::usageWeekPeaks,
                .currentBlock = SettingKeys::usageCurWeekBucket,
                .currentPeak = SettingKeys::usageCurWeekPeak},
               week);
}

int UsageCalibrator::usedPct(std::int64_t currentTokens) {
  return UsageAnalytics::percentage(currentTokens, ceiling(currentTokens), unknownPct);
}

std::int64_t UsageCalibrator::learn(const Scale &scale, std::int64_t count) {
  std::vector<std::int64_t> samples;
  // A new block moves the old one's peak: seen half done, a peak would count twice or in the wrong
  // block.
  m_settings->atOnce([&] { samples = remember(scale, count); });
  if (samples.size() < scale.fewestSamples) {
    return std::max<std::int64_t>(TokenCount::sum(count, count), 1);
  }
  const auto learned = TokenCount::fromReal(static_cast<double>(p90(samples)) * headroom);
  return std::max({learned, count, std::int64_t{1}});
}

std::vector<std::int64_t> UsageCalibrator::remember(const Scale &scale, std::int64_t count) {
  const auto now = std::chrono::floor<std::chrono::seconds>(m_clock->now()).time_since_epoch();
  const std::int64_t block = now / scale.block;
  const bool isFirst = !m_settings->object(scale.currentBlock);
  const std::int64_t peak = integer(*m_settings, scale.currentPeak);
  if (isFirst || integer(*m_settings, scale.currentBlock) != block) {
    if (!isFirst && peak >= 1) {
      auto samples = loadSamples(scale.peaks);
      samples.push_back(peak);
      saveSamples(scale.peaks, samples);
    }
    m_settings->set(scale.currentBlock, QVariant::fromValue<qlonglong>(block));
    m_settings->set(scale.currentPeak, QVariant::fromValue<qlonglong>(count));
  } else if (count > peak) {
    m_settings->set(scale.currentPeak, QVariant::fromValue<qlonglong>(count));
  }
  return loadSamples(scale.peaks);
}

std::int64_t UsageCalibrator::p90(std::vector<std::int64_t> samples) {
  if (samples.empty()) {
    return 0;
  }
  std::ranges::sort(samples);
  const double position = static_cast<double>(samples.size() - 1) * 0.9;
  const auto lower = static_cast<std::size_t>(std::floor(position));
  const auto upper = static_cast<std::size_t>(std::ceil(position));
  if (lower == upper) {
    return samples[lower];
  }
  const auto low = static_cast<double>(samples[lower]);
  const auto high = static_cast<double>(samples[upper]);
  return TokenCount::fromReal(low + (high - low) * (position - std::floor(position)));
}

std::vector<std::int64_t> UsageCalibrator::loadSamples(const QString &key) const {
  std::vector<std::int64_t> samples;
  // Out of a file that somebody has edited, a text with commas comes as a list.
  const QStringList texts =
      m_settings->object(key).value_or(QVariant()).toStringList().join(u',').split(u',');
  for (const QString &text : texts) {
    if (const auto sample = TokenCount::fromDecimal(text.toStdString())) {
      samples.push_back(*sample);
    }
  }
  return samples;
}

void UsageCalibrator::saveSamples(const QString &key, const std::vector<std::int64_t> &samples) {
  QStringList texts;
  for (std::size_t i = samples.size() - std::min(samples.size(), mostSamples); i < samples.size();
       ++i) {
    texts.append(QString::number(samples[i]));
  }
  m_settings->set(key, texts.join(u','));
}

} // namespace morvo
