#include "usage/ClaudeLine.h"
#include "usage/LogTime.h"
#include "usage/MarkedLines.h"
#include "usage/TokenCount.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace {

using Json = nlohmann::json;

void require(bool holds) {
  if (!holds) {
    __builtin_trap();
  }
}

std::int64_t countIn(const Json &usage, const char *key) {
  const auto count = usage.find(key);
  return count != usage.end() && count->is_number_integer() && !count->is_number_unsigned()
             ? count->get<std::int64_t>()
         : count != usage.end() && count->is_number()
             ? morvo::TokenCount::fromWhole(std::string_view(count->dump()))
             : 0;
}

/// What a strict reader of JSON finds in the line.
std::optional<std::int64_t> billable(const Json &line) {
  const Json none;
  const auto member = [&none](const Json &object, const char *key) -> const Json & {
    return object.is_object() && object.contains(key) ? object.at(key) : none;
  };
  const Json &time = member(line, "timestamp");
  const Json &usage = member(member(line, "message"), "usage");
  if (member(line, "type") != "assistant" || !time.is_string() || !usage.is_object() ||
      !morvo::LogTime::parse(time.get_ref<const std::string &>())) {
    return std::nullopt;
  }
  using morvo::TokenCount::sum;
  return sum(sum(countIn(usage, "input_tokens"), countIn(usage, "output_tokens")),
             countIn(usage, "cache_creation_input_tokens"));
}

} // namespace

/// One line. Whatever a strict reader takes for JSON must be understood in the same way.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  std::string line(reinterpret_cast<const char *>(data), size);
  line.append(morvo::MarkedLines::padding, '"');
  const std::string_view text(line.data(), size);
  morvo::ClaudeLine reader;
  const auto event = reader.event(text);
  require(!event || event->burnable);
  const Json strict = Json::parse(text, nullptr, false);
  if (!strict.is_discarded()) {
    const auto expected = billable(strict);
    require(event.has_value() == expected.has_value());
    require(!event || event->billable == *expected);
  }
  return 0;
}
