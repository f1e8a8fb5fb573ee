#include "monitor/CodexConfig.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <toml++/toml.h>

namespace {

void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

std::optional<toml::table> parsed(const QByteArray &text) {
  try {
    return toml::parse(std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
  } catch (const toml::parse_error &) {
    return std::nullopt;
  }
}

/// The switch aside, both texts hold the same values.
void requireNothingElseChanged(const QByteArray &before, const QByteArray &after) {
  auto old = parsed(before);
  auto changed = parsed(after);
  require(old && changed);
  for (auto *table : {&*old, &*changed}) {
    if (auto *features = (*table)["features"].as_table()) {
      features->erase("hooks");
      if (features->empty()) {
        table->erase("features");
      }
    }
  }
  require(*old == *changed);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace morvo;
  const QByteArray before(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
  const QByteArray after = CodexConfig::withHooksFeatureEnabled(before);
  require(CodexConfig::hooksFeatureEnabled(after));
  require(CodexConfig::withHooksFeatureEnabled(after) == after);
  require(!CodexConfig::hooksFeatureEnabled(before) || after == before);
  require(CodexConfig::isSafeChange(before, before));
  if (after != before && CodexConfig::byToml(before) != CodexConfig::Switch::notUnderstood &&
      CodexConfig::isSafeChange(before, after)) {
    require(CodexConfig::byToml(after) == CodexConfig::Switch::on);
    requireNothingElseChanged(before, after);
  }
  return 0;
}
