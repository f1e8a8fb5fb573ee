#pragma once

#include "usage/TokenEvent.h"

#include <memory>
#include <optional>
#include <string_view>

namespace morvo {

/// Reads lines of Claude Code's session logs. Not thread-safe; use one for many lines.
class ClaudeLine {
public:
  /// Every line with a use holds it.
  static constexpr std::string_view marker = "\"usage\"";

  ClaudeLine();
  ClaudeLine(const ClaudeLine &) = delete;
  ClaudeLine &operator=(const ClaudeLine &) = delete;
  ~ClaudeLine();

  /// What a reply used; nothing for any other line. Behind the line `MarkedLines::padding` bytes
  /// must be readable.
  ///
  /// Of the line only what is needed is checked, and that its brackets and texts are closed: so
  /// halves of surrogate pairs, which strict JSON does not allow, do no harm.
  [[nodiscard]] std::optional<TokenEvent> event(std::string_view line);

private:
  class Parser;
  std::unique_ptr<Parser> m_parser;
};

} // namespace morvo
