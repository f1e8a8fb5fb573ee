#pragma once

#include <QByteArray>
#include <QStringList>

#include <expected>

/// The bytes in which a later start hands its words to the first instance: the length of what
/// follows as four bytes, most significant first, then each word in UTF-8 with a zero byte behind.
namespace morvo::InstanceMessage {

enum class Failure {
  incomplete, ///< More bytes are to come.
  tooLong,
  damaged, ///< No UTF-8, or the last word is cut off.
};

/// Answered by the first instance when it has taken the words.
inline constexpr char acknowledgement = '\x06';

[[nodiscard]] std::expected<QByteArray, Failure> encode(const QStringList &words,
                                                        qsizetype longest);
/// `bytes` is all that came so far. A length beyond `longest` is refused before its bytes come.
[[nodiscard]] std::expected<QStringList, Failure> decode(const QByteArray &bytes,
                                                         qsizetype longest);

} // namespace morvo::InstanceMessage
