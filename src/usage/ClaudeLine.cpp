#include "usage/ClaudeLine.h"

#include "usage/JsonMembers.h"
#include "usage/LogTime.h"
#include "usage/MarkedLines.h"
#include "usage/TokenCount.h"
#include "usage/TokenPrice.h"

#include <simdjson.h>
#include <string>

namespace morvo {
namespace {

namespace json = simdjson::ondemand;

static_assert(MarkedLines::padding >= simdjson::SIMDJSON_PADDING);

/// The model of a reply that does not name its own.
constexpr std::string_view usualModel = "sonnet";

struct Counts {
  std::int64_t input = 0;
  std::int64_t output = 0;
  std::int64_t cacheCreation = 0;
  std::int64_t cacheRead = 0;

  [[nodiscard]] std::int64_t *named(std::string_view key) {
    return key == "input_tokens"                  ? &input
           : key == "output_tokens"               ? &output
           : key == "cache_creation_input_tokens" ? &cacheCreation
           : key == "cache_read_input_tokens"     ? &cacheRead
                                                  : nullptr;
  }
};

struct Message {
  std::optional<Counts> usage;
  /// Valid as long as the line.
  std::optional<std::string_view> model;
};

struct Reply {
  bool isOfAssistant = false;
  std::optional<WallTime> time;
  std::optional<Message> message;
};

/// The object that the value is; nothing for any other. False when the text is broken.
bool objectIn(json::value &value, std::optional<json::object> &object) {
  json::json_type type{};
  if (value.type().get(type) != simdjson::SUCCESS) {
    return false;
  }
  object.reset();
  json::object found;
  if (type == json::json_type::object) {
    if (value.get_object().get(found) != simdjson::SUCCESS) {
      return false;
    }
    object = found;
  }
  return true;
}

std::optional<std::string_view> textIn(json::value &value) {
  std::string_view text;
  return value.get_string().get(text) == simdjson::SUCCESS ? std::optional(text) : std::nullopt;
}

std::int64_t countIn(json::value &value) {
  json::json_type type{};
  if (value.type().get(type) != simdjson::SUCCESS || type != json::json_type::number) {
    return 0;
  }
  std::string_view token = value.raw_json_token();
  token = token.substr(0, token.find_last_not_of(" \t\r\n") + 1);
  return TokenCount::fromWhole(token);
}

bool readUsage(json::value &value, std::optional<Counts> &usage) {
  std::optional<json::object> object;
  if (!objectIn(value, object)) {
    return false;
  }
  usage.reset();
  if (!object) {
    return true;
  }
  return JsonMembers::each(*object,
                           [&counts = usage.emplace()](std::string_view key, json::value member) {
                             if (std::int64_t *const count = counts.named(key)) {
                               *count = countIn(member);
                             }
                             return true;
                           });
}

bool readMessage(json::value &value, std::optional<Message> &message) {
  std::optional<json::object> object;
  if (!objectIn(value, object)) {
    return false;
  }
  message.reset();
  if (!object) {
    return true;
  }
  return JsonMembers::each(*object,
                           [&read = message.emplace()](std::string_view key, json::value member) {
                             if (key == "usage") {
                               return readUsage(member, read.usage);
                             }
                             if (key == "model") {
                               read.model = textIn(member);
                             }
                             return true;
                           });
}

bool readReply(json::object &line, Reply &reply) {
  return JsonMembers::each(line, [&reply](std::string_view key, json::value member) {
    if (key == "message") {
      return readMessage(member, reply.message);
    }
    if (key == "type") {
      reply.isOfAssistant = textIn(member) == "assistant";
    } else if (key == "timestamp") {
      const auto text = textIn(member);
      reply.time = text ? LogTime::parse(*text) : std::nullopt;
    }
    return true;
  });
}

} // namespace

class ClaudeLine::Parser {
public:
  std::optional<TokenEvent> event(std::string_view line) {
    json::document document;
    json::object object;
    Reply reply;
    if (m_parser.iterate(line.data(), line.size(), line.size() + MarkedLines::padding)
                .get(document) != simdjson::SUCCESS ||
        document.get_object().get(object) != simdjson::SUCCESS || !readReply(object, reply) ||
        document.current_location().error() != simdjson::OUT_OF_BOUNDS) {
      return std::nullopt;
    }
    if (!reply.isOfAssistant || !reply.time || !reply.message || !reply.message->usage) {
      return std::nullopt;
    }
    const Counts &counts = *reply.message->usage;
    return TokenEvent{.ts = *reply.time,
                      .billable = TokenCount::sum(TokenCount::sum(counts.input, counts.output),
                                                  counts.cacheCreation),
                      .cacheRead = counts.cacheRead,
                      .cost = priceOf(reply.message->model.value_or(usualModel))
                                  .of(counts.input, counts.output, counts.cacheCreation),
                      .burnable = true};
  }

private:
  /// A session keeps its model, mostly.
  const TokenPrice &priceOf(std::string_view model) {
    if (model != m_model) {
      m_model = model;
      m_price = TokenPrice::ofModel(model);
    }
    return m_price;
  }

  json::parser m_parser;
  std::string m_model;
  TokenPrice m_price = TokenPrice::ofModel({});
};

ClaudeLine::ClaudeLine() : m_parser(std::make_unique<Parser>()) {}

ClaudeLine::~ClaudeLine() = default;

std::optional<TokenEvent> ClaudeLine::event(std::string_view line) { return m_parser->event(line); }

} // namespace morvo
