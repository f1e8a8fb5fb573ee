#include "monitor/CodexConfig.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace morvo;
  const QByteArray before(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
  const QByteArray after = CodexConfig::withHooksFeatureEnabled(before);
  require(CodexConfig::hooksFeatureEnabled(after));
  require(CodexConfig::withHooksFeatureEnabled(after) == after);
  require(!CodexConfig::hooksFeatureEnabled(before) || after == before);
  static_cast<void>(CodexConfig::isSafeChange(before, after));
  return 0;
}
