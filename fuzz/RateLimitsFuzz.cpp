#include "usage/CodexUsageReader.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

/// One line of a session log of Codex.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const QByteArray line(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
  const auto limit = morvo::CodexUsageReader::parse(line);
  if (limit && (!line.contains("\"rate_limits\"") || !std::isfinite(limit->primaryPct) ||
                !std::isfinite(limit->weeklyPct))) {
    __builtin_trap();
  }
  return 0;
}
