#include "usage/CodexLine.h"

#include <cstddef>
#include <cstdint>

/// One line. What was understood is understood again, whatever white space stands around it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const QByteArray line(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
  const auto totals = morvo::CodexLine::totals(line);
  if (totals && morvo::CodexLine::totals(line + "\r") != totals) {
    __builtin_trap();
  }
  return 0;
}
