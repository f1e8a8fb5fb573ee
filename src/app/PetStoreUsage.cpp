#include "app/PetStore.h"

#include "monitor/AttentionEngine.h"
#include "platform/SettingKeys.h"

#include <utility>

namespace morvo {
namespace {

/// How often a switched-off usage capture looks whether it was switched on.
constexpr auto lookPeriod = std::chrono::seconds(5);

} // namespace

QCoro::Task<> PetStore::usageLoop(std::stop_token stop) {
  bool running = co_await m_parts.scheduler.sleep(Duration::zero(), stop);
  while (running) {
    Duration pause = lookPeriod;
    if (m_parts.setting.boolean(SettingKeys::captureUsage, false)) {
      co_await captureUsage();
      if (stop.stop_requested()) {
        co_return;
      }
      pause = std::chrono::seconds(m_parts.setting.captureSeconds());
    }
    running = co_await m_parts.scheduler.sleep(pause, stop);
  }
}

QCoro::Task<> PetStore::captureUsage() {
  const std::stop_token stop = m_stop.get_token();
  if (!m_parts.usage) {
    co_return;
  }
  const auto snapshot = co_await m_parts.usage->capture();
  if (stop.stop_requested() || !snapshot) {
    co_return;
  }
  publish(snapshot->agents);
  // Without agents there is nothing to measure, and the last figures stand.
  if (snapshot->agents.empty()) {
    refreshAttention();
    co_return;
  }
  m_usage = m_parts.measure(*snapshot);
  refreshAttention();
  reportUsage();
}

QCoro::Task<> PetStore::scanSourcesOnly(bool deep) {
  const std::stop_token stop = m_stop.get_token();
  refreshHookFlags();
  if (deep || m_parts.setting.boolean(SettingKeys::captureUsage, false)) {
    co_await captureUsage();
    co_return;
  }
  if (!m_parts.usage) {
    co_return;
  }
  const auto agents = co_await m_parts.usage->present();
  if (!stop.stop_requested() && agents) {
    publish(*agents);
    refreshAttention();
  }
}

void PetStore::publish(std::vector<DetectedAgent> agents) {
  QStringList names;
  for (const DetectedAgent &agent : agents) {
    names.append(agent.name);
  }
  m_sources = names;
  m_detected = std::move(agents);
  // Asking teaches, so this is asked while the counts are new, and not at each look at them.
  m_sourceLoads = AttentionEngine::sourceLoads(m_detected, m_parts.learnedPct);
}

void PetStore::reportUsage() {
  if (!m_parts.cloud) {
    return;
  }
  const int load = AttentionEngine::aggregateLoadPct(m_sourceLoads).value_or(0);
  m_parts.cloud->postSignals(
      {QJsonObject{{QStringLiteral("kind"), QStringLiteral("usage")},
                   {QStringLiteral("provider"), QStringLiteral("local")},
                   {QStringLiteral("usedPct"), load < 1 ? m_usage.value().usedPct : load}}});
}

} // namespace morvo
