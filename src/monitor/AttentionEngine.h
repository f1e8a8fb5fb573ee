#pragma once

#include "monitor/AttentionItem.h"
#include "monitor/AttentionSnapshot.h"
#include "monitor/SourceLoad.h"
#include "usage/DetectedAgent.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

/// What, of all that is going on, deserves the user's eye now, and how to say it. Pure functions.
namespace morvo::AttentionEngine {

/// How full the 5-hour window is by what was learned of earlier ones, in percent.
using LearnedPct = std::function<int(std::int64_t windowTokens)>;

/// How much of its quota the agent has used: by its official figures where there are any, else by
/// `learnedPct` of its tokens, which is asked only then.
[[nodiscard]] SourceLoad sourceLoad(const DetectedAgent &agent, const LearnedPct &learnedPct);

/// The same for each of the agents, in their order.
[[nodiscard]] std::vector<SourceLoad> sourceLoads(const std::vector<DetectedAgent> &agents,
                                                  const LearnedPct &learnedPct);

/// The order of the items: by importance, those of one kind by their id.
[[nodiscard]] bool comesBefore(const AttentionItem &left, const AttentionItem &right);

/// The items in that order; never empty: when nothing deserves the eye, one item says so. Makes no
/// items of the kinds `running` and `connectorGap`.
[[nodiscard]] std::vector<AttentionItem> rank(const AttentionSnapshot &snapshot);

/// One line for the first of the items.
[[nodiscard]] QString headline(const std::vector<AttentionItem> &items);

/// The load with the highest percentage, the first of equals; nothing when no load has one.
[[nodiscard]] std::optional<SourceLoad> tightest(const std::vector<SourceLoad> &loads);

/// One sentence, in the pet's words, about the first item or else about the tightest load.
[[nodiscard]] QString explain(const std::optional<AttentionItem> &top,
                              const std::optional<SourceLoad> &tightest);

/// The highest percentage of all loads, each clamped to 0 … 100; nothing when no load has one.
[[nodiscard]] std::optional<int> aggregateLoadPct(const std::vector<SourceLoad> &loads);

} // namespace morvo::AttentionEngine
