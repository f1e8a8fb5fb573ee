#include "platform/linux/InstanceMessage.h"

#include <QStringDecoder>
#include <QtEndian>

namespace morvo::InstanceMessage {
namespace {

constexpr qsizetype prefixSize = sizeof(quint32);

} // namespace

std::expected<QByteArray, Failure> encode(const QStringList &words, qsizetype longest) {
  QByteArray body;
  for (const QString &word : words) {
    if (word.contains(QChar::Null)) {
      return std::unexpected(Failure::damaged);
    }
    body += word.toUtf8() + '\0';
    if (body.size() > longest) {
      return std::unexpected(Failure::tooLong);
    }
  }
  QByteArray message(prefixSize, Qt::Uninitialized);
  qToBigEndian(static_cast<quint32>(body.size()), message.data());
  return message + body;
}

std::expected<QStringList, Failure> decode(const QByteArray &bytes, qsizetype longest) {
  if (bytes.size() < prefixSize) {
    return std::unexpected(Failure::incomplete);
  }
  const auto length = static_cast<qsizetype>(qFromBigEndian<quint32>(bytes.constData()));
  if (length > longest) {
    return std::unexpected(Failure::tooLong);
  }
  if (bytes.size() - prefixSize < length) {
    return std::unexpected(Failure::incomplete);
  }
  const QByteArray body = bytes.mid(prefixSize, length);
  if (body.isEmpty()) {
    return QStringList();
  }
  QStringDecoder decoder(QStringDecoder::Utf8);
  const QString text = decoder(body.chopped(1));
  if (body.back() != '\0' || decoder.hasError()) {
    return std::unexpected(Failure::damaged);
  }
  return text.split(QChar::Null);
}

} // namespace morvo::InstanceMessage
