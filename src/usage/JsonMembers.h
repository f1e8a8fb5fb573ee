#pragma once

#include <simdjson.h>
#include <string_view>

/// Walks through JSON without building it up in memory.
namespace morvo::JsonMembers {

/// Hands over the members of an object, one after the other, as a name and a value, until `member`
/// gives false. False then, and when the text is broken. A name that cannot be read is empty.
template <typename Member>
[[nodiscard]] bool each(simdjson::ondemand::object &object, const Member &member) {
  for (auto field : object) {
    if (field.error() != simdjson::SUCCESS) {
      return false;
    }
    std::string_view key;
    if (field.unescaped_key().get(key) != simdjson::SUCCESS) {
      key = {};
    }
    if (!member(key, field.value().value_unsafe())) {
      return false;
    }
  }
  return true;
}

} // namespace morvo::JsonMembers
