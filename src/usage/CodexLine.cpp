#include "usage/CodexLine.h"

#include "base/Json.h"
#include "usage/TokenCount.h"

namespace morvo {

std::optional<CodexLine::Totals> CodexLine::totals(const QByteArray &line) {
  const auto object = Json::parseObject(line);
  if (!object) {
    return std::nullopt;
  }
  const QJsonObject payload = object->value(u"payload").toObject();
  const QJsonValue usage = payload.value(u"info").toObject().value(u"total_token_usage");
  if (payload.value(u"type").toString() != u"token_count" || !usage.isObject()) {
    return std::nullopt;
  }
  const QJsonObject counts = usage.toObject();
  return Totals{.total = TokenCount::fromWhole(counts.value(u"total_tokens")),
                .cached = TokenCount::fromWhole(counts.value(u"cached_input_tokens"))};
}

} // namespace morvo
