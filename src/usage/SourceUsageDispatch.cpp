#include "usage/SourceUsageDispatch.h"

#include <algorithm>
#include <array>

namespace morvo {
namespace {

/// Where the logs of an agent lie whose shape nobody has told us.
struct GenericSource {
  QLatin1StringView id;
  /// Tried one after the other until one gives something.
  std::array<QLatin1StringView, 3> folders;
  QLatin1StringView modelHint;
};

constexpr std::array sources{
    GenericSource{.id = QLatin1StringView("gemini"),
                  .folders = {QLatin1StringView(".gemini")},
                  .modelHint = QLatin1StringView("gemini")},
    GenericSource{.id = QLatin1StringView("qwen"),
                  .folders = {QLatin1StringView(".qwen")},
                  .modelHint = QLatin1StringView("qwen")},
    GenericSource{.id = QLatin1StringView("iflow"),
                  .folders = {QLatin1StringView(".iflow")},
                  .modelHint = QLatin1StringView("qwen")},
    GenericSource{.id = QLatin1StringView("opencode"),
                  .folders = {QLatin1StringView(".local/share/opencode"),
                              QLatin1StringView(".config/opencode"),
                              QLatin1StringView(".opencode")},
                  .modelHint = QLatin1StringView("gpt-5")},
    GenericSource{.id = QLatin1StringView("cursor"),
                  .folders = {QLatin1StringView(".cursor")},
                  .modelHint = QLatin1StringView("sonnet")},
};

} // namespace

SourceUsageDispatch::SourceUsageDispatch(const HomeFolder &home, const Clock &clock)
    : m_usage(home, clock), m_generic(home, clock) {}

TokenEvents SourceUsageDispatch::events(const SourceAdapter &adapter, double sinceHours,
                                        const std::stop_token &stop) {
  if (!adapter.contributesUsage) {
    return {};
  }
  if (adapter.id == u"claude") {
    return m_usage.claudeEvents(sinceHours, stop);
  }
  if (adapter.id == u"codex") {
    return m_usage.codexEvents(sinceHours, stop);
  }
  const auto *const source = std::ranges::find(sources, adapter.id, &GenericSource::id);
  if (source == sources.end()) {
    return {};
  }
  TokenEvents events;
  for (const QLatin1StringView folder : source->folders) {
    if (events.empty() && !folder.isEmpty()) {
      events = m_generic.events(folder, sinceHours, source->modelHint, stop);
    }
  }
  return events;
}

} // namespace morvo
