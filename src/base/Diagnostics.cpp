#include "base/Diagnostics.h"

#include <mutex>
#include <unistd.h>
#include <utility>

namespace morvo::Diagnostics {
namespace {

std::mutex &sinkMutex() {
  static std::mutex mutex;
  return mutex;
}

std::function<void(QString)> &captureSink() {
  static std::function<void(QString)> sink;
  return sink;
}

} // namespace

void line(QStringView tag, QStringView text) {
  QString message = u'[' + tag.toString() + QStringLiteral("] ") + text.toString();
  for (QChar &character : message) {
    if (character.category() == QChar::Other_Control) {
      character = u' ';
    }
  }
  const std::scoped_lock lock(sinkMutex());
  if (captureSink()) {
    captureSink()(message);
    return;
  }
  const QByteArray bytes = message.toUtf8() + '\n';
  // A closed standard error is no reason to fail: there is nowhere left to say so.
  [[maybe_unused]] const auto written =
      ::write(STDERR_FILENO, bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

Capture::Capture(std::function<void(QString)> sink) {
  const std::scoped_lock lock(sinkMutex());
  captureSink() = std::move(sink);
}

Capture::~Capture() {
  const std::scoped_lock lock(sinkMutex());
  captureSink() = nullptr;
}

} // namespace morvo::Diagnostics
