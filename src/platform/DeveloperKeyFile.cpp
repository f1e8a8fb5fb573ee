#include "platform/DeveloperKeyFile.h"

#include <QList>
#include <QStringDecoder>

namespace morvo::DeveloperKeyFile {
namespace {

QStringView trimmed(QStringView text) {
  constexpr QStringView ornament = u" \t\"'\r";
  while (!text.isEmpty() && ornament.contains(text.front())) {
    text = text.sliced(1);
  }
  while (!text.isEmpty() && ornament.contains(text.back())) {
    text.chop(1);
  }
  return text;
}

} // namespace

std::optional<QString> value(const QByteArray &content, const QString &name) {
  QStringDecoder decoder(QStringDecoder::Utf8);
  const QString text = decoder(content);
  if (decoder.hasError()) {
    return std::nullopt;
  }
  const QString mark = name + u'=';
  for (const QStringView line : QStringView(text).split(u'\n', Qt::SkipEmptyParts)) {
    if (const qsizetype found = line.indexOf(mark); found >= 0) {
      const QStringView rest = trimmed(line.sliced(found + mark.size()));
      return rest.isEmpty() ? std::nullopt : std::optional(rest.toString());
    }
  }
  return std::nullopt;
}

} // namespace morvo::DeveloperKeyFile
