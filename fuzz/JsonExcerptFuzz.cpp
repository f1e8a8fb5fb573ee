#include "base/Json.h"
#include "usage/JsonExcerpt.h"

#include <cstddef>
#include <cstdint>

namespace {

void require(bool holds) {
  if (!holds) {
    __builtin_trap();
  }
}

} // namespace

/// A file of which one member is wanted. It must not depend on how it is cut, and of an object the
/// member is what a reader of all of it finds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const QByteArray text(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
  morvo::JsonExcerpt whole({"oauthAccount"});
  whole.feed(text);
  morvo::JsonExcerpt cut({"oauthAccount"});
  for (qsizetype i = 0; i < text.size(); ++i) {
    cut.feed(QByteArrayView(text).sliced(i).first(1));
  }
  require(whole.text() == cut.text());
  if (const auto object = morvo::Json::parseObject(text)) {
    const auto excerpt = morvo::Json::parseObject(whole.text());
    require(excerpt.has_value());
    require(excerpt->value(u"oauthAccount") == object->value(u"oauthAccount"));
  }
  return 0;
}
