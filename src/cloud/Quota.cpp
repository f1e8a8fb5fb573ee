#include "cloud/Quota.h"

#include <algorithm>

namespace morvo {
namespace {

constexpr int highestRealLimit = 999999;

std::optional<double> progress(std::optional<int> limit, std::optional<int> used, int remaining) {
  if (!limit || *limit < 1 || *limit > highestRealLimit) {
    return std::nullopt;
  }
  const double spent =
      used ? static_cast<double>(*used)
           : std::max(0.0, static_cast<double>(*limit) - static_cast<double>(remaining));
  return std::clamp(spent / static_cast<double>(*limit), 0.0, 1.0);
}

} // namespace

std::optional<double> Quota::conversationProgress() const {
  return progress(conversationLimit, conversationsUsed, conversationsRemaining);
}

std::optional<double> Quota::petGenProgress() const {
  return progress(petGenLimit, petGensUsed, petGensRemaining.value_or(petGenLimit.value_or(0)));
}

} // namespace morvo
