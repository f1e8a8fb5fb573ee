#include "usage/QuotaProbe.h"

#include <cstddef>
#include <cstdint>

namespace {

void require(bool holds) {
  if (!holds) {
    __builtin_trap();
  }
}

bool isPercentage(double number) { return number >= 0 && number <= 100; }

} // namespace

/// What the command `caut` printed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  namespace Probe = morvo::QuotaProbe;
  const QByteArray output(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
  const auto records = Probe::parseCautUsageJSON(output);
  for (const morvo::ProbedQuota &record : records) {
    require(isPercentage(record.primaryUsedPct));
    require(isPercentage(record.weeklyUsedPct.value_or(0)));
    require(record.providerId == Probe::normalizeProviderId(record.providerId));
  }
  const auto limits = Probe::cautLiveMap(records);
  require(static_cast<std::size_t>(limits.size()) <= records.size());
  require(limits.isEmpty() == records.empty());
  return 0;
}
