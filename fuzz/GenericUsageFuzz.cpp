#include "base/Json.h"
#include "usage/GenericUsageReader.h"
#include "usage/JsonArrayText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace {

void require(bool holds) {
  if (!holds) {
    __builtin_trap();
  }
}

bool check(const QByteArray &text) {
  const auto record = morvo::Json::parseObject(text);
  if (record) {
    const auto tokens = morvo::GenericUsageReader::extractTokens(*record);
    require(tokens.billable >= 0);
    require(!tokens.empty || tokens.billable == 0);
  }
  return record.has_value();
}

/// Whether the text, fed in pieces of that size, is an array of objects; and how many it has.
std::pair<bool, int> arrayOf(std::string_view text, std::size_t piece) {
  int objects = 0;
  morvo::JsonArrayText array([&objects](const QByteArray &object) {
    ++objects;
    return check(object);
  });
  for (std::size_t i = 0; i < text.size(); i += piece) {
    if (!array.feed(text.substr(i, piece))) {
      return {false, 0};
    }
  }
  return {array.isComplete(), array.isComplete() ? objects : 0};
}

} // namespace

/// A record, and the text of an array of records, which must not depend on how it is cut.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char *>(data), size);
  (void)check(QByteArray(text.data(), static_cast<qsizetype>(size)));
  require(arrayOf(text, 1) == arrayOf(text, std::max<std::size_t>(size, 1)));
  return 0;
}
