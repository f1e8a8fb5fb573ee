#include "monitor/JsonComments.h"

#include <QByteArrayView>

#include <algorithm>

namespace morvo::JsonComments {
namespace {

constexpr QByteArrayView lineStart("//");
constexpr QByteArrayView blockStart("/*");
constexpr QByteArrayView blockEnd("*/");

/// Length of the string whose opening quote is at `position`.
qsizetype stringLength(QByteArrayView text, qsizetype position) {
  qsizetype at = position + 1;
  while (at < text.size() && text[at] != '"') {
    at += text[at] == '\\' ? 2 : 1;
  }
  return std::min(at + 1, text.size()) - position;
}

/// Length of the comment that starts at `position`; 0 when none does.
qsizetype commentLength(QByteArrayView text, qsizetype position) {
  const auto rest = text.sliced(position);
  if (rest.startsWith(lineStart)) {
    const auto end = std::ranges::find_if(rest, [](char c) { return c == '\n' || c == '\r'; });
    return end - rest.begin();
  }
  if (rest.startsWith(blockStart)) {
    const qsizetype end = rest.indexOf(blockEnd, blockStart.size());
    return end < 0 ? 0 : end + blockEnd.size();
  }
  return 0;
}

} // namespace

QByteArray blanked(const QByteArray &text) {
  QByteArray out;
  out.reserve(text.size());
  const QByteArrayView view(text);
  for (qsizetype at = 0; at < view.size();) {
    const qsizetype comment = commentLength(view, at);
    const qsizetype length = comment > 0 ? comment : view[at] == '"' ? stringLength(view, at) : 1;
    out += comment > 0 ? QByteArrayView(" ") : view.sliced(at, length);
    at += length;
  }
  return out;
}

} // namespace morvo::JsonComments
